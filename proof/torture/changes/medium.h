#ifndef CAMCFG_TORTURE_CHANGES_MEDIUM_H
#define CAMCFG_TORTURE_CHANGES_MEDIUM_H

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "torture/changes/bench.h"

namespace camcfg::torture {

/// Something that a run did to the files of a device.
struct Operation {
  enum Kind { Create, MakeDirectory, Truncate, Write, Rename, Remove, Flush } kind;
  int file = -1;           ///< that it is about, whatever its name was and will be
  std::string path{};      ///< of a name that is made or goes
  std::string toPath{};    ///< Rename
  std::size_t offset = 0;  ///< Write; Truncate: the size
  std::string bytes{};     ///< Write
};

/// What became of an operation when power failed before it was flushed.
enum class Survival {
  Whole,
  None,
  Zeros,  ///< Write: the file is as long as with it, the bytes are not there
  Half,   ///< Write: the first half of the bytes is
};

/// A medium: files, and the names that they have. A file may have been written and have no name.
class Medium {
 public:
  explicit Medium(const Tree& tree);

  /// The file of this name; below 0 if there is none.
  int fileOf(const std::string& path) const;
  int newFile(bool isDirectory);
  void apply(const Operation& operation, Survival survival = Survival::Whole);
  Tree tree() const;

 private:
  struct File {
    bool isDirectory = false;
    std::string bytes;
  };

  void write(const Operation& operation, Survival survival);

  std::map<std::string, int> names_;
  std::vector<File> files_;
};

/// What runs of the tool, one after the other, do to a device.
class Recording {
 public:
  /// @param start  what the device holds, locks apart
  Recording(const Bench& bench, const Tree& start);

  Run run(const Words& words);
  const std::vector<Operation>& operations() const { return operations_; }
  /// What the device must hold now if nothing was overlooked.
  Tree tree() const { return medium_.tree(); }

 private:
  void note(const DeviceCall& call, std::int64_t result);
  void noteOpening(const DeviceCall& call);
  void noteWriting(const DeviceCall& call, std::size_t size);
  void noteChange(const DeviceCall& call);
  void add(Operation operation);

  const Bench& bench_;
  Medium medium_;
  std::vector<Operation> operations_;
};

}  // namespace camcfg::torture

#endif
