#ifndef CAMCFG_TOOL_DEVICE_DIRECTORY_H
#define CAMCFG_TOOL_DEVICE_DIRECTORY_H

#include <string>
#include <vector>

namespace camcfg::tool::device {

/// The names of the regular files in a directory, sorted; none if it cannot be opened.
std::vector<std::string> filesIn(const std::string& directory);

/// The names of everything in a directory, sorted; none if it cannot be opened.
std::vector<std::string> namesIn(const std::string& directory);

/// Whether a name ends with ".xml".
bool isXmlName(const std::string& name);

}  // namespace camcfg::tool::device

#endif
