#ifndef CAMCFG_TOOL_DEVICE_IN_THE_WAY_H
#define CAMCFG_TOOL_DEVICE_IN_THE_WAY_H

#include <string>
#include <vector>

namespace camcfg::tool::device {

/// What has to be moved away before a file can be written at a path: a directory, a pipe or a link to
/// nothing there, or whatever is in place of its directory. Empty if nothing has to be.
std::string inTheWayOf(const std::string& path);

/// Whether two paths are of one file, or would be: by a link, a hard link or a directory that is one.
bool areOneFile(const std::string& a, const std::string& b);

/// Which of two paths of one file has to be moved away so that they are two: the link, or the directory
/// that is one; of two names of a file the second. Empty if no name can be, as of a bind mount.
std::string linkBetween(const std::string& a, const std::string& b);

/// Whether a directory of copies does not exist, and makeDirectories is going to make it.
bool isGoingToBeMade(const std::string& directory);

/// Makes the directories of main copies and backups where they do not exist on a device with files,
/// each with the owner and the permissions of the other.
/// @return those that were made
std::vector<std::string> makeDirectories();

}  // namespace camcfg::tool::device

#endif
