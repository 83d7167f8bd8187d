#ifndef CAMCFG_TORTURE_CHANGES_SCENE_H
#define CAMCFG_TORTURE_CHANGES_SCENE_H

#include <functional>
#include <optional>
#include <string>

#include "torture/changes/bench.h"
#include "torture/changes/outcome.h"

namespace camcfg::torture {

/// A part of the cuts of a row, for one of the processes that share them out.
struct Slice {
  int index;
  int of;

  bool has(long cut) const { return cut % of == index; }
};

/// Runs work in as many processes as there are processors, each with its slice.
Tally inSlices(const std::function<void(const Slice&, Tally&)>& work);

/// Where a run of the tool is cut: before a call, or when so many bytes of all that it writes have
/// arrived.
struct CutPoint {
  enum Kind { ChangingCall, AnyCall, Byte } kind;
  long at;
};

std::string textOf(const CutPoint& cut);
Attention attentionTo(CutPoint::Kind kind);

/// A device as it is when the bytes of a write have arrived. Cut before, it would be the same
/// except for the bytes missing at the end of that file.
struct Written {
  Tree tree;
  std::string path;
  std::size_t offset;  ///< of the bytes in the file
  std::size_t size;

  Tree cutAfter(std::size_t bytes) const;
};

/// A device on which a command is about to be run.
class Scene {
 public:
  explicit Scene(const ChangingCommand& command);

  const ChangingCommand& command() const { return command_; }
  const Bench& bench() const { return bench_; }
  const Tree& before() const { return before_; }
  const Tree& after() const { return after_; }
  void layOut() const { bench_.put(start_); }
  /// Whether boot is run once more after each boot, to find nothing to do.
  void startAgain(bool again) { startsAgain_ = again; }

  /// How many places of this kind a run has.
  long countOf(CutPoint::Kind kind, const Words& words) const;
  /// Runs the tool up to the cut.
  void cut(const Words& words, const CutPoint& cut) const;
  /// Runs the tool until the last byte of a write has arrived, counted from 0.
  /// @return none if there are not so many
  std::optional<Written> cutAfterWrite(const Words& words, long write) const;
  /// Judges the device as it is, and counts what is found.
  Whole look(const std::string& where, Tally& tally) const;
  /// The same once the change has been brought to its end.
  Whole recover(Recovery recovery, const std::string& where, Tally& tally) const;
  /// The same by boot, after the change itself or another one may have been made already.
  void recoverWhole(const std::string& where, Tally& tally) const;

 private:
  void beginTrial();
  Whole count(const Tree& tree, const Tree& before, const Tree& after, const std::string& where,
              Tally& tally) const;
  std::size_t arriving(const DeviceCall& call) const;

  const ChangingCommand command_;
  Bench bench_;
  Tree start_;
  Tree before_;
  Tree after_;
  Tree anotherAfterOld_;
  Tree anotherAfterNew_;
  bool startsAgain_ = true;
};

}  // namespace camcfg::torture

#endif
