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

  /// Saves bytes under a name, or under "NAME.1", "NAME.2" and so on if that name is taken
  /// by other bytes already. The bytes are on the disk when this returns.
  /// @return where they are now, as the caller named the directory
  /// @throws Refusal
  std::string save(const std::string& name, const std::string& bytes);

 private:
  bool holds(const std::string& name, const std::string& bytes) const;
  void write(const std::string& name, const std::string& bytes);

  std::string path_;
  Descriptor descriptor_;
};

/// Remembers where the system that the tool was started on keeps temporary files: TMPDIR, /tmp,
/// /dev/shm. Call before the device's root is entered: from inside they are out of reach.
void rememberTemporaries();

/// A new directory among the temporary files, for this user only. It goes with this object, with
/// all that was written into it.
class HostTemporary {
 public:
  /// @throws Refusal if no directory for temporary files can be written to
  HostTemporary();
  ~HostTemporary();
  HostTemporary(const HostTemporary&) = delete;
  HostTemporary& operator=(const HostTemporary&) = delete;

  /// Writes a file "DIRECTORY/NAME" below it, the directory being made if it is missing.
  /// @throws Refusal
  void write(const std::string& directory, const std::string& name, const std::string& text) const;

  /// Makes it the root of this process; for a child process, since there is no way back.
  /// @return an empty text, or what went wrong
  std::string enter() const;

 private:
  std::string name_;
  int parent_;  // a descriptor of the directory that it is in
  Descriptor descriptor_;
};

}  // namespace camcfg::tool

#endif
