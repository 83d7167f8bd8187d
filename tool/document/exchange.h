#ifndef CAMCFG_TOOL_DOCUMENT_EXCHANGE_H
#define CAMCFG_TOOL_DOCUMENT_EXCHANGE_H

#include <string>
#include <vector>

#include "cli/answer.h"

namespace camcfg::tool::document {

/// What may be exported by itself: groups of sections, "live", and the sections, "live.srt".
std::vector<std::string> exportNames();

/// The settings of a device as one JSON document.
/// @param names        sections, "live.srt", or groups of them, "live"; none: all
/// @param withSecrets  whether passwords are in it
/// @throws Refusal  an unknown section, or unusable files
cli::Answer exportSettings(const std::vector<std::string>& names, bool withSecrets);

/// How an import is carried out.
struct ImportOptions {
  bool rehearse = false;     ///< write nothing
  bool showSecrets = false;  ///< tell passwords in the list of changes
};

/// Brings the device to what a document holds. The document is checked as a whole before anything is
/// written, and only what differs is written.
/// @param text  the document
/// @return what was changed; with faults, or when a change failed, a status of its own and what was
///         left undone
/// @throws Refusal  the text is no JSON, or the device's files are unusable
cli::Answer importSettings(const std::string& text, const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
