#include "network/network.h"
#include "base/concat.h"

#include <camcfg/network.h>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/card.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

using tinyxml2::XMLElement;

Json currentOf(XMLElement& card, const char* field) {
  return network::attributeOf(network::childOf(card, field), "Cur");
}

Json recordOf(XMLElement& card, bool listed) {
  const std::string interface = network::interfaceOf(card);
  return {{"card", card.Value()},
          {"interface", interface.empty() ? Json() : Json(interface)},
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
      answer.notes.push_back(concat("note: the library lists ", name, " as ", cards.acCard[index]));
    ++index;
  }
  if (!unlisted.empty())
    answer.notes.push_back(concat("note: the library lists the first ", CFG_NETWORK_CARDS_MAX,
                                  " cards only, without ", joined(unlisted)));
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

Answer shown(const network::Network& network, XMLElement& card, bool factory) {
  Answer answer;
  answer.value = {{"card", card.Value()}, {"factory", factory}};
  Fields fields;
  for (const settings::Setting& setting : settings::cardSettings()) {
    const char* name = settings::elementOf(setting);
    answer.value["fields"][name] =
        network::attributeOf(network::childOf(card, name), factory ? "Def" : "Cur");
    fields.fields.push_back({name, concat("{fields/", name, "}")});
  }
  answer.layout = {fields};
  const XMLElement& found = network.lookup(card);
  if (&found == &card)
    tellMisread(answer, card, factory);
  else
    answer.notes.push_back(concat("note: applications that ask for ", card.Value(), " get ",
                                  found.Value(),
                                  ", since another name that begins with it comes first"));
  return answer;
}

// Each card after its name and its interface.
Answer showAll(const network::Network& network, bool factory) {
  Answer answer;
  answer.value = Json::array();
  std::string text;
  for (XMLElement* card : network.cards()) {
    const Answer one = shown(network, *card, factory);
    text +=
        concat(text.empty() ? "" : "\n", network::withInterface(*card), "\n", cli::renderText(one));
    answer.value.push_back(one.value);
    answer.notes.insert(answer.notes.end(), one.notes.begin(), one.notes.end());
  }
  answer.layout = {Verbatim{text}};
  return answer;
}

Answer show(const Arguments& arguments) {
  const bool factory = arguments.given(kFactory);
  const network::Network network;
  return arguments.given(kCard) ? shown(network, network.require(arguments.text(kCard)), factory)
                                : showAll(network, factory);
}

network::ChangeOptions changeOptions(const Arguments& arguments, bool force = false) {
  return {force, arguments.given(kDryRun)};
}

device::Turn turnFor(const Arguments& arguments) {
  return device::Turn(filesFor(arguments, {CFG_FILE_BUSINESS}));
}

Answer withDryRun(Answer answer, const Arguments& arguments) {
  if (arguments.given(kDryRun)) answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

Answer setOneField(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.texts(kFieldValue);
  if (words.size() != 2)
    throw Refusal(Status::Usage, words.size() == 1
                                     ? concat("which value? give ", words.front(), "=VALUE")
                                     : "give FIELD=VALUE for each, or FIELD VALUE");
  const device::Turn turn = turnFor(arguments);
  return withDryRun(
      Answer(network::setNetworkField(arguments.text(kCard), words[0], words[1],
                                      changeOptions(arguments, arguments.given(kForce))),
             {Line{"{card}/{field}: {before} -> {value}"}}),
      arguments);
}

Answer setFields(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.texts(kFieldValue);
  if (words.front().find('=') == std::string::npos) return setOneField(arguments);
  const device::Turn turn = turnFor(arguments);
  return changed(document::setCard(arguments.text(kCard), words, arguments.given(kForce),
                                   {arguments.given(kDryRun), false}),
                 kSoAlready);
}

Answer resetCard(const Arguments& arguments) {
  const device::Turn turn = turnFor(arguments);
  Answer answer(network::resetCard(arguments.text(kCard), changeOptions(arguments)));
  if (answer.value["changed"].empty())
    answer.layout = {Line{"{card}: it has its factory values already"}};
  else
    answer.layout = {Table{"changed", {{"FIELD", "{field}"}, {"VALUE", "{before}", "{value}"}}}};
  return withDryRun(std::move(answer), arguments);
}

Answer hostname(const Arguments& arguments) {
  if (arguments.given(kName)) {
    const device::Turn turn = turnFor(arguments);
    return withDryRun(
        Answer(network::setHostname(arguments.text(kName),
                                    changeOptions(arguments, arguments.given(kForce))),
               {Line{"hostname: {before} -> {hostname}"}}),
        arguments);
  }
  const network::Network network;
  Answer answer;
  answer.value["hostname"] = network::attributeOf(&network.section(), "Hostname");
  if (answer.value["hostname"].is_null()) throw Refusal("no host name is set");
  answer.layout = {Line{"{hostname}"}};
  return answer;
}

const Option kWholeCard{Option::Argument, kCard, "A card's name, or its interface",
                        cardOrInterfaceWords};

std::string fieldsHelp() {
  return "Fields of a card:\n" + membersHelp(settings::cardSettings(), settings::elementOf);
}

std::string assignmentsHelp() {
  return concat(
      "Fields of a card; those that 'network show' lists are known by these names, too:\n",
      membersHelp(settings::plainCardSettings(),
                  [](const settings::Setting& setting) { return setting.member; }),
      "\nA PREFIX is the length of the netmask. 'address', 'netmask' and 'gateway' mean\n"
      "mode=static, 'dns' means dnsMode=manual, and mode=dhcp means dnsMode=auto unless\n"
      "the servers are given. A gateway must be in the subnet of the address.\n");
}

}  // namespace

CommandGroup networkGroup() {
  return {"Network",
          {withDetails(
               command("network", "Show and change the network cards and the host name", nullptr),
               fieldsHelp),
           command("network cards", "List the cards", cards),
           command("network show", "Show the settings of a card, or of all", show,
                   {{Option::OptionalArgument, kCard,
                     "A card's name, or its interface; without it all cards are shown",
                     cardOrInterfaceWords},
                    {Option::Flag, kFactory, "Show the factory values"}}),
           withDetails(
               changer("network set", "Set fields of a card with one save", setFields,
                       {kWholeCard,
                        {Option::Arguments, kFieldValue,
                         "A field as below and its value; or FIELD VALUE as 'network show' prints "
                         "them, which is checked by itself only"},
                        dryRun(),
                        {Option::Flag, kForce,
                         "Store a text or MTU that a card cannot use, or a gateway outside the "
                         "subnet"}}),
               assignmentsHelp),
           changer("network reset", "Put the factory values of a card back", resetCard,
                   {kWholeCard, dryRun()}),
           changer("network hostname", "Show or set the host name", hostname,
                   {{Option::OptionalArgument, kName, "The new name; without it the name is shown",
                     anyWord},
                    dryRun(),
                    {Option::Flag, kForce, "Store a text that is not a host name"}})}};
}

}  // namespace camcfg::tool::commands
