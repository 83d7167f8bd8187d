#ifndef CAMCFG_TOOL_DOCUMENT_RESET_H
#define CAMCFG_TOOL_DOCUMENT_RESET_H

#include <string>

#include "document/exchange.h"

namespace camcfg::tool::document {

// Each puts factory values back, all or none, and tells the changes as an import does: those of the
// factory set, for parameters and cards without one there their "Def". They throw a Refusal, before
// anything was written: the files are unusable or cannot be written, what is named does not exist
// or has no factory value, or the library's lookup would hit something else.

cli::Answer resetParameter(const std::string& section, const std::string& name,
                           const ImportOptions& options);

/// @param name  a section of parameters, "System", of which "NetWork" is the cards and the host
///              name; or a section of an export, "live.srt", or a group of them, "live"
cli::Answer resetSection(const std::string& name, const ImportOptions& options);

/// Everything that an export holds.
cli::Answer resetAll(const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
