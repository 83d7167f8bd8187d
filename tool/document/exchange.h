#ifndef CAMCFG_TOOL_DOCUMENT_EXCHANGE_H
#define CAMCFG_TOOL_DOCUMENT_EXCHANGE_H

#include <functional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "device/explanation.h"
#include "document/document.h"

namespace camcfg::tool::document {

/// How an export is made.
struct ExportOptions {
  bool withSecrets = true;  ///< passwords are in it
  bool isPartial = false;   ///< what cannot be read is left out, and named in the notes
  bool isChanged = false;   ///< only what differs from the factory set
};

/// The settings of a device as one JSON document.
/// @param names  what sections are called, see sectionNames; none: all
/// @throws Refusal  an unknown section, or unusable files
Outcome exportSettings(const std::vector<std::string>& names, const ExportOptions& options);

/// How an import is carried out.
struct ImportOptions {
  bool rehearse = false;     ///< write nothing
  bool showSecrets = false;  ///< show passwords in the list of changes
  bool force = false;        ///< set what can be forced
};

/// How many entries of a section are deleted.
struct Deletion {
  std::string section;  ///< "live.rtsp"
  std::size_t entries;
};

/// Brings the device to what a document holds. The document is checked as a whole before anything is
/// written, and only what differs is written.
/// @param text            the document
/// @param beforeDeleting  called when all is ready for it and entries are going to be deleted, or would be
///                        if this was no rehearsal; may throw a Refusal to prevent it
/// @return what was changed, in one shape whatever came of it: "changed", "mode", "changes", "faults",
///         "findings"; with faults, or when a change failed, a status of its own and what was left
///         undone
/// @throws Refusal  see readDocument
Outcome importSettings(const std::string& text, Mode mode, const ImportOptions& options,
                       const std::function<void(const std::vector<Deletion>&)>& beforeDeleting);

/// Brings sections to what they are to be, all of them or none: a step that fails has those before
/// it put back. A target with faults changes nothing.
/// @return "changes"; unless it is a rehearsal, what was "written" and "notWritten", and in a status
///         of its own, why; or the "faults"
Outcome carriedOut(const Target& target, const ImportOptions& options);

// Each reset puts factory values back, all or none, and reports the changes as an import does:
// those of the factory set, for parameters and cards without one there their "Def". They throw a
// Refusal, before anything was written: the files are unusable or cannot be written, what is named
// does not exist or has no factory value, or the library's lookup would hit something else.

/// @param place, name  see parameters::Parameters::requireAt
Outcome resetParameter(const std::string& place, const std::string& name,
                       const ImportOptions& options);

/// @param name  a section of parameters, "System", of which "NetWork" is the cards and the host
///              name; or a section of an export, "live.srt", or a group of them, "live"
Outcome resetSection(const std::string& name, const ImportOptions& options);

/// Everything that an export holds.
Outcome resetAll(const ImportOptions& options);

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

/// What is known of a stream source or cache, or of a session of a live media service.
/// @param kind  "source", "cache", "websocket", "rtsp", "rtmp", "ndi" or "srt"
/// @param id    its id; an RTSP session's name
/// @throws Refusal  an unknown kind; no copy has such a session
device::Explanation explainSession(const std::string& kind, const std::string& id,
                                   bool showSecrets);

}  // namespace camcfg::tool::document

#endif
