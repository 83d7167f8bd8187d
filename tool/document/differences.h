#ifndef CAMCFG_TOOL_DOCUMENT_DIFFERENCES_H
#define CAMCFG_TOOL_DOCUMENT_DIFFERENCES_H

#include <string>

#include "base/outcome.h"
#include "device/file_set.h"

namespace camcfg::tool::document {

/// Adds what is different between two states of a place to an array: objects of "place", "before"
/// and "after", null where there is nothing. Records in a list are distinguished by their "id",
/// else by their "name", else by their position; "live.srt[1].port" is of the one with the id 1.
void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found);

// Each reports what differs, setting by setting, from the main copies: objects of "place", "device"
// and "other". What cannot be compared is reported and left out. The status is done where nothing
// differs, refused (1) where something does, and that of a usage error (2), or unusable, where
// something could not be compared.

/// @param other  which copies: the backups or the factory set
/// @throws Refusal if the copies cannot be read at all
Outcome compareWithCopies(device::Place other, bool showSecrets);

/// @param text  an exported document; sections and parameters that it does not hold are not compared
/// @throws Refusal  the text is no JSON, or the device's files are unusable
Outcome compareWithDocument(const std::string& text, bool showSecrets);

}  // namespace camcfg::tool::document

#endif
