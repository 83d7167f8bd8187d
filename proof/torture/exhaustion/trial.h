#ifndef CAMCFG_TORTURE_EXHAUSTION_TRIAL_H
#define CAMCFG_TORTURE_EXHAUSTION_TRIAL_H

#include <optional>
#include <string>

#include "torture/exhaustion/conditions.h"
#include "torture/exhaustion/operations.h"
#include "torture/harness/child.h"
#include "torture/harness/device.h"

namespace camcfg::torture {

/// Both copies of an operation's file.
struct Copies {
  std::optional<std::string> main;
  std::optional<std::string> backup;

  bool operator==(const Copies& other) const {
    return main == other.main && backup == other.backup;
  }
};

/// Which call or allocation is to fail, of those that the condition strikes, counted from 1.
struct Strike {
  const Condition* condition;
  Lasting lasting;
  int call;
};

/// What an operation did.
struct Outcome {
  bool struck = false;
  bool duringFirstLoad = false;  ///< struck what the first load of the file cannot do without
  bool afterFirstLoad = false;   ///< struck when it was done
  bool starved = false;          ///< struck an allocation
  std::string struckCall;

  int result = 0;
  int locksLeft = 0;
  long blocksLeft = 0;
  int descriptorsLeft = 0;
  Copies copies;

  int nextResult = 0;  ///< of the same operation after the strike, on files laid out again
  Copies nextCopies;
};

/// Tries one operation on the sample set, in a child of its own each time.
class Trial {
 public:
  Trial(const Device& device, const Operation& operation);

  Outcome run(const std::optional<Strike>& strike) const;
  const Copies& before() const { return before_; }

 private:
  struct Report {
    int result;
    int locksLeft;
    long blocksLeft;
    int descriptorsLeft;
    int nextResult;
    bool struck;
  };

  int work(Report& report, const std::optional<Strike>& strike) const;
  int runStarved(Report& report, const Strike& strike) const;
  void layOut() const;
  Copies copies() const;
  void strike(Traced& child, const Strike& strike, Outcome& outcome) const;
  bool isNeededToLoad(const FileCall& call, Lasting lasting) const;

  const Device& device_;
  const Operation& operation_;
  const std::string mainPath_;
  const std::string backupPath_;
  Copies before_;
};

}  // namespace camcfg::torture

#endif
