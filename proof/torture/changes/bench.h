#ifndef CAMCFG_TORTURE_CHANGES_BENCH_H
#define CAMCFG_TORTURE_CHANGES_BENCH_H

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "torture/changes/commands.h"
#include "torture/harness/device.h"
#include "torture/tracer/followed.h"

namespace camcfg::torture {

/// Files by their paths from the device's root, none for a directory.
using Tree = std::map<std::string, std::optional<std::string>>;

/// A run of the tool.
struct Run {
  int status = 0;      ///< 128 and the signal's number if a signal ended it
  std::string output;  ///< on both streams

  /// Whether it says that it finished what another run had begun.
  bool hasFinished() const {
    return output.find("an interrupted change") != std::string::npos ||
           output.find("rolled back change") != std::string::npos;
  }
};

/// A device that the built tool runs on.
class Bench {
 public:
  /// Lays out the sample set and the documents.
  Bench();
  ~Bench();

  /// Everything below the directories of main copies, backups and locks.
  Tree tree() const;
  void put(const Tree& tree) const;
  /// The main copies of a tree.
  static Tree mainsOf(const Tree& tree);
  Tree mains() const { return mainsOf(tree()); }

  Run run(const Words& words) const;
  /// Runs it followed.
  Run follow(const Words& words, const Followed::Decide& decide,
             const Followed::Returned& returned = {},
             Attention attention = Attention::Changes) const;
  /// Starts it, to be waited for.
  pid_t start(const Words& words) const;
  std::string output() const;
  /// Puts on trial what a command changes, for a second or for a week, and kills the process that
  /// waits. The time is over when this returns, or will not be.
  void putOnTrial(const Words& words, bool isOver) const;

  /// What is left among the temporary files, which is removed.
  int leftTemporaries() const;
  const std::string& root() const { return device_.root(); }

 private:
  void writeOldSet() const;
  std::vector<std::string> program(const Words& words) const;
  std::string work(const std::string& name) const { return work_ + "/" + name; }

  Device device_;
  std::string work_;
};

/// The tool that is tortured.
std::string tool();

}  // namespace camcfg::torture

#endif
