#ifndef CAMCFG_TOOL_DEVICE_FORMER_FILES_H
#define CAMCFG_TOOL_DEVICE_FORMER_FILES_H

#include <map>
#include <string>
#include <vector>

#include "device/copy.h"

namespace camcfg::tool::device {

/// The main copies that a change of several steps touches, as they were before the first.
class FormerFiles {
 public:
  /// Makes sure that all steps can be carried out as far as room and permissions go.
  /// @param growth  main copies, each with the bytes by which it may grow at most
  /// @throws Refusal  a main copy is unusable; a copy cannot be written or has no room
  explicit FormerFiles(const std::map<std::string, std::size_t>& growth);

  /// Writes the former contents back into both copies of each file that differs from them.
  /// @return how files are left that are not as they were, a line each
  std::vector<std::string> putBack();

 private:
  std::map<std::string, Document> documents_;
};

}  // namespace camcfg::tool::device

#endif
