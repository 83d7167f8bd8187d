#ifndef CAMCFG_TOOL_DEVICE_ROOM_H
#define CAMCFG_TOOL_DEVICE_ROOM_H

#include <cstdint>
#include <string>
#include <vector>

namespace camcfg::tool::device {

/// A file that is to be written.
struct Writing {
  std::string path;
  std::uintmax_t bytes;  ///< free space that it needs
  bool isNew = false;    ///< there is no file of this name
};

/// A file of so many bytes that replaces the one at its path: it needs room beyond what that one gives
/// back, and a name if there is none.
Writing replacing(const std::string& path, std::uintmax_t bytes);

/// How an obstacle begins that is gone when some bytes are removed.
constexpr char kNoRoom[] = "no room for ";

/// Why files cannot be written: a directory is missing, a file or directory may not be written to,
/// or a file system has not room enough for all that goes onto it ("no room for ...", with the
/// figures), or takes no more files. Empty if nothing prevents it.
std::string whyNotWritable(const std::vector<Writing>& writings);

}  // namespace camcfg::tool::device

#endif
