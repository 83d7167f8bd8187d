#ifndef CAMCFG_TOOL_DEVICE_SALVAGE_ENTRIES_H
#define CAMCFG_TOOL_DEVICE_SALVAGE_ENTRIES_H

#include <string>
#include <vector>

#include "base/json.h"
#include "device/salvage_copy.h"
#include "settings/setting.h"

namespace camcfg::tool::device {

/// A list of entries of a file: a section of the media file, or the presets.
struct EntryList {
  std::string place;                       ///< in documents: "live.srt"
  std::string key;                         ///< member that distinguishes entries
  std::vector<std::string_view> outer;     ///< elements that it is in, the innermost first
  const settings::Settings* settings;      ///< of an entry
  const settings::Table* table = nullptr;  ///< null: of presets

  std::vector<std::string> names{};  ///< of elements that are in it anywhere

  /// Whether an element of this name is one of its entries.
  bool isEntry(std::string_view name) const;
  /// Whether an element of this name may be in it, as an entry or inside of one.
  bool knows(std::string_view name) const;
};

/// An element that may become an entry.
struct Candidate {
  const EntryList* list;
  std::size_t copy;  ///< its index
  const FoundElement* element;
  Json record{};        ///< as documents have it
  std::string fault{};  ///< why it is not permitted; empty if it is

  /// Its text, on its own.
  std::string text() const { return std::string(element->all); }
};

/// Fills in records and faults: what the library loads and an import would take is permitted.
void judge(std::vector<Candidate>& candidates);

}  // namespace camcfg::tool::device

#endif
