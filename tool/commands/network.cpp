#include "network/network.h"

#include <camcfg/network.h>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

using tinyxml2::XMLElement;

Json currentOf(XMLElement& card, const char* field) {
  return network::attributeOf(network::childOf(card, field), "Cur");
}

Json interfaceOf(XMLElement& card) {
  const Json word = currentOf(card, "Intf");
  const std::string name =
      word.is_null() ? "" : CFG_NETWORK_IntfXmlStr2EthName(word.get<std::string>().c_str());
  return name.empty() ? Json() : Json(name);
}

Json recordOf(XMLElement& card, bool listed) {
  return {{"card", card.Value()},
          {"interface", interfaceOf(card)},
          {"enable", currentOf(card, "Enable")},
          {"ipMode", currentOf(card, "IpMode")},
          {"ipAddr", currentOf(card, "IpAddr")},
          {"listed", listed}};
}

// What the library's list lacks.
void tellUnlisted(Answer& answer, const tagNETWORK_CARDS_S& cards) {
  std::vector<std::string> unlisted;
  std::size_t index = 0;
  for (const Json& record : answer.value) {
    const std::string& name = record["card"].text();
    if (!record["listed"].get<bool>())
      unlisted.push_back(name);
    else if (name != cards.acCard[index])
      answer.notes.push_back("note: the library lists " + name + " as " + cards.acCard[index]);
    ++index;
  }
  if (!unlisted.empty())
    answer.notes.push_back("note: the library lists the first " +
                           std::to_string(CFG_NETWORK_CARDS_MAX) + " cards only, without " +
                           joined(unlisted));
}

Answer cards(const Arguments& /*arguments*/) {
  const network::Network network;
  tagNETWORK_CARDS_S listed{};
  if (CFG_NETWORK_GetCards(&listed) != 0) throw Refusal("the library cannot list the cards");
  Answer answer;
  answer.value = Json::array();
  for (XMLElement* card : network.cards())
    answer.value.push_back(
        recordOf(*card, static_cast<int>(answer.value.size()) < listed.s32Count));
  answer.layout = {Table{"",
                         {{"CARD", "{card}"},
                          {"INTERFACE", "{interface}"},
                          {"ENABLE", "{enable}"},
                          {"IPMODE", "{ipMode}"},
                          {"IPADDR", "{ipAddr}"}}}};
  tellUnlisted(answer, listed);
  return answer;
}

// Values that applications read differently from what is in the file.
void tellMisread(Answer& answer, const XMLElement& card, bool factory) {
  tagNETWORK_CFG_S record{};
  const std::string name = card.Value();
  (factory ? CFG_NETWORK_GetAllParamDef : CFG_NETWORK_GetAllParamCur)(device::argument(name),
                                                                      &record);
  for (const auto& [field, text] : answer.value["fields"].items()) {
    const std::string read = settings::take(*settings::cardSettingOf(field), &record);
    if (text.is_null() || text == read) continue;
    answer.notes.push_back(std::string("note: applications read ")
                               .append(name)
                               .append("/")
                               .append(field)
                               .append(" as ")
                               .append(read.empty() ? "nothing" : quoted(read)));
  }
}

Answer show(const Arguments& arguments) {
  const bool factory = arguments.given(kFactory);
  const network::Network network;
  XMLElement& card = network.require(arguments.text(kCard));
  Answer answer;
  answer.value = {{"card", card.Value()}, {"factory", factory}};
  Fields fields;
  for (const settings::Setting& setting : settings::cardSettings()) {
    const char* name = settings::elementOf(setting);
    answer.value["fields"][name] =
        network::attributeOf(network::childOf(card, name), factory ? "Def" : "Cur");
    fields.fields.push_back({name, std::string("{fields/") + name + "}"});
  }
  answer.layout = {fields};
  const XMLElement& found = network.lookup(card);
  if (&found == &card)
    tellMisread(answer, card, factory);
  else
    answer.notes.push_back(std::string("note: applications that ask for ") + card.Value() +
                           " get " + found.Value() +
                           ", since another name that begins with it comes first");
  return answer;
}

Answer set(const Arguments& arguments) {
  const device::Turn turn({CFG_FILE_BUSINESS});
  return Answer(network::setNetworkField(arguments.text(kCard), arguments.text(kField),
                                         arguments.text(kValue), arguments.given(kForce)),
                {Line{"{card}/{field}: {before} -> {value}"}});
}

Answer reset(const Arguments& arguments) {
  const device::Turn turn({CFG_FILE_BUSINESS});
  Answer answer(network::resetCard(arguments.text(kCard)));
  if (answer.value["changed"].empty())
    answer.layout = {Line{"{card}: it has its factory values already"}};
  else
    answer.layout = {Table{"changed", {{"FIELD", "{field}"}, {"VALUE", "{before}", "{value}"}}}};
  return answer;
}

Answer hostname(const Arguments& arguments) {
  if (arguments.given(kName)) {
    const device::Turn turn({CFG_FILE_BUSINESS});
    return Answer(network::setHostname(arguments.text(kName), arguments.given(kForce)),
                  {Line{"hostname: {before} -> {hostname}"}});
  }
  const network::Network network;
  Answer answer;
  answer.value["hostname"] = network::attributeOf(&network.section(), "Hostname");
  if (answer.value["hostname"].is_null()) throw Refusal("no host name is set");
  answer.layout = {Line{"{hostname}"}};
  return answer;
}

const Option kWholeCard{Option::Argument, kCard, "Whole name of a card"};

std::string fieldsHelp() {
  return "Fields of a card:\n" + membersHelp(settings::cardSettings(), settings::elementOf);
}

}  // namespace

CommandGroup networkGroup() {
  return {
      "Network",
      {withDetails(
           command("network", "Show and change the network cards and the host name", nullptr),
           fieldsHelp),
       command("network cards", "List the cards", cards),
       command("network show", "Show the settings of a card", show,
               {kWholeCard, {Option::Flag, kFactory, "Show the factory values"}}),
       withDetails(changer("network set", "Set one field of a card", set,
                           {kWholeCard,
                            {Option::Argument, kField, "A field as 'network show' names it"},
                            {Option::Argument, kValue, "A word, a number, an address or a text"},
                            {Option::Flag, kForce, "Store a text or MTU that a card cannot use"}}),
                   fieldsHelp),
       changer("network reset", "Put the factory values of a card back", reset, {kWholeCard}),
       changer("network hostname", "Show or set the host name", hostname,
               {{Option::OptionalArgument, kName, "The new name; without it the name is shown",
                 anyWord},
                {Option::Flag, kForce, "Store a text that is not a host name"}})}};
}

}  // namespace camcfg::tool::commands
