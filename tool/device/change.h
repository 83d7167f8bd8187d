#ifndef CAMCFG_TOOL_DEVICE_CHANGE_H
#define CAMCFG_TOOL_DEVICE_CHANGE_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "device/files.h"

namespace camcfg::tool::device {

/// One change of a configuration file, made by the library.
struct Change {
  std::string path;            ///< main copy
  std::string what;            ///< what is changed, the beginning of a refusal: "System/Rtsp"
  std::size_t growth;          ///< by how many bytes the file may grow at most
  std::function<bool()> make;  ///< calls the library; false if it refused
  /// Whether a document holds what was to be changed.
  std::function<bool(tinyxml2::XMLDocument&)> arrived;
  /// What a document holds in its place, for a refusal; none: a refusal does not say that.
  std::function<std::optional<std::string>(tinyxml2::XMLDocument&)> standing{};
};

/// Makes a change and makes sure of it. Beforehand, both copies must be writable and have room;
/// afterwards, both are read again. The library itself ignores a failed write and has by then
/// emptied the main copy and copied what is left of it over the backup; in that case the previous
/// contents are written back. A change that another program's save undoes, by a document that it
/// loaded before, is made again, up to three times in all; what that program saved
/// stays.
/// @throws Refusal  in every case but that both copies hold the change
void makeChange(const Change& change);

/// The main copies that a change of several steps touches, as they were before the first.
class FormerFiles {
 public:
  /// Makes sure that all steps can be carried out as far as room and permissions go.
  /// @param growth  main copies, each with the bytes by which it may grow at most
  /// @throws Refusal  a main copy is unusable; a copy cannot be written or has no room
  explicit FormerFiles(const std::map<std::string, std::size_t>& growth);

  /// Writes the previous contents back into both copies of each file that differs from them.
  /// @return how files are left that are not as they were, a line each
  std::vector<std::string> putBack();

 private:
  std::map<std::string, Document> documents_;
};

/// A file that is to be written.
struct Writing {
  std::string path;
  std::uintmax_t bytes;  ///< free space that it needs
};

/// Why files cannot be written: a directory is missing, a file or directory may not be written to,
/// or a file system has not room enough for all that goes onto it ("no room for ..., with the
/// figures). Empty if nothing prevents it.
std::string whyNotWritable(const std::vector<Writing>& writings);

}  // namespace camcfg::tool::device

#endif
