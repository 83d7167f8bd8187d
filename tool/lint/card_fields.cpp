#include "lint/card_fields.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"
#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/network.h"
#include "settings/parameter_form.h"

namespace camcfg::tool::lint {

using settings::Setting;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kFieldShadowed{"card-field-shadowed", Severity::Error,
                              "Setters find an element of a card by the beginning of its name, the "
                              "first is taken: they write the longer name before this one.",
                              "<EnableWifi Cur=\"On\"/> and behind it <Enable Cur=\"On\"/>"};
constexpr Rule kFieldTwice{"card-field-twice", Severity::Error,
                           "A card has an element twice: setters of one value write the first, "
                           "readers take the last.",
                           "<MTU Cur=\"1500\"/> and behind it <MTU Cur=\"1400\"/>"};
constexpr Rule kWrittenAsAnother{"written-as-another", Severity::Error,
                                 "Setters of whole cards take an element by the beginning of its "
                                 "name and write another's value into it; readers pass it by.",
                                 "<EnableWifi Cur=\"On\" Def=\"On\"/>"};
constexpr Rule kFieldUnread{"card-field-unread", Severity::Warning,
                            "No reader of cards knows an element of this name.",
                            "<Ipaddr Cur=\"192.0.2.1\" Def=\"192.0.2.1\"/>"};
constexpr Rule kWord{"network-word", Severity::Error,
                     "The word is none of those that the element takes: it is read as the value 0, "
                     "an interface as none.",
                     "<Duplex Cur=\"full\" Def=\"Full\"/>"};
constexpr Rule kAddress{"network-address", Severity::Error,
                        "The text is no address, netmask or domain that a card can use; the "
                        "library stores any text.",
                        "<IpAddr Cur=\"192.0.2.256\" Def=\"192.0.2.1\"/>"};
constexpr Rule kMtuRange{"mtu-range", Severity::Error, "No card can have this MTU.",
                         "<MTU Cur=\"15\" Def=\"1500\"/>"};

struct Side {
  const char* attribute;
  const char* reader;
};
constexpr Side kSides[] = {{"Cur", "CFG_NETWORK_GetAllParamCur reads"},
                           {"Def", "CFG_NETWORK_GetAllParamDef reads"}};
// A card that gets its address from the network needs none here.
bool isLeftOut(const XMLElement& card, const Setting& setting, const char* attribute,
               const std::string& text) {
  const auto& [element, word] = setting.neededIf;
  if (!text.empty() || element == nullptr) return false;
  const XMLElement* other = childNamed(card, element);
  return other == nullptr || textOf(*other, attribute) != word;
}

void checkMtu(const Setting& setting, const XMLElement& element, const char* attribute,
              const std::string& path, Findings& findings) {
  const std::optional<int> mtu = checkInteger(element, attribute, path, findings);
  const auto [min, max] = settings::limitsIn(element, setting.limits);
  if (mtu && (*mtu < min || *mtu > max))
    findings.add(kMtuRange, element, attribute,
                 path + ": \"" + attribute + "\" " + std::to_string(*mtu) + " is outside " +
                     std::to_string(min) + ".." + std::to_string(max));
}

void checkText(const XMLElement& card, const Setting& setting, const XMLElement& element,
               const char* attribute, const std::string& path, Findings& findings) {
  const std::string text = textOf(element, attribute);
  const std::string what = path + ": \"" + attribute + "\"";
  if (setting.kind != settings::Kind::Text) {
    const std::vector<std::string> words = settings::wordsOf(setting);
    if (!isAmong(words, text))
      findings.add(kWord, element, attribute,
                   what + " " + quoted(text) + " is none of " + joined(words));
    return;
  }
  requireFits(element, attribute, setting.field.room - 1, path, findings);
  if (isLeftOut(card, setting, attribute, text)) return;
  const std::string fault = setting.whyNotUsable(text);
  if (!fault.empty()) findings.add(kAddress, element, attribute, what + ": " + clipped(fault));
}

void checkField(const XMLElement& card, const Setting& setting, const XMLElement& element,
                const std::string& path, Findings& findings) {
  checkAttributeCase(element, {"Cur", "Def"}, path, findings);
  for (const auto& [attribute, reader] : kSides) {
    requireAttribute(element, attribute, path, reader, findings);
    if (!has(element, attribute)) continue;
    if (setting.kind == settings::Kind::Integer)
      checkMtu(setting, element, attribute, path, findings);
    else
      checkText(card, setting, element, attribute, path, findings);
  }
}

void tellUnknown(const XMLElement& element, const std::string& path, Findings& findings) {
  const Setting* other = settings::cardSettingWrittenInto(element.Name());
  if (other != nullptr)
    findings.add(kWrittenAsAnother, element,
                 path + ": setters write " + settings::elementOf(*other) +
                     " into it, and no reader knows it");
  else
    findings.add(kFieldUnread, element, path + ": no reader knows this element");
}

}  // namespace

bool isCard(const XMLElement& element) {
  const Elements fields = childrenOf(element);
  return std::any_of(fields.begin(), fields.end(), [](const XMLElement* field) {
    return settings::cardSettingOf(field->Name()) != nullptr;
  });
}

void checkCardFields(const XMLElement& card, const std::string& name, Findings& findings) {
  const Elements elements = childrenOf(card);
  const std::vector<NameMatches> matches = matchNames(namesOf(elements));
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const XMLElement& element = *elements[i];
    const std::string path = name + "/" + clipped(element.Name());
    const Setting* field = settings::cardSettingOf(element.Name());
    if (field == nullptr) {
      tellUnknown(element, path, findings);
      continue;
    }
    checkField(card, *field, element, path, findings);
    const auto [same, longer] = matches[i];
    if (longer < same)
      findings.add(
          kFieldShadowed, element,
          path + ": setters find " + tag(elements[longer]->Name()) + atLine(*elements[longer]));
    else if (same != i)
      findings.add(kFieldTwice, element,
                   path + ": setters write the one" + atLine(*elements[same]));
  }
}

Subject cardFields() {
  return {"network",
          {&kFieldShadowed, &kFieldTwice, &kWrittenAsAnother, &kFieldUnread, &kWord, &kAddress,
           &kMtuRange},
          Kind::Parameters,
          nullptr};
}

}  // namespace camcfg::tool::lint
