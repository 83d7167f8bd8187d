#ifndef CAMCFG_TOOL_BASE_HOST_DIRECTORY_H
#define CAMCFG_TOOL_BASE_HOST_DIRECTORY_H

#include <string>

#include "base/descriptor.h"

namespace camcfg::tool {

/// A directory named on the command line. It is opened before the device's root is entered, so it
/// stays the caller's own directory.
class HostDirectory {
 public:
  /// Opens a directory, making it first if it does not exist.
  explicit HostDirectory(const std::string& path);

  /// Saves bytes under a name, or under "NAME.1", "NAME.2" and so on where other bytes stand under
  /// that name already. The bytes are on the disk when this returns.
  /// @return where they are now, as the caller named the directory
  /// @throws Refusal
  std::string save(const std::string& name, const std::string& bytes);

 private:
  bool holds(const std::string& name, const std::string& bytes) const;
  void write(const std::string& name, const std::string& bytes);

  std::string path_;
  Descriptor descriptor_;
};

}  // namespace camcfg::tool

#endif
