#ifndef CAMCFG_TOOL_BASE_MEMORY_FILE_H
#define CAMCFG_TOOL_BASE_MEMORY_FILE_H

#include <string>

#include "base/descriptor.h"

namespace camcfg::tool {

/// A file without a name, in memory: it needs no directory and no room on the device.
class MemoryFile {
 public:
  MemoryFile();

  /// Its descriptor; below 0 if the system has none left.
  int get() const { return descriptor_.get(); }
  /// Writes a text and goes back to its beginning. False, with errno set, when that failed.
  bool fill(const std::string& text) const;
  /// All that was written to it.
  std::string contents() const;

 private:
  Descriptor descriptor_;
};

}  // namespace camcfg::tool

#endif
