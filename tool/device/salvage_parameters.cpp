#include <camcfg/params.h>

#include <map>
#include <optional>
#include <set>

#include "base/concat.h"
#include "base/elements.h"
#include "base/plain_text.h"
#include "device/salvage_copy.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::device {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr char kNetwork[] = "NetWork";
constexpr char kCur[] = "Cur";

// Attributes that distinguish elements of the same name.
constexpr const char* kKeys[] = {"Id", "Usage"};
// Attributes that describe a value and are the factory's.
constexpr const char* kDescriptions[] = {"Def", "Min", "Max", "Step", "OptTxt"};

const XMLElement* outerOf(const XMLElement& element) {
  return element.Parent()->ToElement();
}

// "NetWork/Lan0/IpAddr", with what distinguishes elements of the same name: "Image/Input[1]".
std::string placeOf(const XMLElement& element) {
  std::string place = element.Name();
  for (const char* key : kKeys)
    if (element.FindAttribute(key) != nullptr)
      place += concat("[", tool::textOf(element, key), "]");
  const XMLElement* outer = outerOf(element);
  return outer == nullptr ? place : concat(placeOf(*outer), "/", place);
}

// The attributes that have values: "Cur", of an element that has one.
std::vector<std::string> valuesOf(const XMLElement& element) {
  if (element.FindAttribute(kCur) != nullptr) return {kCur};
  std::vector<std::string> names;
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    if (!isAmong(kKeys, std::string_view(attribute->Name())) &&
        !isAmong(kDescriptions, std::string_view(attribute->Name())))
      names.emplace_back(attribute->Name());
  return names;
}

std::string whyNotForCard(const Setting& setting, const XMLElement& field,
                          const std::string& text) {
  if (text.empty() && settings::mayBeEmpty(setting, field, kCur)) return "";
  return settings::objectionTo(setting, text, settings::limitsIn(field, setting.limits)).why;
}

// Why a text cannot be the value of an element of the factory copy; empty if it can.
std::string whyNotPermitted(const XMLElement& element, const std::string& attribute,
                            const std::string& text) {
  std::string fault = whyNotStorable(text, CFG_TXT_CUR_SIZE - 1);
  if (!fault.empty()) return fault;
  const XMLElement* outer = outerOf(element);
  const XMLElement* outermost = outer == nullptr ? nullptr : outerOf(*outer);
  const bool isNetwork = outer == nullptr && element.Name() == std::string_view(kNetwork);
  if (isNetwork && attribute == settings::hostnameSetting().attributes.front().name)
    return settings::hostnameSetting().whyNotUsable(text);
  if (attribute != kCur) return "";
  const Setting* field = settings::cardSettingOf(element.Name());
  if (field != nullptr && outermost != nullptr && outermost->Name() == std::string_view(kNetwork))
    return whyNotForCard(*field, element, text);
  const settings::ParameterForm form(element);
  const bool hasForm = form.isInteger() || element.FindAttribute("OptTxt") != nullptr;
  return hasForm ? form.objectionTo(text).why : "";
}

// Which elements of a copy are those of the factory document.
class Counterparts {
 public:
  Counterparts(XMLDocument& document, const SalvageCopy& copy) : copy_(copy) {
    addNames(document);
    for (const FoundElement& element : copy.elements) add(element);
  }

  const std::vector<const FoundElement*>& of(const XMLElement& element) const {
    static const std::vector<const FoundElement*> none;
    const auto found = found_.find(&element);
    return found == found_.end() ? none : found->second;
  }

  /// Whole elements whose place is not known, the outermost ones.
  const std::vector<const FoundElement*>& homeless() const { return homeless_; }

 private:
  void addNames(tinyxml2::XMLNode& parent) {
    for (XMLElement* child : childrenOf(parent)) {
      byName_[child->Name()].push_back(child);
      addNames(*child);
    }
  }

  void add(const FoundElement& element) {
    if (element.tag.empty()) return;
    const XMLElement* only = nullptr;
    int number = 0;
    const auto named = byName_.find(element.name);
    if (named != byName_.end())
      for (const XMLElement* each : named->second)
        if (matches(element, *each)) {
          only = each;
          ++number;
        }
    if (number == 1)
      found_[only].push_back(&element);
    else if (element.isWhole())
      addHomeless(element);
  }

  void addHomeless(const FoundElement& element) {
    strange_.insert(&element);
    if (element.parent < 0 || strange_.count(&copy_.elements[element.outer()]) == 0)
      homeless_.push_back(&element);
  }

  // Whether one may be the other, as far as it is known what it is in.
  bool matches(const FoundElement& found, const XMLElement& element) const {
    if (found.name != element.Name() || !hasKeysOf(found, element)) return false;
    const XMLElement* outer = outerOf(element);
    if (found.parent < 0) return found.parent == FoundElement::Unknown || outer == nullptr;
    return outer != nullptr && matches(copy_.elements[found.outer()], *outer);
  }

  static bool hasKeysOf(const FoundElement& found, const XMLElement& element) {
    for (const char* key : kKeys) {
      if (element.FindAttribute(key) == nullptr || found.tag.empty()) continue;
      const Document tag = parsedTag(found);
      if (tag == nullptr ||
          tool::textOf(*tag->FirstChildElement(), key) != tool::textOf(element, key))
        return false;
    }
    return true;
  }

  const SalvageCopy& copy_;
  std::map<std::string_view, std::vector<const XMLElement*>> byName_;
  std::map<const XMLElement*, std::vector<const FoundElement*>> found_;
  std::vector<const FoundElement*> homeless_;
  std::set<const FoundElement*> strange_;  // those, and what is in them
};

class ParameterSalvage {
 public:
  ParameterSalvage(XMLDocument& document, const SalvageCopies& copies, SalvageReport& report)
      : copies_(copies), report_(report) {
    for (std::size_t i = 0; i < 2; ++i) counterparts_.emplace_back(document, copies[i]);
    salvageIn(document);
    for (std::size_t i = 0; i < 2; ++i)
      for (const FoundElement* element : counterparts_[i].homeless())
        report.refuse(copies[i], *element, std::string(element->name), kUnknownPlace);
  }

 private:
  void salvageIn(tinyxml2::XMLNode& parent) {
    for (XMLElement* element : childrenOf(parent)) {
      for (const std::string& attribute : valuesOf(*element)) salvage(*element, attribute);
      salvageIn(*element);
    }
  }

  void salvage(XMLElement& element, const std::string& attribute) {
    const std::string place =
        attribute == kCur ? placeOf(element) : concat(placeOf(element), "/", attribute);
    const std::optional<Json> main = valueIn(0, element, attribute, place);
    const std::optional<Json> backup = valueIn(1, element, attribute, place);
    const char* source = sourceOf(main ? &*main : nullptr, backup ? &*backup : nullptr);
    const Json value = main     ? *main
                       : backup ? *backup
                                : Json(tool::textOf(element, attribute.c_str()));
    report_.add(place, source, value, backup.value_or(Json()));
    element.SetAttribute(attribute.c_str(), value.text().c_str());
  }

  // A value that a copy has and that is permitted. Whatever has other elements in it need not be
  // whole: its own values are in its start tag.
  std::optional<Json> valueIn(std::size_t copy, const XMLElement& element,
                              const std::string& attribute, const std::string& place) {
    std::optional<Json> value;
    for (const FoundElement* found : counterparts_[copy].of(element)) {
      if (!found->isWhole() && element.FirstChildElement() == nullptr) continue;
      const Document tag = parsedTag(*found);
      const char* text =
          tag == nullptr ? nullptr : tag->FirstChildElement()->Attribute(attribute.c_str());
      if (text == nullptr) continue;
      std::string fault = whyNotPermitted(element, attribute, text);
      if (value && *value != text) fault = kTwice;
      if (fault.empty()) {
        value = text;
        continue;
      }
      report_.refuse(copies_[copy], *found, place, fault);
      return std::nullopt;
    }
    return value;
  }

  const SalvageCopies& copies_;
  SalvageReport& report_;
  std::vector<Counterparts> counterparts_;
};

}  // namespace

void salvageParameters(XMLDocument& document, const SalvageCopies& copies, SalvageReport& report) {
  const ParameterSalvage salvage(document, copies, report);
}

}  // namespace camcfg::tool::device
