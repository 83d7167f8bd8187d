#include <camcfg/network.h>

#include <map>
#include <string_view>

#include "lint/card_fields.h"
#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/network.h"

namespace camcfg::tool::lint {

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
                             "<Lan10> and behind it <Lan1>"};
constexpr Rule kCardTwice{"card-twice", Severity::Error,
                          "Two cards have the same name: calls read and write the first.",
                          "<Lan0> and behind it another <Lan0>"};
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
    checkCardFields(*cards[i], clipped(cards[i]->Name()), findings);
  }
  checkInterfaces(real, findings);
}

}  // namespace

Subject network() {
  return {"network",
          {&kHostname, &kTooManyCards, &kCardNameTooLong, &kCardShadowed, &kCardTwice, &kNotACard,
           &kInterfaceMissing, &kInterfaceTwice},
          Kind::Parameters,
          check};
}

}  // namespace camcfg::tool::lint
