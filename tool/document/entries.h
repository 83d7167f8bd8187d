#ifndef CAMCFG_TOOL_DOCUMENT_ENTRIES_H
#define CAMCFG_TOOL_DOCUMENT_ENTRIES_H

#include <string>
#include <vector>

#include "base/outcome.h"
#include "document/exchange.h"
#include "settings/setting.h"

namespace camcfg::tool::document {

// Changes of single entries: sources, caches and sessions. Each reports the changes as an import does,
// and throws a Refusal before anything was written: the section does not load whole, there is no such
// entry, or another one already, or it would refer to what does not exist.

/// @param word     the key of the entry, or what says which one it is: "0", "ch1/main"
/// @param members  see assign

/// Adds an entry; members that are left out are what the library assumes.
Outcome addEntry(const settings::Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options);

/// Changes members of an entry. Its key is one of them, unless others refer to it.
Outcome setEntry(const settings::Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options);

/// Deletes an entry.
/// @param cascade  what refers to it loses the reference, and goes as well if it cannot be without;
///                 otherwise it is a Refusal with the names of those
Outcome deleteEntry(const settings::Table& table, const std::string& word, bool cascade,
                    const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
