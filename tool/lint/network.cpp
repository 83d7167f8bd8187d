#include <camcfg/network.h>

#include <algorithm>
#include <map>
#include <string_view>

#include "base/plain_text.h"
#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::lint {

using settings::Setting;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kHostname{"hostname", Severity::Warning,
                         "The host name is missing, so it is read as the empty text, or no system "
                         "can bear it.",
                         "<NetWork Hostname=\"north gate\">"};
constexpr Rule kTooManyCards{"too-many-cards", Severity::Error,
                             "CFG_NETWORK_GetCards lists three cards: this one is left out.",
                             "a fourth element in <NetWork>"};
constexpr Rule kCardNameTooLong{"card-name-too-long", Severity::Error,
                                "CFG_NETWORK_GetCards cuts names of cards to 15 bytes; with the "
                                "rest of it gone, a lookup may find another card.",
                                "<EthernetSocketRear>"};
constexpr Rule kCardShadowed{"card-shadowed", Severity::Error,
                             "Cards are found by the beginning of their names, the first is taken: "
                             "calls for this card read and write the longer name before it.",
                             "<Lan10> and after it <Lan1>"};
constexpr Rule kCardTwice{"card-twice", Severity::Error,
                          "Two cards have the same name: calls read and write the first.",
                          "<Lan0> and after it another <Lan0>"};
constexpr Rule kNotACard{"not-a-card", Severity::Warning,
                         "Every element in <NetWork> is listed as a card, whatever it is.",
                         "<Timeout Cur=\"30\"/> in <NetWork>"};
constexpr Rule kInterfaceMissing{"interface-missing", Severity::Warning,
                                 "A card without \"Intf\" is listed without an interface, and "
                                 "CFG_NETWORK_GetCardIntf fails.",
                                 "<Lan0> without <Intf>"};
constexpr Rule kInterfaceTwice{"interface-twice", Severity::Warning,
                               "Two cards drive the same interface.",
                               "<Intf Cur=\"Eth0\"/> in <Lan0> and in <Lan1>"};

constexpr Rule kFieldShadowed{"card-field-shadowed", Severity::Error,
                              "Setters find an element of a card by the beginning of its name, the "
                              "first is taken: they write the longer name before this one.",
                              "<EnableWifi Cur=\"On\"/> and after it <Enable Cur=\"On\"/>"};
constexpr Rule kFieldTwice{"card-field-twice", Severity::Error,
                           "A card has an element twice: setters of one value write the first, "
                           "readers take the last.",
                           "<MTU Cur=\"1500\"/> and after it <MTU Cur=\"1400\"/>"};
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
void checkCardName(const Elements& cards, std::size_t i, const NameMatches& match,
                   Findings& findings) {
  const XMLElement& card = *cards[i];
  const std::string name = "card " + clipped(card.Name());
  if (i >= CFG_NETWORK_CARDS_MAX)
    findings.add(
        kTooManyCards, card,
        name + " is not listed: there are " + std::to_string(CFG_NETWORK_CARDS_MAX) + " before it");
  if (std::string_view(card.Name()).size() >= CFG_NETWORK_NAME_SIZE)
    findings.add(
        kCardNameTooLong, card,
        name + " is listed as " + std::string(card.Name()).substr(0, CFG_NETWORK_NAME_SIZE - 1));
  const XMLElement& other = *cards[match.answer()];
  if (match.longer < match.same)
    findings.add(kCardShadowed, card,
                 name + ": calls find " + tag(other.Name()) + atLine(other) +
                     ", which begins with this name");
  else if (match.same != i)
    findings.add(kCardTwice, card, name + ": calls find the one" + atLine(other));
}

void checkInterfaces(const Elements& cards, Findings& findings) {
  std::map<std::string, const XMLElement*> drivers;
  for (const XMLElement* card : cards) {
    const XMLElement* element = childNamed(*card, "Intf");
    const std::string name = "card " + clipped(card->Name());
    if (element == nullptr) {
      findings.add(kInterfaceMissing, *card, name + " has no <Intf>");
      continue;
    }
    const std::string interface = textOf(*element, "Cur");
    const auto [first, isNew] = drivers.emplace(interface, card);
    if (!isNew && !interface.empty())
      findings.add(kInterfaceTwice, *element, "Cur",
                   name + " drives " + clipped(interface) + ", as card " +
                       clipped(first->second->Name()) + " does");
  }
}

void checkHostname(const XMLElement& network, Findings& findings) {
  checkAttributeCase(network, {"Hostname"}, "NetWork", findings);
  const std::string name = textOf(network, "Hostname");
  if (!has(network, "Hostname")) {
    findings.add(kHostname, network, "NetWork has no \"Hostname\"");
    return;
  }
  const std::string fault = settings::hostnameSetting().whyNotUsable(name);
  if (!fault.empty())
    findings.add(kHostname, network, "Hostname", "NetWork: \"Hostname\": " + clipped(fault));
}

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

bool isCard(const XMLElement& element) {
  const Elements fields = childrenOf(element);
  return std::any_of(fields.begin(), fields.end(), [](const XMLElement* field) {
    return settings::cardSettingOf(field->Name()) != nullptr;
  });
}

void checkFields(const XMLElement& card, const std::string& name, Findings& findings) {
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

void check(const Source& source, Findings& findings) {
  const XMLElement* network = childNamed(*source.document, "NetWork");
  if (network == nullptr) return;
  checkHostname(*network, findings);
  const Elements cards = childrenOf(*network);
  const std::vector<NameMatches> matches = matchNames(namesOf(cards));
  Elements real;
  for (std::size_t i = 0; i < cards.size(); ++i) {
    checkCardName(cards, i, matches[i], findings);
    if (!isCard(*cards[i])) {
      findings.add(kNotACard, *cards[i],
                   tag(cards[i]->Name()) + " is listed as a card, but has nothing of one");
      continue;
    }
    real.push_back(cards[i]);
    checkFields(*cards[i], clipped(cards[i]->Name()), findings);
  }
  checkInterfaces(real, findings);
}

}  // namespace

Subject network() {
  return {"network",
          {&kHostname, &kTooManyCards, &kCardNameTooLong, &kCardShadowed, &kCardTwice, &kNotACard,
           &kInterfaceMissing, &kInterfaceTwice, &kFieldShadowed, &kFieldTwice, &kWrittenAsAnother,
           &kFieldUnread, &kWord, &kAddress, &kMtuRange},
          Kind::Parameters,
          check};
}

}  // namespace camcfg::tool::lint
