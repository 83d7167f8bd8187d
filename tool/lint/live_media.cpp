#include <map>
#include <set>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/network.h"
#include "settings/subnet.h"
#include "settings/table.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using settings::Setting;
using settings::Table;
using tinyxml2::XMLElement;

using Ids = std::set<int>;

void checkChannel(const Item& item, const char* attribute, const Ids& caches) {
  const int id = settings::integerIn(item.element, attribute).value_or(-1);
  if (id != -1 && !caches.empty() && caches.count(id) == 0)
    item.addAt(kChannelMissing, attribute,
               concat(" sends channel ", id, ", which is the id of no stream cache"));
}

void checkTypes(const std::vector<Item>& channels, const std::vector<const char*>& types) {
  std::map<std::string, const XMLElement*> firsts;
  for (const Item& channel : channels) {
    if (!channel.has("Type")) continue;
    const std::string text = channel.text("Type");
    const auto type = std::find_if(types.begin(), types.end(),
                                   [&](const char* known) { return isSameWord(text, known); });
    if (type == types.end()) {
      channel.addAt(kChannelTypeUnknown, "Type",
                    concat(" has no channel of type ", quoted(text), ": it is left out"));
      continue;
    }
    const auto [first, isNew] = firsts.emplace(*type, &channel.element);
    if (!isNew)
      channel.addAt(kChannelTypeTwice, "Type",
                    concat(" has a channel of type ", *type, atLine(*first->second),
                           " already: this one is left out"));
  }
}

// The attribute that distinguishes entries; null if there is none.
const Setting* keyOf(const Table& table) {
  return table.key == nullptr ? nullptr : table.find(table.key);
}

std::string labelOf(const XMLElement& entry, const Table& table) {
  const Setting* key = keyOf(table);
  const char* attribute = key == nullptr ? "" : key->attributes.front().name;
  return tag(entry.Name()) + (has(entry, attribute) ? " " + quoted(textOf(entry, attribute)) : "");
}

void checkKeys(const Elements& entries, const Table& table, Findings& findings) {
  const Setting* key = keyOf(table);
  const std::string owner = std::string("this ") + table.entry;
  if (key == nullptr) return;
  if (key->kind == settings::Kind::Text)
    checkEqualNames(entries, key->attributes.front().name, owner, findings);
  else
    checkEqualIds(entries, owner, findings);
}

// Channels that have a place in the entry by their "Type".
void checkTypedChannels(const Item& entry, const Table& table, const Ids& caches) {
  const std::vector<const char*> types = channelTypesOf(table);
  if (types.empty()) return;
  std::vector<Item> channels;
  for (const XMLElement* channel : media::entriesOf(entry.element, {"Channel"}))
    channels.push_back({*channel, entry.name, entry.findings});
  checkTypes(channels, types);
  for (const Item& channel : channels) checkChannel(channel, "Id", caches);
}

// @param parent  how findings call what the entries are in
void checkEntries(const Elements& entries, const std::string& parent, const Table& table,
                  const Ids& caches, Findings& findings) {
  checkKeys(entries, table, findings);
  for (const XMLElement* element : entries) {
    const Item entry{*element, labelOf(*element, table), findings};
    checkTypedChannels(entry, table, caches);
    for (const Setting& setting : table.settings) {
      if (setting.isChannel && !setting.attributes.empty())
        checkChannel({*element, parent, findings}, setting.attributes.front().name, caches);
      if (setting.inner != nullptr)
        checkEntries(media::entriesOf(*element, setting.inner->elements), entry.name,
                     *setting.inner, caches, findings);
    }
  }
}

// What is left out has a value of its own that is sound.
void checkMulticast(const Item& instance) {
  if (!isSameWord(instance.text("MulticastEnable"), "true")) return;
  const auto require = [&](const char* attribute, std::string (*whyNot)(const std::string&)) {
    const std::string fault = whyNot(instance.text(attribute));
    if (instance.has(attribute) && !fault.empty())
      instance.addOf(kMulticast, attribute, ": " + clipped(fault));
  };
  require("MulticastIp", settings::whyNotMulticast);
  require("MulticastNetmask", [](const std::string& text) {
    const std::string why = settings::whyNotAMask(text);
    return why.empty() && *settings::ipv4Of(text) < settings::kAllMulticast
               ? quoted(text) + " is wider than all multicast addresses, 240.0.0.0"
               : why;
  });
}

void checkSrtMode(const Item& instance) {
  const std::string mode = instance.text("Mode");
  if (isSameWord(mode, "Listener")) {
    if (instance.has("Hostname"))
      instance.addOf(kSrtHostOfListener, "Hostname", " of a listener is not read");
  } else if (isSameWord(mode, "Caller")) {
    if (!instance.has("Hostname"))
      instance.add(kSrtCallerWithoutHost, " is a caller without \"Hostname\"");
  } else if (instance.has("Mode")) {
    instance.addOf(kSrtMode, "Mode", concat(" ", quoted(mode), " is neither Listener nor Caller"));
  }
}

void checkSrt(const Item& instance) {
  checkSrtMode(instance);
  if (!instance.text("Password").empty() && instance.element.IntAttribute("AesMode", 0) <= 0)
    instance.addAt(kSrtPasswordUnused, "Password",
                   " has a password, but no \"AesMode\" above 0 that uses it");
}

// What must be true of an entry beyond what its table says.
struct EntryCheck {
  const Table& table;
  void (*check)(const Item& entry);
};

const EntryCheck kEntryChecks[] = {{settings::ndi(), checkMulticast}, {settings::srt(), checkSrt}};

}  // namespace

void checkLiveMedia(const Source& source, Findings& findings) {
  const tinyxml2::XMLDocument& document = *source.document;
  Ids caches;
  for (const XMLElement* cache : entriesIn(document, settings::streamCaches()))
    caches.insert(cache->IntAttribute("Id", -1));
  for (const Table* table : settings::liveTables()) {
    checkForm(document, *table, findings);
    checkEntries(entriesIn(document, *table), tag(table->section), *table, caches, findings);
  }
  for (const EntryCheck& each : kEntryChecks)
    for (const XMLElement* entry : entriesIn(document, each.table))
      each.check({*entry, labelOf(*entry, each.table), findings});
}

}  // namespace camcfg::tool::lint
