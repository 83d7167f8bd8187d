#include "media/losses.h"

#include <strings.h>

#include <algorithm>

#include "media/media.h"
#include "settings/table.h"

namespace camcfg::tool::media {
namespace {

using settings::AttributeForm;
using settings::ElementForm;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

std::string atLine(const XMLNode& node) {
  return " at line " + std::to_string(node.GetLineNum());
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
  const auto isWritten = [&](const char* name) {
    return std::any_of(form.attributes.begin(), form.attributes.end(),
                       [&](const AttributeForm& known) {
                         return known.isSaved && std::string(name) == known.name;
                       });
  };
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    if (!isWritten(attribute->Name()))
      losses.push_back("\"" + std::string(attribute->Name()) + "\" of <" + form.name + ">" +
                       atLine(element));
}

void addChildren(const XMLElement& parent, const std::vector<ElementForm>& forms, Losses& losses) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    const ElementForm* form = formOf(*node, forms);
    if (form == nullptr) {
      losses.push_back(describe(*node) + atLine(*node));
      continue;
    }
    addAttributes(*node->ToElement(), *form, losses);
    addChildren(*node->ToElement(), form->children, losses);
  }
}

// Channels that loading ignores: of another Type, or the second of one.
void addIgnoredChannels(const XMLElement& entry, std::vector<const char*> types, Losses& losses) {
  if (types.empty()) return;
  for (const XMLElement* channel = entry.FirstChildElement(); channel != nullptr;
       channel = channel->NextSiblingElement()) {
    const char* type = channel->Attribute("Type");
    if (strcasecmp(channel->Name(), "Channel") != 0 || type == nullptr) continue;
    const auto expected = std::find_if(types.begin(), types.end(), [&](const char* known) {
      return strcasecmp(known, type) == 0;
    });
    if (expected == types.end())
      losses.push_back("the channel of Type \"" + std::string(type) + "\"" + atLine(*channel));
    else
      types.erase(expected);
  }
}

// A listener's host is not loaded.
void addUnreadHost(const XMLElement& instance, Losses& losses) {
  const char* mode = instance.Attribute("Mode");
  if (mode != nullptr && strcasecmp(mode, "Listener") == 0 &&
      instance.Attribute("Hostname") != nullptr)
    losses.push_back("\"Hostname\" of the listener" + atLine(instance));
}

}  // namespace

Losses lossesOf(const XMLElement& section, const settings::Table& table) {
  Losses losses;
  addChildren(section, formsOf(table), losses);
  return losses;
}

Losses lossNotes(const settings::Table& table) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  XMLElement* section = requireSection(*document, table);
  Losses losses = lossesOf(*section, table);
  for (const XMLElement* entry : entriesOf(section, table)) {
    addIgnoredChannels(*entry, channelTypesOf(table), losses);
    addUnreadHost(*entry, losses);
  }
  if (losses.empty()) return {};
  std::string list;
  for (const std::string& loss : losses) list += (list.empty() ? "" : ", ") + loss;
  return {"note: " + std::string(table.place) + " is rewritten without " + list};
}

}  // namespace camcfg::tool::media
