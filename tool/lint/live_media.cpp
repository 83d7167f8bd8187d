#include <arpa/inet.h>
#include <strings.h>

#include <map>
#include <set>

#include "lint/media_form.h"
#include "lint/stream.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/network.h"
#include "settings/table.h"

namespace camcfg::tool::lint {

using settings::Table;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kChannelMissing{"channel-missing", Severity::Warning,
                               "A service sends a channel that is the id of no stream cache.",
                               "<Channel Id=\"9\" Name=\"video\"/> without a <Cache Id=\"9\">"};
constexpr Rule kTypeUnknown{"channel-type-unknown", Severity::Warning,
                            "The channel is of none of the types that the service has, and is left "
                            "out.",
                            "<Channel Id=\"0\" Type=\"Data\"/>"};
constexpr Rule kTypeTwice{"channel-type-twice", Severity::Warning,
                          "The service has one channel of each type: the first is taken.",
                          "<Channel Id=\"0\" Type=\"Video\"/><Channel Id=\"1\" Type=\"Video\"/>"};
constexpr Rule kSrtMode{"srt-mode", Severity::Error,
                        "\"Mode\" is neither Listener nor Caller, so the whole section does not "
                        "load.",
                        "<Instance Id=\"0\" Mode=\"Rendezvous\" Port=\"9000\">"};
constexpr Rule kCallerWithoutHost{"srt-caller-without-host", Severity::Error,
                                  "A caller has no \"Hostname\", so the whole section does not "
                                  "load.",
                                  "<Instance Id=\"0\" Mode=\"Caller\" Port=\"9000\">"};
constexpr Rule kHostOfListener{"srt-host-of-listener", Severity::Warning,
                               "\"Hostname\" of a listener is not read, and the next save drops "
                               "it.",
                               "<Instance Id=\"0\" Mode=\"Listener\" Hostname=\"a\" ...>"};
constexpr Rule kNoEncryption{"srt-password-unused", Severity::Warning,
                             "An \"AesMode\" of 0, less or none sends without encryption, whatever "
                             "the password.",
                             "<Instance Id=\"0\" Mode=\"Listener\" Port=\"9000\" "
                             "Password=\"secret\">"};

constexpr Rule kMulticast{"multicast", Severity::Error,
                          "An instance is sent by multicast to what is no multicast address, by no "
                          "netmask, or for no time that a packet can live; the library stores "
                          "whatever it is given.",
                          "<Instance MulticastEnable=\"true\" MulticastIp=\"192.0.2.1\" ...>"};

using Ids = std::set<int>;

constexpr unsigned kMulticastPrefix = 0xe;  // 224.0.0.0/4

bool isWord(const std::string& text, const char* word) {
  return strcasecmp(text.c_str(), word) == 0;
}

void checkChannel(const XMLElement& element, const char* attribute, const std::string& owner,
                  const Ids& caches, Findings& findings) {
  int id = -1;
  if (element.QueryIntAttribute(attribute, &id) != tinyxml2::XML_SUCCESS || id == -1) return;
  if (!caches.empty() && caches.count(id) == 0)
    findings.add(
        kChannelMissing, element, attribute,
        owner + " sends channel " + std::to_string(id) + ", which is the id of no stream cache");
}

void checkTypes(const Elements& channels, const std::string& owner,
                const std::vector<const char*>& types, Findings& findings) {
  std::map<std::string, const XMLElement*> firsts;
  for (const XMLElement* channel : channels) {
    if (!has(*channel, "Type")) continue;
    const std::string text = textOf(*channel, "Type");
    const char* found = nullptr;
    for (const char* type : types)
      if (isWord(text, type)) found = type;
    if (found == nullptr) {
      findings.add(kTypeUnknown, *channel, "Type",
                   owner + " has no channel of type " + quoted(text) + ": it is left out");
      continue;
    }
    const auto [first, isNew] = firsts.emplace(found, channel);
    if (!isNew)
      findings.add(kTypeTwice, *channel, "Type",
                   owner + " has a channel of type " + found + atLine(*first->second) +
                       " already: this one is left out");
  }
}

// The attribute that distinguishes entries; null if there is none.
const settings::Setting* keyOf(const Table& table) {
  return table.key == nullptr ? nullptr : table.find(table.key);
}

std::string labelOf(const XMLElement& entry, const Table& table) {
  const settings::Setting* key = keyOf(table);
  const char* attribute = key == nullptr ? "" : key->attributes.front().name;
  return tag(entry.Name()) + (has(entry, attribute) ? " " + quoted(textOf(entry, attribute)) : "");
}

void checkKeys(const Elements& entries, const Table& table, Findings& findings) {
  const settings::Setting* key = keyOf(table);
  const std::string owner = std::string("this ") + table.entry;
  if (key == nullptr) return;
  if (key->kind == settings::Kind::Text)
    checkEqualNames(entries, key->attributes.front().name, owner, findings);
  else
    checkEqualIds(entries, owner, findings);
}

// Channels that have a place in the entry by their "Type".
void checkTypedChannels(const XMLElement& entry, const Table& table, const Ids& caches,
                        Findings& findings) {
  const std::vector<const char*> types = channelTypesOf(table);
  if (types.empty()) return;
  const Elements channels = entriesOf(entry, "Channel");
  const std::string label = labelOf(entry, table);
  checkTypes(channels, label, types, findings);
  for (const XMLElement* channel : channels) checkChannel(*channel, "Id", label, caches, findings);
}

void checkEntries(const Elements& entries, const std::string& parent, const Table& table,
                  const Ids& caches, Findings& findings) {
  checkKeys(entries, table, findings);
  for (const XMLElement* entry : entries) {
    checkTypedChannels(*entry, table, caches, findings);
    for (const settings::Setting& setting : table.settings) {
      if (setting.isChannel && !setting.attributes.empty())
        checkChannel(*entry, setting.attributes.front().name, parent, caches, findings);
      if (setting.inner != nullptr)
        checkEntries(entriesOf(*entry, setting.inner->elements.front()), labelOf(*entry, table),
                     *setting.inner, caches, findings);
    }
  }
}

bool isMulticast(const std::string& text) {
  in_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1 &&
         ntohl(address.s_addr) >> 28 == kMulticastPrefix;
}

// What is left out has a value of its own that is sound.
void checkMulticast(const XMLElement& instance, const std::string& name, Findings& findings) {
  if (!isWord(textOf(instance, "MulticastEnable"), "true")) return;
  const std::string label = name + ": ";
  const std::string ip = textOf(instance, "MulticastIp");
  if (has(instance, "MulticastIp") && !isMulticast(ip))
    findings.add(kMulticast, instance, "MulticastIp",
                 label + "\"MulticastIp\": " + quoted(ip) + " is no multicast address");
  const std::string fault = settings::whyNotAMask(textOf(instance, "MulticastNetmask"));
  if (has(instance, "MulticastNetmask") && !fault.empty())
    findings.add(kMulticast, instance, "MulticastNetmask",
                 label + "\"MulticastNetmask\": " + clipped(fault));
  const settings::Setting& timeToLive = *settings::ndi().find("multicastTtl");
  const int life = instance.IntAttribute("MulticastTTL", 1);
  if (life < timeToLive.limits.least || life > timeToLive.limits.most)
    findings.add(kMulticast, instance, "MulticastTTL",
                 label + "\"MulticastTTL\": " + std::to_string(life) + " is outside " +
                     permittedFor(timeToLive));
}

void checkSrtMode(const XMLElement& instance, const std::string& label, Findings& findings) {
  const std::string mode = textOf(instance, "Mode");
  if (isWord(mode, "Listener")) {
    if (has(instance, "Hostname"))
      findings.add(kHostOfListener, instance, "Hostname",
                   label + ": \"Hostname\" of a listener is not read");
  } else if (isWord(mode, "Caller")) {
    if (!has(instance, "Hostname"))
      findings.add(kCallerWithoutHost, instance, label + " is a caller without \"Hostname\"");
  } else if (has(instance, "Mode")) {
    findings.add(kSrtMode, instance, "Mode",
                 label + ": \"Mode\" " + quoted(mode) + " is neither Listener nor Caller");
  }
}

void checkSrtInstance(const XMLElement& instance, const std::string& label, Findings& findings) {
  checkSrtMode(instance, label, findings);
  int port = -1;
  if (instance.QueryIntAttribute("Port", &port) == tinyxml2::XML_SUCCESS && port != -1)
    requirePort(instance, "Port", port, label, findings);
  if (!textOf(instance, "Password").empty() && instance.IntAttribute("AesMode", 0) <= 0)
    findings.add(kNoEncryption, instance, "Password",
                 label + " has a password, but no \"AesMode\" above 0 that uses it");
}

// What must be true of an entry beyond what its table says.
struct EntryCheck {
  const Table& table;
  void (*check)(const XMLElement& entry, const std::string& label, Findings& findings);
};

const EntryCheck kEntryChecks[] = {{settings::ndi(), checkMulticast},
                                   {settings::srt(), checkSrtInstance}};

void check(const Source& source, Findings& findings) {
  const XMLDocument& document = *source.document;
  Ids caches;
  for (const XMLElement* cache : cachesIn(document)) caches.insert(cache->IntAttribute("Id", -1));
  for (const Table* table : settings::liveTables()) {
    const XMLElement* section = sectionOf(document, *table);
    if (section == nullptr) continue;
    checkSection(*section, *table, findings);
    checkEntries(entriesOf(document, *table), tag(table->section), *table, caches, findings);
  }
  for (const EntryCheck& each : kEntryChecks)
    for (const XMLElement* entry : entriesOf(document, each.table))
      each.check(*entry, labelOf(*entry, each.table), findings);
}

}  // namespace

Subject liveMedia() {
  return {"live media",
          {&kChannelMissing, &kTypeUnknown, &kTypeTwice, &kSrtMode, &kCallerWithoutHost,
           &kHostOfListener, &kNoEncryption, &kMulticast},
          Kind::Media,
          check};
}

}  // namespace camcfg::tool::lint
