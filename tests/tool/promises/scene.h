#ifndef CAMCFG_TESTS_TOOL_PROMISES_SCENE_H
#define CAMCFG_TESTS_TOOL_PROMISES_SCENE_H

#include <array>
#include <ostream>
#include <string>

namespace camcfg::tests {

/// What a copy of a file is.
enum class Kind {
  Good,
  OtherGood,  ///< good, with another value in it
  Missing,
  Damaged,
  Empty,
  NoElement,
  Directory,
  Pipe,
  LinkToOther,  ///< to the backup; of a backup or a factory copy, to the main copy
  HardLink,     ///< a second name of that copy; missing where that is not a file
  DanglingLink,
  LinkElsewhere,  ///< to a good file that is no copy
  Unreadable,
};
constexpr int kKinds = 13;

void PrintTo(Kind kind, std::ostream* out);

/// What a directory of copies is.
enum class DirectoryKind { There, Missing, File, DanglingLink, LinkToOther };
constexpr int kDirectoryKinds = 5;

using Kinds = std::array<Kind, 3>;  // main copy, backup, factory copy

constexpr const char* kNames[] = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};
constexpr const char* kDirectories[] = {"/cfg0", "/cfg1", "/app/resource/defcfg"};

/// A device in some state, for a process that has a scratch device as its root.
struct Scene {
  std::array<Kinds, 3> files{};  ///< of each name
  std::array<DirectoryKind, 3> directories{};

  /// Makes the device, whatever was there before.
  void layOut() const;
};

void PrintTo(const Scene& scene, std::ostream* out);

/// Whether a path is of a regular file that holds an element, in the eyes of an XML parser.
bool holdsElement(const std::string& path);

}  // namespace camcfg::tests

#endif
