#include "media/losses.h"

#include <strings.h>

#include <algorithm>

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

using Losses = std::vector<std::string>;

std::string atLine(int line) {
  return " at line " + std::to_string(line);
}

std::string describe(const XMLNode& node) {
  if (node.ToElement() != nullptr) return "<" + std::string(node.Value()) + ">";
  if (node.ToComment() != nullptr) return "the comment";
  return node.ToText() != nullptr ? "the text" : "the node";
}

const ElementForm* formOf(const XMLNode& node, const std::vector<ElementForm>& forms) {
  const XMLElement* element = node.ToElement();
  if (element == nullptr) return nullptr;
  for (const ElementForm& form : forms)
    if (strcasecmp(element->Name(), form.name) == 0) return &form;
  return nullptr;
}

void addAttributes(const XMLElement& element, const ElementForm& form, Losses& losses) {
  const auto& written = form.attributes;
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    if (std::none_of(written.begin(), written.end(),
                     [&](const std::string& name) { return name == attribute->Name(); }))
      losses.push_back("\"" + std::string(attribute->Name()) + "\" of <" + form.name + ">" +
                       atLine(element.GetLineNum()));
}

void addChildren(const XMLElement& parent, const std::vector<ElementForm>& forms, Losses& losses) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    const ElementForm* form = formOf(*node, forms);
    if (form == nullptr) {
      losses.push_back(describe(*node) + atLine(node->GetLineNum()));
      continue;
    }
    addAttributes(*node->ToElement(), *form, losses);
    addChildren(*node->ToElement(), form->children, losses);
  }
}

}  // namespace

Losses lossesOf(const XMLElement& section, const std::vector<ElementForm>& forms) {
  Losses losses;
  addChildren(section, forms, losses);
  return losses;
}

}  // namespace camcfg::tool::media
