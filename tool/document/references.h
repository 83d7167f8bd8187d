#ifndef CAMCFG_TOOL_DOCUMENT_REFERENCES_H
#define CAMCFG_TOOL_DOCUMENT_REFERENCES_H

#include <string>
#include <utility>
#include <vector>

#include "base/json.h"
#include "settings/setting.h"

namespace camcfg::tool::document {

// What entries of the media sections refer to: sessions to caches, caches to sources.

/// The entries of all sections with their tables, in the order of the sections.
using Entries = std::vector<std::pair<const settings::Table*, Json>>;

/// Those of one of the tables.
Json& entriesOf(const settings::Table& table, Entries& all);

/// The tables of entries that a setting names by their keys; null if it names none.
const settings::Table* referredBy(const settings::Setting& setting);

/// Puts keys where a record refers to entries by what says which one they are: 12 for "program". What is
/// the name of none, or of several, stays as it is.
void resolveNames(const settings::Settings& settings, const Entries& all, Json& record);

/// What an entry refers to that does not exist: "there is no stream cache 99; did you mean 12
/// (program)?".
/// @param place  of the entry, the beginning of the faults' places: "live.srt[1]"
settings::Faults danglingIn(const settings::Table& table, const std::string& place,
                            const Json& entry, const Entries& all);

/// The same of all entries of a table.
settings::Faults allDanglingIn(const settings::Table& table, const Entries& all);

/// "; did you mean 12 (program)?" of the entry that comes nearest to a key, or to what says which one it
/// is; empty if none comes near.
std::string nearestEntry(const settings::Table& table, const Json& sought, const Json& entries);

/// Takes an entry away, from whatever refers to it the reference, and what cannot be without it.
/// @return the names of those: "RTSP session 'ch1/main'"
std::vector<std::string> takeAway(const settings::Table& table, const Json& key, Entries& all);

/// "RTSP session 'ch1/main'", "SRT instance 0"
std::string nameOf(const settings::Table& table, const Json& key);

}  // namespace camcfg::tool::document

#endif
