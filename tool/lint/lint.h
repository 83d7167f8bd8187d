#ifndef CAMCFG_TOOL_LINT_LINT_H
#define CAMCFG_TOOL_LINT_LINT_H

#include <string>
#include <vector>

#include "base/host.h"
#include "device/files.h"
#include "device/save.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

/// What a file configures, and so which readers it has.
enum class FileKind { Unknown, Parameters, Presets, Media, Language };

/// A file to look at.
struct Source {
  std::string name;  ///< as findings call it
  FileKind kind = FileKind::Unknown;
  bool isRead = false;      ///< its bytes could be read
  std::string fault;        ///< why not, or why the library does not load it though it is sound
  std::string bytes;        ///< as its author wrote it
  device::Document parsed;  ///< what they are, sound or not, unless the library loaded the file
  const tinyxml2::XMLDocument* document = nullptr;  ///< what readers get; null if nothing
  const device::ConfigFile* copies = nullptr;       ///< of a file of the device that has copies
  bool isOfDevice = false;  ///< it is where the device reads it, so its directories count

  /// Whether it is well-formed and holds an element.
  bool isWhole() const { return document != nullptr && document->FirstChildElement() != nullptr; }
};

/// Whether a file is an HTML page, as servers answer in place of what is not there.
bool isWebPage(const Source& source);

/// Files of the host: whatever their names, their contents show what they are.
std::vector<Source> sourcesOf(const std::vector<HostFile>& files);

/// The files of a device, loaded through the library: the main copies and the language files.
/// @param set  its configuration files; must outlive what is returned
std::vector<Source> sourcesOf(const device::FileSet& set);

/// Main copies of a device as if they held these bytes.
std::vector<Source> sourcesOf(const std::vector<device::Contents>& files);

/// What all rules find in files: by file, then by line.
std::vector<Finding> lint(const std::vector<Source>& sources);

// The checks, each in the file of its subject. That of the structure, that of the text and that of the
// copies look at all files, whole or not; the others at whole files of their kind.
void checkStructure(const Source& source, Findings& findings);
void checkText(const Source& source, Findings& findings);
void checkParameterNames(const Source& source, Findings& findings);
void checkParameterValues(const Source& source, Findings& findings);
void checkSystemSettings(const Source& source, Findings& findings);
void checkNetwork(const Source& source, Findings& findings);
void checkPresets(const Source& source, Findings& findings);
void checkStreams(const Source& source, Findings& findings);
void checkUses(const Source& source, Findings& findings);
void checkWhitelists(const Source& source, Findings& findings);
void checkLiveMedia(const Source& source, Findings& findings);
void checkLanguage(const Source& source, Findings& findings);
void checkCopies(const Source& source, Findings& findings);
void checkKinds(const Source& source, Findings& findings);
void checkServices(const Source& source, Findings& findings);
void checkSystemPorts(const Source& source, Findings& findings);

// What must be true of several files together. Each source has its findings at the same position.
void checkPortsOfAll(const std::vector<Source>& sources, std::vector<Findings>& findings);
void checkLanguages(const std::vector<Source>& sources, std::vector<Findings>& findings);
void checkTranslations(const std::vector<Source>& sources, std::vector<Findings>& findings);

}  // namespace camcfg::tool::lint

#endif
