#ifndef CAMCFG_TOOL_DEVICE_SHARED_FILES_H
#define CAMCFG_TOOL_DEVICE_SHARED_FILES_H

#include <map>
#include <string>
#include <vector>

#include "device/files.h"

namespace camcfg::tool::device {

/// Which copies of a device's files are one file: by a link, a hard link or a directory that is one.
class SharedFiles {
 public:
  /// Of the files that the directories hold now.
  SharedFiles();
  /// @param moved  paths that are taken as moved away
  explicit SharedFiles(const FileSet& set, const std::vector<std::string>& moved = {});

  /// Whether a path is one of those that are moved away, or in a directory that is.
  bool isMoved(const std::string& path) const;

  /// The same for paths of one file only, also before there is a file.
  const std::string& identity(const std::string& path) const { return identities_.at(path); }

  /// The paths of all copies that are this one's file, this one among them; main copies first.
  std::vector<std::string> copiesOfSame(const std::string& path) const;

  /// Of those, the first of a file with another name; empty if there is none. Writing this copy would
  /// replace that file's settings. A factory copy that is a link has none of its own.
  std::string ofAnotherName(const std::string& path) const;

 private:
  void add(const std::string& path);

  std::vector<std::string> moved_;
  std::map<std::string, std::string> identities_;
  std::vector<std::string> paths_;
};

/// The link through which the path of a copy leads to another file: the path itself or its directory.
/// Empty if neither is a link.
std::string linkAt(const std::string& path);

/// Where that link leads; a path without one leads to itself.
std::string targetOf(const std::string& path);

/// How a path that is written through is refused: "/cfg1/a.xml is the same file as /cfg0/b.xml; move it
/// away".
std::string sameFileFault(const std::string& path, const std::string& other);

}  // namespace camcfg::tool::device

#endif
