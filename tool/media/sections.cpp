#include "media/sections.h"

#include <algorithm>

#include "base/library_console.h"
#include "media/cache_losses.h"
#include "media/losses.h"
#include "media/media.h"

namespace camcfg::tool::media {
namespace {

using device::Plan;
using device::Section;
using device::Step;
using settings::Node;
using settings::Table;

constexpr int kNoCache = -1;

bool holds(const Json& entries, const char* key, const Json& sought) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const Json& entry) { return entry.at(key) == sought; });
}

// What an entry refers to must be there once all sections are written.
void checkReferences(const Node& entries, const Table& table, Plan& plan) {
  for (const settings::Setting& setting : table.settings) {
    if (setting.refersTo == nullptr) continue;
    const Json& others = plan.of(setting.refersTo->place);
    for (std::size_t i = 0; i < entries.value().size(); ++i) {
      const Node value = entries.element(i).member(setting.member);
      if (!holds(others, setting.refersTo->key, value.value()))
        value.refuse("there is no " + std::string(setting.refersTo->entry) + " " +
                     value.value().dump());
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
Step replacing(const Table& table, const Json& after) {
  const auto arrived = [&table, after](tinyxml2::XMLDocument&) {
    return loadEntries(table) == after;
  };
  const auto store = [&table, after] {
    return heard([&] { return table.calls.store(table, after); }) == 0;
  };
  return device::stepOf({CFG_FILE_MPP, table.place, device::roomFor(after), store, arrived});
}

Section sectionOf(const Table& table) {
  return {table.place,
          [&table] { return loadEntries(table); },
          [&table](const Node& node, const Json&, Plan& plan) {
            return readEntries(table, node, plan);
          },
          [&table](const Json&, const Json& after) {
            return std::vector<Step>{replacing(table, after)};
          },
          [&table] { return lossNotes(table); },
          CFG_FILE_MPP,
          &table};
}

}  // namespace

std::vector<Section> sections() {
  std::vector<Section> all;
  for (const Table* table : settings::mediaTables()) {
    all.push_back(sectionOf(*table));
    // Saving caches marks, too.
    if (table == &settings::streamCaches())
      all.back().losses = [] { return dumpNotes(readCaches(), kNoCache); };
  }
  return all;
}

}  // namespace camcfg::tool::media
