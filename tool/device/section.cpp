#include "device/section.h"

#include <camcfg/types.h>

#include "base/concat.h"

namespace camcfg::tool::device {
namespace {

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

// The element in the same place of another document, each name being whole; null if it is not there.
const XMLElement* counterpart(const XMLElement& element, const XMLNode& document) {
  const XMLNode* parent = &document;
  if (element.Parent()->ToElement() != nullptr)
    parent = counterpart(*element.Parent()->ToElement(), document);
  return parent == nullptr ? nullptr : parent->FirstChildElement(element.Value());
}

std::optional<std::string> textOf(const XMLElement* element, const char* attribute) {
  const char* text = element == nullptr ? nullptr : element->Attribute(attribute);
  return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace

Readable readableOf(const Section& section) {
  return section.readable ? section.readable() : Readable{section.load(), {}};
}

const Json& Plan::of(const std::string& name) {
  const auto found = values_.find(name);
  if (found != values_.end()) return found->second;
  return present(name);
}

const Json& Plan::present(const std::string& name) {
  const auto found = present_.find(name);
  if (found != present_.end()) return found->second;
  for (const Section& section : sections_)
    if (section.name == name) present_[name] = readableOf(section).value;
  return present_[name];
}

FactoryValues::FactoryValues() {
  const std::string path = pathOf(Place::Default, CFG_FILE_BUSINESS);
  Copy copy = loadCopy(path);
  if (copy.state == State::Good)
    document_ = std::move(copy.document);
  else
    fault_ = concat(path, " ", copy.fault);
}

std::optional<std::string> FactoryValues::of(const XMLElement& element) const {
  const std::optional<std::string> value = attributeOf(element, "Cur");
  return value ? value : textOf(&element, "Def");
}

std::optional<std::string> FactoryValues::attributeOf(const XMLElement& element,
                                                      const char* attribute) const {
  if (document_ == nullptr) return std::nullopt;
  return textOf(counterpart(element, *document_), attribute);
}

}  // namespace camcfg::tool::device
