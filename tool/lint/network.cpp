#include <arpa/inet.h>
#include <camcfg/network.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/concat.h"
#include "base/name_matches.h"
#include "lint/cards.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using settings::Setting;
using tinyxml2::XMLElement;

constexpr Needed kSides[] = {{"Cur", "CFG_NETWORK_GetAllParamCur reads"},
                             {"Def", "CFG_NETWORK_GetAllParamDef reads"}};

constexpr int kLeastPacket = 576;  // RFC 791

Item cardItem(const XMLElement& card, Findings& findings) {
  return {card, "card " + clipped(card.Name()), findings};
}

void checkCardName(const Elements& cards, std::size_t i, const NameMatches& match,
                   Findings& findings) {
  const Item card = cardItem(*cards[i], findings);
  const std::string_view name = card.element.Name();
  if (i >= CFG_NETWORK_CARDS_MAX)
    card.add(kTooManyCards,
             concat(" is not listed: there are ", CFG_NETWORK_CARDS_MAX, " before it"));
  if (name.size() >= CFG_NETWORK_NAME_SIZE)
    card.add(kCardNameTooLong,
             " is listed as " + std::string(name.substr(0, CFG_NETWORK_NAME_SIZE - 1)));
  const XMLElement& other = *cards[match.answer()];
  if (match.longer < match.same)
    card.add(kCardShadowed, concat(": calls find ", tag(other.Name()), atLine(other),
                                   ", which begins with this name"));
  else if (match.same != i)
    card.add(kCardTwice, ": calls find the one" + atLine(other));
}

void checkInterfaces(const Elements& cards, Findings& findings) {
  std::set<const XMLElement*> found;
  for (const Needed& each : kSides) {
    const char* side = each.attribute;
    std::map<std::string, const XMLElement*> drivers;
    for (const XMLElement* card : cards) {
      const XMLElement* element = card->FirstChildElement("Intf");
      const std::string interface = element == nullptr ? "" : textOf(*element, side);
      const auto [first, isNew] = drivers.emplace(interface, card);
      if (isNew || interface.empty() || !found.insert(element).second) continue;
      Item{*element, cardItem(*card, findings).name, findings}.addAt(
          kInterfaceTwice, side,
          concat(&each == &kSides[0] ? " drives " : " after a reset drives ", clipped(interface),
                 ", as card ", clipped(first->second->Name()), " does"));
    }
  }
}

void checkHostname(const Item& network) {
  network.checkCase({"Hostname"});
  if (!network.has("Hostname")) return network.add(kHostname, " has no \"Hostname\"");
  const std::string name = network.text("Hostname");
  const std::string fault = settings::hostnameSetting().whyNotUsable(name);
  if (!fault.empty()) network.addOf(kHostname, "Hostname", ": " + clipped(fault));
  if (isSameWord(name, "localhost"))
    network.addOf(kHostname, "Hostname",
                  concat(" ", quoted(name), " is what every device calls itself"));
  if (!name.empty() && name.find_first_not_of("0123456789.") == std::string::npos)
    network.addOf(kHostnameNumber, "Hostname",
                  concat(" ", quoted(name), " is taken for an address"));
}

void checkMtu(const Item& field, const Setting& setting, const char* attribute) {
  const std::optional<int> mtu = field.checkInteger(attribute);
  const auto [min, max] = settings::limitsIn(field.element, setting.limits);
  if (mtu && (*mtu < min || *mtu > max))
    field.addOf(kMtuRange, attribute, concat(" ", *mtu, " is outside ", min, "..", max));
  else if (mtu && *mtu < kLeastPacket)
    field.addOf(kMtuSmall, attribute,
                concat(" ", *mtu, " is below ", kLeastPacket, ", which every network carries"));
}

// The library stores any text; `set` wants to be forced to store these.
bool isIpv6(const Setting& setting, const std::string& text) {
  in6_addr address{};
  return setting.whyNotUsable != settings::whyNotAMask &&
         setting.whyNotUsable != settings::whyNotDomains &&
         inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

void checkFieldText(const Item& field, const Setting& setting, const char* attribute) {
  const std::string text = field.text(attribute);
  if (setting.kind != settings::Kind::Text) {
    const std::vector<std::string> words = settings::wordsOf(setting);
    if (!isAmong(words, text))
      field.addOf(kNetworkWord, attribute,
                  concat(" ", quoted(text), " is none of ", joined(words)));
    return;
  }
  field.requireFits(attribute, setting.field.room - 1);
  if (text.empty() && settings::mayBeEmpty(setting, field.element, attribute)) return;
  const std::string fault = setting.whyNotUsable(text);
  if (!fault.empty() && !isIpv6(setting, text))
    field.addOf(kNetworkAddress, attribute, ": " + clipped(fault));
}

void checkField(const Item& field, const Setting& setting) {
  field.checkCase({"Cur", "Def"});
  for (const Needed& side : kSides) {
    field.require(side);
    const char* attribute = side.attribute;
    if (!field.has(attribute)) continue;
    if (setting.kind == settings::Kind::Integer)
      checkMtu(field, setting, attribute);
    else
      checkFieldText(field, setting, attribute);
  }
}

bool isKnownField(std::string_view name) {
  return settings::cardSettingOf(name) != nullptr;
}

// The setting that an element's author meant; null if the card has it, or nothing comes near.
const Setting* meantField(const XMLElement& element) {
  for (const Setting& setting : settings::cardSettings())
    if (nearChild(*element.Parent(), settings::elementOf(setting), isKnownField) == &element)
      return &setting;
  return nullptr;
}

void checkUnknown(const Item& item) {
  if (const Setting* other = settings::cardSettingWrittenInto(item.element.Name()))
    item.add(kWrittenAsAnother, concat(": setters write ", settings::elementOf(*other),
                                       " into it, and no reader knows it"));
  else if (const Setting* meant = meantField(item.element))
    addNearName(item.element, settings::elementOf(*meant), item.findings);
  else
    item.add(kCardFieldUnread, ": no reader knows this element");
}

bool isCard(const XMLElement& element) {
  const Elements fields = childrenOf(element);
  return std::any_of(fields.begin(), fields.end(), [](const XMLElement* field) {
    return settings::cardSettingOf(field->Name()) != nullptr;
  });
}

void checkFields(const Item& card) {
  const Elements elements = childrenOf(card.element);
  const std::vector<NameMatches> matches = matchNames(namesOf(elements));
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const Item field = card.inner(*elements[i]);
    const Setting* setting = settings::cardSettingOf(elements[i]->Name());
    if (setting == nullptr) {
      checkUnknown(field);
      continue;
    }
    checkField(field, *setting);
    const XMLElement& answer = *elements[matches[i].answer()];
    if (matches[i].longer < matches[i].same)
      field.add(kCardFieldShadowed, concat(": setters find ", tag(answer.Name()), atLine(answer)));
    else if (matches[i].same != i)
      field.add(kCardFieldTwice, ": setters write the one" + atLine(answer));
  }
}

}  // namespace

void checkNetwork(const Source& source, Findings& findings) {
  const XMLElement* network = source.document->FirstChildElement(settings::kNetworkSection);
  if (network == nullptr) return;
  checkHostname({*network, settings::kNetworkSection, findings});
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
    if (cards[i]->FirstChildElement("Intf") == nullptr)
      cardItem(*cards[i], findings).add(kInterfaceMissing, " has no <Intf>");
    checkFields({*cards[i], clipped(cards[i]->Name()), findings});
  }
  checkInterfaces(real, findings);
  checkCards(real, findings);
}

}  // namespace camcfg::tool::lint
