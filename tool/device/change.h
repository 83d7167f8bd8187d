#ifndef CAMCFG_TOOL_DEVICE_CHANGE_H
#define CAMCFG_TOOL_DEVICE_CHANGE_H

#include <tinyxml2.h>

#include <functional>
#include <string>

namespace camcfg::tool::device {

/// One change of a configuration file, made by the library.
struct Change {
  std::string path;            ///< main copy
  std::string what;            ///< what is changed, in front of a refusal: "System/Rtsp"
  std::size_t growth;          ///< by how many bytes the file may grow at most
  std::function<bool()> make;  ///< calls the library; false if it refused
  /// Whether a document holds what was to be changed.
  std::function<bool(tinyxml2::XMLDocument&)> arrived;
};

/// Makes a change and makes sure of it. Beforehand, both copies must be writable and have room;
/// afterwards, both are read again. The library itself ignores a failed write and has by then
/// emptied the main copy and copied what is left of it over the backup; in that case the former
/// contents are written back.
/// @throws Refusal  in every case but that both copies hold the change
void makeChange(const Change& change);

/// How a file is left that was to be put back.
struct Left {
  bool asItWas;
  std::string text;  ///< "its former contents are back"
};

/// Writes former contents back into both copies of a file, if its main copy has others.
Left putBack(const std::string& path, tinyxml2::XMLDocument& former);

}  // namespace camcfg::tool::device

#endif
