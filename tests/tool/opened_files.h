#ifndef CAMCFG_TESTS_TOOL_OPENED_FILES_H
#define CAMCFG_TESTS_TOOL_OPENED_FILES_H

#include <functional>
#include <map>
#include <string>

namespace camcfg::tests {

/// Who opens files for reading, and how often.
struct OpenedFiles {
  std::map<std::string, int> onDevice;   ///< by their paths on the device
  std::map<std::string, int> elsewhere;  ///< the same, of processes that have another root
  int status = 0;                        ///< what the program ended with
};

/// Follows a program, and all processes that it starts, to its end.
/// @param root    the device, as the host sees it
/// @param become  makes the calling process the program
OpenedFiles filesOpenedBy(const std::string& root, const std::function<void()>& become);

}  // namespace camcfg::tests

#endif
