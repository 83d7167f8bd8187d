#include "lint/cards.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/concat.h"
#include "lint/rules.h"
#include "settings/subnet.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

// Findings at fields. What is found of a current value is not found again of the factory's.
class Places {
 public:
  explicit Places(Findings& findings) : findings_(findings) {}

  void add(const Rule& rule, const XMLElement& card, const XMLElement& field, const char* side,
           const std::string& text) {
    if (known_.emplace(&rule, &field).second)
      Item{field, concat(clipped(card.Name()), "/", field.Name()), findings_}.addOf(rule, side,
                                                                                    text);
  }

 private:
  Findings& findings_;
  std::set<std::pair<const Rule*, const XMLElement*>> known_;
};

// The current or the factory settings of a card.
struct Card {
  const XMLElement& element;
  const char* side;  // "Cur" or "Def"
  Places& places;

  std::string text(const char* name) const {
    const XMLElement* field = element.FirstChildElement(name);
    return field == nullptr ? "" : textOf(*field, side);
  }
  bool is(const char* name, const char* word) const { return text(name) == word; }
  bool isStatic() const { return !is("Enable", "Off") && is("IpMode", "StaticIp"); }
  void add(const Rule& rule, const char* name, const std::string& what) const {
    if (const XMLElement* field = element.FirstChildElement(name))
      places.add(rule, element, *field, side, what);
  }
};

bool isLoopback(std::uint32_t address) {
  constexpr std::uint32_t kFirstOfFour = 0xff000000;
  constexpr std::uint32_t kLoopback = 0x7f000000;
  return (address & kFirstOfFour) == kLoopback;
}

void checkReach(const Card& card) {
  if (!card.isStatic()) return;
  const auto [address, gateway] =
      settings::unreachableIn(card.text("IpAddr"), card.text("NetMask"), card.text("GateWay"));
  if (!address.empty()) card.add(kAddressNotOfHost, "IpAddr", ": " + address);
  if (!gateway.empty()) card.add(kGatewayUnreachable, "GateWay", ": " + gateway);
}

void checkServersAreHosts(const Card& card) {
  const auto subnet = settings::Subnet::of(card.text("IpAddr"), card.text("NetMask"));
  if (!card.isStatic() || !subnet) return;
  for (const char* name : {"Dns1", "Dns2"}) {
    const auto server = settings::ipv4Of(card.text(name));
    if (!server || !subnet->has(*server)) continue;
    const std::string why = subnet->whyNotAHost(*server);
    if (!why.empty()) card.add(kDnsUnreachable, name, ": " + why);
  }
}

void checkServers(const Card& card) {
  if (!card.is("DnsMode", "ManualMode")) return;
  const std::string first = card.text("Dns1");
  const std::string second = card.text("Dns2");
  if (first.empty() && second.empty())
    card.add(kDnsMissing, "DnsMode", " is ManualMode, but no name server is set");
  else if (first.empty())
    card.add(kDnsOrder, "Dns2", " is set, but Dns1 is empty");
  else if (first == second)
    card.add(kDnsOrder, "Dns2", concat(" ", quoted(second), " is that of Dns1, too"));
}

// A card without a gateway reaches its subnet; others may have one.
void checkServersReached(const Card& card) {
  if (!card.isStatic() || !card.is("DnsMode", "ManualMode") || !card.text("GateWay").empty())
    return;
  const auto subnet = settings::Subnet::of(card.text("IpAddr"), card.text("NetMask"));
  for (const char* name : {"Dns1", "Dns2"}) {
    const auto server = settings::ipv4Of(card.text(name));
    if (subnet && server && !isLoopback(*server) && !subnet->has(*server))
      card.add(kDnsUnreachable, name,
               concat(" ", card.text(name), " is not in ", subnet->text(),
                      ", and no gateway leads there"));
  }
}

void checkLink(const Card& card) {
  if (!card.is("Speed", "1000M")) return;
  if (card.is("Duplex", "Half"))
    card.add(kGigabitHalfDuplex, "Duplex", " is Half, and the speed is 1000M");
  if (card.is("Autoneg", "Off"))
    card.add(kGigabitForced, "Autoneg", " is Off, and the speed is 1000M");
}

constexpr void (*kCardChecks[])(const Card&) = {checkReach, checkServersAreHosts, checkServers,
                                                checkLink};

// What only one card may have.
struct Taken {
  std::map<std::string, const XMLElement*> addresses;
  std::map<std::string, const XMLElement*> subnets;
  const XMLElement* gateway = nullptr;

  void take(const Card& card) {
    if (!card.isStatic()) return;
    takeAddress(card);
    if (card.text("GateWay").empty()) return;
    if (gateway != nullptr)
      card.add(kTwoGateways, "GateWay",
               concat(" is a second default route: card ", clipped(gateway->Name()), " has one"));
    else
      gateway = &card.element;
  }

 private:
  void takeAddress(const Card& card) {
    const std::string address = card.text("IpAddr");
    if (address.empty()) return;
    const auto [owner, isNew] = addresses.emplace(address, &card.element);
    if (!isNew)
      return card.add(kAddressTwice, "IpAddr",
                      concat(" ", quoted(address), " is the address of card ",
                             clipped(owner->second->Name()), ", too"));
    const auto subnet = settings::Subnet::of(address, card.text("NetMask"));
    if (!subnet) return;
    const auto [other, isFirst] = subnets.emplace(subnet->text(), &card.element);
    if (!isFirst)
      card.add(
          kSubnetTwice, "IpAddr",
          concat(" is in ", subnet->text(), ", as that of card ", clipped(other->second->Name())));
  }
};

// Those without which a card with an address cannot be set up as another one.
constexpr const char* kOfAddress[] = {"Enable", "IpMode", "NetMask", "GateWay", "DnsMode", "Dns1"};

void checkComplete(const Elements& cards, Findings& findings) {
  for (const char* name : kOfAddress) {
    const auto other = std::find_if(cards.begin(), cards.end(), [&](const XMLElement* card) {
      return card->FirstChildElement(name) != nullptr;
    });
    if (other == cards.end()) continue;
    for (const XMLElement* card : cards)
      if (card->FirstChildElement("IpAddr") != nullptr && card->FirstChildElement(name) == nullptr)
        Item{*card, "card " + clipped(card->Name()), findings}.add(
            kCardFieldMissing, concat(" has no ", tag(name), ", as card ",
                                      clipped((*other)->Name()), " has: none can be stored"));
  }
}

bool asksServers(const Card& card) {
  if (card.is("Enable", "Off")) return false;
  if (card.is("DnsMode", "ManualMode")) return !card.text("Dns1").empty();
  return card.is("IpMode", "DhcpIp");
}

// Another card may ask for the whole device; servers that are set here nevertheless are not asked.
void checkAutoServers(const Card& card, bool isAnyAsking) {
  if (!card.isStatic() || !card.is("DnsMode", "AutoMode")) return;
  if (!isAnyAsking || !card.text("Dns1").empty())
    card.add(kDnsAutoStatic, "DnsMode", " is AutoMode, but the address is static");
}

// What depends on there being no other way.
void checkOnlyCard(const Elements& cards, Places& places) {
  for (const char* side : {"Cur", "Def"}) {
    Elements enabled;
    for (const XMLElement* card : cards)
      if (!Card{*card, side, places}.is("Enable", "Off")) enabled.push_back(card);
    const bool isAnyAsking =
        std::any_of(enabled.begin(), enabled.end(), [&](const XMLElement* card) {
          return asksServers({*card, side, places});
        });
    for (const XMLElement* card : enabled) checkAutoServers({*card, side, places}, isAnyAsking);
    if (enabled.size() == 1) checkServersReached({*enabled.front(), side, places});
  }
}

void checkAllOff(const Elements& cards, Places& places) {
  for (const XMLElement* card : cards)
    if (!Card{*card, "Cur", places}.is("Enable", "Off")) return;
  if (!cards.empty())
    Card{*cards.front(), "Cur", places}.add(kAllCardsOff, "Enable",
                                            " is Off, as in all other cards");
}

}  // namespace

void checkCards(const Elements& cards, Findings& findings) {
  Places places(findings);
  for (const char* side : {"Cur", "Def"}) {
    Taken taken;
    for (const XMLElement* element : cards) {
      const Card card{*element, side, places};
      for (const auto check : kCardChecks) check(card);
      taken.take(card);
    }
  }
  checkOnlyCard(cards, places);
  checkAllOff(cards, places);
  checkComplete(cards, findings);
}

}  // namespace camcfg::tool::lint
