#ifndef CAMCFG_TOOL_DEVICE_DRAFT_H
#define CAMCFG_TOOL_DEVICE_DRAFT_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "device/files.h"
#include "device/journal.h"
#include "device/save.h"

namespace camcfg::tool::device {

/// One change of a configuration file, made by the library. Its functions are called on a copy of the
/// device, in a process of their own: of what they change there, only the files count.
struct Change {
  std::string path;            ///< main copy
  std::string what;            ///< what is changed, the beginning of a refusal: "System/Rtsp"
  std::function<bool()> make;  ///< calls the library; false if it refused
  /// Whether a document holds what was to be changed.
  std::function<bool(tinyxml2::XMLDocument&)> arrived;
  /// What a document holds in its place, for a refusal; none: a refusal does not say that.
  std::function<std::optional<std::string>(tinyxml2::XMLDocument&)> standing{};
  /// What the file counts as holding before the change where its main copy is damaged; empty: it must
  /// not be.
  std::string instead{};
};

/// The change that makes a file what it is given here, byte for byte.
Change changeTo(const Contents& file, const std::string& instead = "");

/// Whether the bytes of a file are replaced, since they are of no use to start from.
bool isReplaced(const std::optional<std::string>& bytes, const Change& change);

/// What changes make of the files as they are now, by the library's own calls. Nothing of the device
/// is changed.
/// @throws Refusal  a main copy is unusable, or the library does not make one of the changes
std::vector<FileChange> draftOf(const std::vector<Change>& changes);

}  // namespace camcfg::tool::device

#endif
