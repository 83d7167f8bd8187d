#ifndef CAMCFG_TOOL_DOCUMENT_COMPARISON_H
#define CAMCFG_TOOL_DOCUMENT_COMPARISON_H

#include <string>

#include "cli/answer.h"
#include "device/file_set.h"

namespace camcfg::tool::document {

// Each tells what differs, setting by setting, from the main copies. What cannot be compared is told
// and left out.
//
// The answers' status: done where nothing differs, refused (1) where something does, and trouble,
// that of a usage error (2), where something could not be compared.

/// @param other  which copies: the backups or the factory set
/// @throws Refusal if the copies cannot be read at all
cli::Answer compareWithCopies(device::Place other, bool showSecrets);

/// @param text  an exported document; sections and parameters that it does not hold are not compared
/// @throws Refusal  the text is no JSON, or the device's files are unusable
cli::Answer compareWithDocument(const std::string& text, bool showSecrets);

}  // namespace camcfg::tool::document

#endif
