#include <algorithm>
#include <set>

#include "base/concat.h"
#include "base/elements.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/calm.h"
#include "media/readable.h"
#include "media/stream_cache.h"
#include "settings/secrets.h"

namespace camcfg::tool::media {
namespace {

using device::Change;
using device::Plan;
using settings::ElementForm;
using settings::Node;
using settings::Table;
using tinyxml2::XMLElement;

// Why the library cannot load a section, of which it has kept so many entries.
[[noreturn]] void refuseLoad(const Table& table, std::size_t kept, const std::string& complaint) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const XMLElement& section = requireSection(*document, table);
  const std::vector<const XMLElement*> elements = entriesOf(section, table.elements);
  throw Refusal(Status::Unusable,
                concat(mediaPlace(kept < elements.size() ? *elements[kept] : section), ": ",
                       complaint.empty() ? "out of memory" : complaint));
}

// The entries that the library loads; over a fault, it has kept those before the faulty one.
template <typename Entries, typename Load>
Entries loadedOnce(const Table& table, Load load) {
  Entries entries;
  forgetComplaint();
  if (heard([&] { return load(entries); }) == 0) return entries;
  table.calls.closeRead();
  refuseLoad(table, entries.size(), lastComplaint());
}

template <typename Entries, typename Load>
Entries loaded(const Table& table, Load load) {
  return device::calmly([&] { return loadedOnce<Entries>(table, load); },
                        [](const Entries&) { return false; });
}

std::set<Json> keysOf(const Json& entries, const Table& table) {
  std::set<Json> keys;
  for (const Json& entry : entries) keys.insert(entry.at(table.key));
  return keys;
}

// What an entry refers to must be there once all sections are written, unless it is missing already.
void checkReferences(const Node& entries, const Table& table, Plan& plan) {
  for (const settings::Setting& setting : table.settings) {
    if (setting.refersTo == nullptr || setting.kind == settings::Kind::Ids) continue;
    const std::set<Json> planned = keysOf(plan.of(setting.refersTo->place), *setting.refersTo);
    const std::set<Json> present = keysOf(plan.present(setting.refersTo->place), *setting.refersTo);
    for (const Node& entry : entries.elements(table.key)) {
      const Node value = entry.member(setting.member);
      const bool wasMissing = value.isHeld() && present.count(value.value()) == 0;
      if (planned.count(value.value()) == 0 && !wasMissing)
        value.refuse(concat("there is no ", setting.refersTo->entry, " ", value.value().dump()));
    }
  }
}

Json readEntries(const Table& table, const Node& node, Plan& plan) {
  const std::size_t faults = node.faults();
  Json entries = table.calls.read(table, node);
  if (node.faults() == faults) checkReferences(node, table, plan);
  return entries;
}

// The one change that replaces all entries.
Change replacing(const Table& table, const Json& after) {
  const auto arrived = [&table, after](tinyxml2::XMLDocument&) {
    return loadEntries(table) == after;
  };
  const auto store = [&table, after] {
    return heard([&] { return table.calls.store(table, after); }) == 0;
  };
  return {CFG_FILE_MPP, table.place, store, arrived};
}

device::Section sectionOf(const Table& table) {
  const auto load = [&table] { return loadEntries(table); };
  const auto read = [&table](const Node& node, const Json&, Plan& plan) {
    return readEntries(table, node, plan);
  };
  const auto changes = [&table](const Json&, const Json& after, bool /*force*/) {
    return std::vector<Change>{replacing(table, after)};
  };
  // Saving caches marks, too.
  const auto losses = [&table] {
    return &table == &settings::streamCaches() ? cacheLossNotes(readCaches()) : lossNotes(table);
  };
  const auto readable = [&table, load] { return asFarAsReadable(load, &table); };
  const auto replacement = [&table](const Json& after) {
    Change change = replacing(table, after);
    change.make = [&table, store = std::move(change.make)] {
      return ensureSection(table) && store();
    };
    return std::vector<Change>{change};
  };
  return {table.place, load, read, changes, CFG_FILE_MPP, &table, readable, replacement, losses};
}

}  // namespace

const XMLElement* sectionIn(const tinyxml2::XMLDocument& document, const Table& table) {
  const XMLElement* top = document.FirstChildElement(table.parent);
  return top == nullptr ? nullptr : top->FirstChildElement(table.section);
}

std::string whyMissing(const tinyxml2::XMLDocument& document, const Table& table) {
  const XMLElement* top = document.FirstChildElement(table.parent);
  return concat(CFG_FILE_MPP, " has no <", table.parent, ">",
                top == nullptr ? "" : concat("<", table.section, ">"));
}

XMLElement& requireSection(tinyxml2::XMLDocument& document, const Table& table) {
  XMLElement* top = document.FirstChildElement(table.parent);
  XMLElement* section = top == nullptr ? nullptr : top->FirstChildElement(table.section);
  if (section == nullptr) throw Refusal(Status::Unusable, whyMissing(document, table));
  return *section;
}

std::vector<const XMLElement*> entriesOf(const XMLElement& parent,
                                         const std::vector<const char*>& names) {
  std::vector<const XMLElement*> entries;
  for (const XMLElement* child : childrenOf(parent))
    if (std::any_of(names.begin(), names.end(),
                    [&](const char* name) { return isSameWord(child->Name(), name); }))
      entries.push_back(child);
  return entries;
}

const ElementForm* formOf(const XMLElement& element, const std::vector<ElementForm>& forms) {
  const auto found = std::find_if(forms.begin(), forms.end(), [&](const ElementForm& form) {
    return isSameWord(element.Name(), form.name);
  });
  return found == forms.end() ? nullptr : &*found;
}

std::string mediaPlace(const tinyxml2::XMLNode& node) {
  return concat(CFG_FILE_MPP, ":", node.GetLineNum());
}

Json loadEntries(const Table& table) {
  return loaded<Json>(table, [&](Json& entries) { return table.calls.load(table, entries); });
}

std::list<StreamCache> loadStreamCaches() {
  return loaded<std::list<StreamCache>>(settings::streamCaches(), CFG_MPP_LoadStreamCacheConfig);
}

Json shownEntries(const Table& table, bool showSecrets) {
  const Json entries = loadEntries(table);
  return showSecrets ? entries : settings::withMaskedSecrets(entries, table.settings);
}

std::vector<device::Section> sections() {
  std::vector<device::Section> all;
  for (const Table* table : settings::mediaTables()) all.push_back(sectionOf(*table));
  return all;
}

}  // namespace camcfg::tool::media
