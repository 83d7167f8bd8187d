#include "network/parameters.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "base/text.h"
#include "base/xml_edit.h"
#include "network/section.h"

namespace camcfg {
namespace {

using Record = tagNETWORK_CFG_S;
using tinyxml2::XMLElement;

static_assert(offsetof(Record, enEnable) == 0);
static_assert(offsetof(Record, acIntf) == 4);
static_assert(offsetof(Record, enIpMode) == 20);
static_assert(offsetof(Record, acIpAddr) == 24);
static_assert(offsetof(Record, acNetMask) == 56);
static_assert(offsetof(Record, acGateWay) == 88);
static_assert(offsetof(Record, enDnsMode) == 120);
static_assert(offsetof(Record, acDns1) == 124);
static_assert(offsetof(Record, acDns2) == 156);
static_assert(offsetof(Record, acDnsSearch) == 188);
static_assert(offsetof(Record, acDhcpDns1) == 220);
static_assert(offsetof(Record, acDhcpDns2) == 252);
static_assert(offsetof(Record, enAutoneg) == 284);
static_assert(offsetof(Record, enSpeed) == 288);
static_assert(offsetof(Record, enDuplex) == 292);
static_assert(offsetof(Record, s32MTU) == 296);
static_assert(sizeof(Record) == 300);

constexpr char kCurrent[] = "Cur";

// What a field holds. Those of the kinds that are no text are integers of 32 bits.
enum class Kind : std::uint8_t { Switch, Duplex, Speed, IpMode, DnsMode, Integer, Text, Interface };

// The words for the values of a kind.
struct Word {
  std::int32_t value;
  Kind kind;
  char text[11];
};
constexpr Word kWords[] = {
    {BU_FALSE, Kind::Switch, "Off"},
    {BU_TRUE, Kind::Switch, "On"},
    {LINK_DUPLEX_HALF, Kind::Duplex, "Half"},
    {LINK_DUPLEX_FULL, Kind::Duplex, "Full"},
    {LINK_SPEED_10M, Kind::Speed, "10M"},
    {LINK_SPEED_100M, Kind::Speed, "100M"},
    {LINK_SPEED_1000M, Kind::Speed, "1000M"},
    {IP_MODE_DHCP, Kind::IpMode, "DhcpIp"},
    {IP_MODE_STATIC, Kind::IpMode, "StaticIp"},
    {DNS_MODE_AUTO, Kind::DnsMode, "AutoMode"},
    {DNS_MODE_MANUAL, Kind::DnsMode, "ManualMode"},
};

// How an element's name is compared when it is written; it is read by its whole name.
enum class Match : std::uint8_t { Beginning, Whole };

// Texts are in the rows themselves: a pointer to each would cost more, since the loader has to
// relocate it.
struct Parameter {
  char name[10];
  Match match;
  Kind kind;
  std::uint16_t offset;  // of its field
  char otherwise[4];     // written for a value that has no word; empty: the element is left alone
};

// In the order in which a name is recognised.
// Deliberate: most names match by their beginning when written, but all by the whole when read, so
// "EnableWifi" is written as "Enable" and never read. [network-names-written]
// Deliberate: an unknown "Enable" is left alone, while any "Autoneg" but 1 is written as "Off".
// [autoneg-off]
constexpr Parameter kParameters[] = {
    {"Enable", Match::Beginning, Kind::Switch, offsetof(Record, enEnable), ""},
    {"Autoneg", Match::Beginning, Kind::Switch, offsetof(Record, enAutoneg), "Off"},
    {"Duplex", Match::Beginning, Kind::Duplex, offsetof(Record, enDuplex), ""},
    {"Speed", Match::Beginning, Kind::Speed, offsetof(Record, enSpeed), ""},
    {"MTU", Match::Whole, Kind::Integer, offsetof(Record, s32MTU), ""},
    {"Intf", Match::Beginning, Kind::Interface, offsetof(Record, acIntf), ""},
    {"IpMode", Match::Beginning, Kind::IpMode, offsetof(Record, enIpMode), ""},
    {"IpAddr", Match::Beginning, Kind::Text, offsetof(Record, acIpAddr), ""},
    {"NetMask", Match::Beginning, Kind::Text, offsetof(Record, acNetMask), ""},
    {"GateWay", Match::Beginning, Kind::Text, offsetof(Record, acGateWay), ""},
    {"DnsMode", Match::Beginning, Kind::DnsMode, offsetof(Record, enDnsMode), ""},
    {"Dns1", Match::Beginning, Kind::Text, offsetof(Record, acDns1), ""},
    {"Dns2", Match::Beginning, Kind::Text, offsetof(Record, acDns2), ""},
    {"DnsSearch", Match::Whole, Kind::Text, offsetof(Record, acDnsSearch), ""},
    {"DhcpDns1", Match::Whole, Kind::Text, offsetof(Record, acDhcpDns1), ""},
    {"DhcpDns2", Match::Whole, Kind::Text, offsetof(Record, acDhcpDns2), ""},
};
static_assert(std::size(kParameters) == 16, "one row for each field of the record");

std::size_t roomOf(const Parameter& parameter) {
  return parameter.kind == Kind::Interface ? sizeof Record::acIntf : sizeof Record::acIpAddr;
}

std::int32_t valueOf(const Parameter& parameter, const Record& record) {
  std::int32_t value;
  std::memcpy(&value, reinterpret_cast<const char*>(&record) + parameter.offset, sizeof value);
  return value;
}

char* fieldOf(const Parameter& parameter, Record& record) {
  return reinterpret_cast<char*>(&record) + parameter.offset;
}

void setValue(const Parameter& parameter, Record& record, std::int32_t value) {
  std::memcpy(fieldOf(parameter, record), &value, sizeof value);
}

bool writeWord(const Parameter& parameter, XMLElement& element, std::int32_t value) {
  const char* text = parameter.otherwise;
  for (const Word& word : kWords)
    if (word.kind == parameter.kind && word.value == value) text = word.text;
  return text[0] == '\0' || setAttribute(element, kCurrent, text);
}

// A field whose terminator is missing ends with its last byte.
bool writeText(const Parameter& parameter, XMLElement& element, const Record& record) {
  char text[CFG_NETWORK_TEXT_SIZE];
  const std::size_t room = roomOf(parameter);
  std::memcpy(text, reinterpret_cast<const char*>(&record) + parameter.offset, room);
  text[room - 1] = '\0';
  return setAttribute(element, kCurrent,
                      parameter.kind == Kind::Text ? text : CFG_NETWORK_IntfEthName2XmlStr(text));
}

// A text that is no word of its kind is the word for off, or leaves the field as it was.
void readWord(const Parameter& parameter, Record& record, const char* text) {
  if (parameter.kind == Kind::Switch) setValue(parameter, record, BU_FALSE);
  for (const Word& word : kWords)
    if (word.kind == parameter.kind && std::strcmp(word.text, text) == 0)
      setValue(parameter, record, word.value);
}

bool isNamed(const Parameter& parameter, const char* name) {
  return std::strcmp(name, parameter.name) == 0;
}

bool isWrittenTo(const Parameter& parameter, const char* name) {
  return parameter.match == Match::Beginning ? beginsWith(name, parameter.name)
                                             : isNamed(parameter, name);
}

const Parameter* findNamed(const char* name) {
  for (const Parameter& parameter : kParameters)
    if (isNamed(parameter, name)) return &parameter;
  return nullptr;
}

bool write(const Parameter& parameter, XMLElement& element, const Record& record) {
  if (parameter.kind >= Kind::Text) return writeText(parameter, element, record);
  const std::int32_t value = valueOf(parameter, record);
  return parameter.kind == Kind::Integer ? setAttribute(element, kCurrent, value)
                                         : writeWord(parameter, element, value);
}

}  // namespace

bool writeParameter(XMLElement& element, const Record& record) {
  for (const Parameter& parameter : kParameters)
    if (isWrittenTo(parameter, element.Value())) return write(parameter, element, record);
  return true;
}

void readParameter(Record& record, const XMLElement& element, const char* attribute) {
  const Parameter* parameter = findNamed(element.Value());
  if (parameter == nullptr) return;
  const char* text = textOrEmpty(element, attribute);
  if (parameter->kind >= Kind::Text)
    setParameter(record, parameter->name,
                 parameter->kind == Kind::Text ? text : CFG_NETWORK_IntfXmlStr2EthName(text));
  else if (parameter->kind == Kind::Integer)
    setValue(*parameter, record, static_cast<std::int32_t>(std::strtol(text, nullptr, 10)));
  else
    readWord(*parameter, record, text);
}

void setParameter(Record& record, const char* name, std::int32_t value) {
  setValue(*findNamed(name), record, value);
}

void setParameter(Record& record, const char* name, const char* text) {
  const Parameter& parameter = *findNamed(name);
  copyText(fieldOf(parameter, record), roomOf(parameter), text);
}

}  // namespace camcfg
