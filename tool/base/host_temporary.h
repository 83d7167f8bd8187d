#ifndef CAMCFG_TOOL_BASE_HOST_TEMPORARY_H
#define CAMCFG_TOOL_BASE_HOST_TEMPORARY_H

#include <string>

#include "base/descriptor.h"

namespace camcfg::tool {

/// Remembers where the system that the tool was started on keeps temporary files: TMPDIR, /tmp,
/// /dev/shm. Call before the device's root is entered: from inside they are out of reach.
void rememberTemporaries();

/// A new directory among the temporary files, for this user alone. It goes with this object, with
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
