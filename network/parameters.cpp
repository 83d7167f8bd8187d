#include "network/parameters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "network/section.h"
#include "support/text.h"

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

struct Word {
  std::int32_t value;
  const char* text;
};
constexpr Word kSwitch[] = {{BU_FALSE, "Off"}, {BU_TRUE, "On"}};
constexpr Word kDuplex[] = {{LINK_DUPLEX_HALF, "Half"}, {LINK_DUPLEX_FULL, "Full"}};
constexpr Word kSpeed[] = {
    {LINK_SPEED_10M, "10M"}, {LINK_SPEED_100M, "100M"}, {LINK_SPEED_1000M, "1000M"}};
constexpr Word kIpMode[] = {{IP_MODE_DHCP, "DhcpIp"}, {IP_MODE_STATIC, "StaticIp"}};
constexpr Word kDnsMode[] = {{DNS_MODE_AUTO, "AutoMode"}, {DNS_MODE_MANUAL, "ManualMode"}};

void setCurrent(XMLElement& element, const char* text) {
  element.SetAttribute("Cur", text);
}

// A field whose terminator is missing ends with its last byte.
template <std::size_t Size>
std::array<char, Size> terminated(const char (&field)[Size]) {
  std::array<char, Size> text;
  std::memcpy(text.data(), field, Size);
  text.back() = '\0';
  return text;
}

// What is done with a value that has no word.
enum Unknown { LeaveElement, WriteFirstWord };

// The kinds of fields. Each writes an element from its field and reads its field from a text.
template <auto Field, const auto& Words, Unknown unknown = LeaveElement>
struct OneOf {
  static void write(XMLElement& element, const Record& record) {
    for (const Word& word : Words)
      if (word.value == record.*Field) return setCurrent(element, word.text);
    if (unknown == WriteFirstWord) setCurrent(element, Words[0].text);
  }
  static void read(Record& record, const char* text) {
    using Value = std::decay_t<decltype(record.*Field)>;
    for (const Word& word : Words)
      if (std::strcmp(word.text, text) == 0) record.*Field = static_cast<Value>(word.value);
  }
};

// Anything but the word for on is read as off.
template <auto Field, Unknown unknown = LeaveElement>
struct Switch : OneOf<Field, kSwitch, unknown> {
  static void read(Record& record, const char* text) {
    record.*Field = std::strcmp(text, "On") == 0 ? BU_TRUE : BU_FALSE;
  }
};

template <auto Field>
struct Text {
  static void write(XMLElement& element, const Record& record) {
    setCurrent(element, terminated(record.*Field).data());
  }
  static void read(Record& record, const char* text) { copyText(record.*Field, text); }
};

template <auto Field>
struct InterfaceName {
  static void write(XMLElement& element, const Record& record) {
    setCurrent(element, CFG_NETWORK_IntfEthName2XmlStr(terminated(record.*Field).data()));
  }
  static void read(Record& record, const char* text) {
    copyText(record.*Field, CFG_NETWORK_IntfXmlStr2EthName(text));
  }
};

template <auto Field>
struct Integer {
  static void write(XMLElement& element, const Record& record) {
    element.SetAttribute("Cur", record.*Field);
  }
  static void read(Record& record, const char* text) {
    record.*Field = static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
  }
};

// How an element's name is compared when it is written; it is read by its whole name.
enum class Match { Beginning, Whole };

struct Parameter {
  const char* name;
  Match match;
  void (*write)(XMLElement& element, const Record& record);
  void (*read)(Record& record, const char* text);
};

template <typename Field>
constexpr Parameter row(const char* name, Match match) {
  return {name, match, &Field::write, &Field::read};
}

// In the order in which a name is recognised.
// Deliberate: most names match by their beginning when written, but all by the whole when read, so
// "EnableWifi" is written as "Enable" and never read. [network-names-written]
// Deliberate: an unknown "Enable" is left alone, while any "Autoneg" but 1 is written as "Off".
// [autoneg-off]
constexpr Parameter kParameters[] = {
    row<Switch<&Record::enEnable>>("Enable", Match::Beginning),
    row<Switch<&Record::enAutoneg, WriteFirstWord>>("Autoneg", Match::Beginning),
    row<OneOf<&Record::enDuplex, kDuplex>>("Duplex", Match::Beginning),
    row<OneOf<&Record::enSpeed, kSpeed>>("Speed", Match::Beginning),
    row<Integer<&Record::s32MTU>>("MTU", Match::Whole),
    row<InterfaceName<&Record::acIntf>>("Intf", Match::Beginning),
    row<OneOf<&Record::enIpMode, kIpMode>>("IpMode", Match::Beginning),
    row<Text<&Record::acIpAddr>>("IpAddr", Match::Beginning),
    row<Text<&Record::acNetMask>>("NetMask", Match::Beginning),
    row<Text<&Record::acGateWay>>("GateWay", Match::Beginning),
    row<OneOf<&Record::enDnsMode, kDnsMode>>("DnsMode", Match::Beginning),
    row<Text<&Record::acDns1>>("Dns1", Match::Beginning),
    row<Text<&Record::acDns2>>("Dns2", Match::Beginning),
    row<Text<&Record::acDnsSearch>>("DnsSearch", Match::Whole),
    row<Text<&Record::acDhcpDns1>>("DhcpDns1", Match::Whole),
    row<Text<&Record::acDhcpDns2>>("DhcpDns2", Match::Whole),
};
static_assert(std::size(kParameters) == 16, "one row for each field of the record");

bool isNamed(const Parameter& parameter, const char* name) {
  return std::strcmp(name, parameter.name) == 0;
}

bool isWrittenTo(const Parameter& parameter, const char* name) {
  return parameter.match == Match::Beginning ? beginsWith(name, parameter.name)
                                             : isNamed(parameter, name);
}

}  // namespace

void writeParameter(XMLElement& element, const Record& record) {
  for (const Parameter& parameter : kParameters)
    if (isWrittenTo(parameter, element.Value())) return parameter.write(element, record);
}

void readParameter(Record& record, const XMLElement& element, const char* attribute) {
  for (const Parameter& parameter : kParameters)
    if (isNamed(parameter, element.Value()))
      return parameter.read(record, textOrEmpty(element, attribute));
}

}  // namespace camcfg
