#ifndef CAMCFG_TOOL_DOCUMENT_EXCHANGE_H
#define CAMCFG_TOOL_DOCUMENT_EXCHANGE_H

#include <string>
#include <vector>

#include "base/outcome.h"
#include "document/document.h"

namespace camcfg::tool::document {

/// What may be exported by itself: groups of sections, "live", and the sections, "live.srt".
std::vector<std::string> exportNames();

/// The settings of a device as one JSON document.
/// @param names        sections, "live.srt", or groups of them, "live"; none: all
/// @param withSecrets  whether passwords are in it
/// @throws Refusal  an unknown section, or unusable files
Outcome exportSettings(const std::vector<std::string>& names, bool withSecrets);

/// How an import is carried out.
struct ImportOptions {
  bool rehearse = false;     ///< write nothing
  bool showSecrets = false;  ///< show passwords in the list of changes
};

/// Brings the device to what a document holds. The document is checked as a whole before anything is
/// written, and only what differs is written.
/// @param text  the document
/// @return what was changed; with faults, or when a change failed, a status of its own and what was
///         left undone
/// @throws Refusal  the text is no JSON, or the device's files are unusable
Outcome importSettings(const std::string& text, const ImportOptions& options);

/// What comes of settings that cannot be carried out: their faults, and that nothing was changed.
Outcome refusedFor(const settings::Faults& faults);

/// Brings sections from one state to another, all of them or none: a step that fails has those
/// before it put back.
/// @return "changes"; unless it is a rehearsal, what was "written" and "notWritten", and in a status
///         of its own, why
Outcome carriedOut(const std::vector<Transition>& transitions, const ImportOptions& options);

// Each reset puts factory values back, all or none, and reports the changes as an import does:
// those of the factory set, for parameters and cards without one there their "Def". They throw a
// Refusal, before anything was written: the files are unusable or cannot be written, what is named
// does not exist or has no factory value, or the library's lookup would hit something else.

Outcome resetParameter(const std::string& section, const std::string& name,
                       const ImportOptions& options);

/// @param name  a section of parameters, "System", of which "NetWork" is the cards and the host
///              name; or a section of an export, "live.srt", or a group of them, "live"
Outcome resetSection(const std::string& name, const ImportOptions& options);

/// Everything that an export holds.
Outcome resetAll(const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
