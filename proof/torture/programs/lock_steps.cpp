// Kills a program at each step of a lock's life, followed by ptrace(2): before and after each system
// call of a read, a save and a verification, and at single instructions drawn at random.
//   camcfg-lock-steps [--long] [--seed N]
// After each kill another program opens the file. Wrong: it has to wait, it gets neither the old nor
// the new value, the copies differ, a cut save is reported by more than one record of level 4, or a
// save that had returned is not in both copies.
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <random>
#include <stdexcept>

#include "camcfg/store.h"
#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"

namespace {
int g_warnings = 0;
}

extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int level, char* /*prefix*/,
                                                                      char* /*format*/, ...) {
  if (level == 4) ++g_warnings;
}

namespace camcfg::torture {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kPath[] = "/cfg0/x.xml";
constexpr char kOther[] = "/cfg0/other.xml";
constexpr char kOld[] = "<A Cur=\"1\">text</A>\n";
constexpr char kNew[] = "<A Cur=\"2\">text</A>\n";

const char* g_path = kPath;

char* path() {
  return const_cast<char*>(g_path);
}

int readOnce() {
  const std::unique_ptr<tinyxml2::XMLDocument> document(CFG_GetDocByFileName(path(), BU_TRUE));
  return document == nullptr ? -1 : document->FirstChildElement()->IntAttribute("Cur");
}

int saveOnce() {
  const std::unique_ptr<tinyxml2::XMLDocument> document(CFG_GetDocByFileName(path(), BU_FALSE));
  if (document == nullptr) return -1;
  document->FirstChildElement()->SetAttribute("Cur", 2);
  return CFG_SaveFile(document.get(), path(), BU_TRUE);
}

struct Work {
  const char* name;
  bool damaged;  ///< the main copy before it
  int (*run)();
};

constexpr Work kWorks[] = {
    {"read", false, [] { return readOnce(); }},
    {"second read", false, [] { return readOnce() + readOnce(); }},
    {"save", false, [] { return saveOnce(); }},
    {"two saves", false, [] { return saveOnce() + saveOnce(); }},
    {"verification", true, [] { return CFG_VerifyFileFormat(); }},
};

class Steps {
 public:
  Steps(const Work& work, Faults& faults) : work_(work), faults_(faults) {
    device_.makeDirectory(kLockDirectory);
  }

  /// Kills at the step of this number.
  /// @return false when the work ended before it
  bool killAt(__ptrace_request kind, long step) {
    layOut();
    const pid_t child = startTraced();
    int status = 0;
    long steps = 0;
    while (steps++ < step && ptrace(kind, child, nullptr, 0L) == 0 &&
           waitpid(child, &status, 0) == child && WIFSTOPPED(status))
      continue;
    const bool killed = WIFSTOPPED(status);
    if (killed) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
    }
    look(killed ? std::string(work_.name) + ", step " + std::to_string(step) : work_.name, !killed);
    return killed;
  }

  long countOf(__ptrace_request kind) {
    layOut();
    const pid_t child = startTraced();
    int status = 0;
    long steps = 0;
    while (ptrace(kind, child, nullptr, 0L) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status))
      ++steps;
    return steps;
  }

 private:
  // Stopped before its work. What a process does once, at its first call, is done with another file.
  pid_t startTraced() const {
    const pid_t child = startInside(device_.root(), [this] {
      g_path = kOther;
      if (readOnce() < 0 || saveOnce() < 0) return 1;
      g_path = kPath;
      ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      raise(SIGSTOP);
      work_.run();
      return 0;
    });
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
      throw std::runtime_error("the child cannot be traced");
    return child;
  }

  void layOut() const {
    device_.write(kOther, kOld);
    device_.write(kPath, work_.damaged ? "<A" : kOld);
    device_.write("/cfg1/x.xml", kOld);
    device_.remove(kLockDirectory);
    device_.makeDirectory(kLockDirectory);
  }

  // What a program finds that comes after the killed one.
  void look(const std::string& where, bool done) {
    constexpr int kMany = 100;
    const auto start = Clock::now();
    const int found = runInside(device_.root(), [this] {
      if (work_.damaged) CFG_VerifyFileFormat();
      return readOnce() + kMany * g_warnings;
    });
    const auto waited = Clock::now() - start;
    const int value = found % kMany;
    if (waited > std::chrono::seconds(2)) faults_.add(where + ": the next program waited");
    if (value != 1 && value != 2) faults_.add(where + ": reads " + std::to_string(value));
    if (found / kMany > 1) faults_.add(where + ": more than one record");
    const auto main = device_.read(kPath);
    if (main != device_.read("/cfg1/x.xml")) faults_.add(where + ": the copies differ");
    if (main != kOld && main != kNew) faults_.add(where + ": the main copy is neither");
    if (done && work_.run == kWorks[2].run && main != kNew) faults_.add(where + ": not saved");
    if (found / kMany > 0) ++repaired_;
  }

 public:
  int repaired() const { return repaired_; }

 private:
  const Work& work_;
  Faults& faults_;
  Device device_;
  int repaired_ = 0;
};

int killAtEachStep(const Options& options) {
  std::mt19937 random(options.seed);
  Faults faults;
  Table table({"work", "killed at system calls", "killed at instructions", "of so many",
               "saves found cut", "wrong"});
  for (const Work& work : kWorks) {
    Steps steps(work, faults);
    const int before = faults.count();
    long calls = 0;
    while (steps.killAt(PTRACE_SYSCALL, calls + 1)) ++calls;
    const long instructions = steps.countOf(PTRACE_SINGLESTEP);
    std::uniform_int_distribution<long> anyStep(1, instructions);
    const int draws = options.longRun ? 60 : 3;
    for (int i = 0; i < draws; ++i) steps.killAt(PTRACE_SINGLESTEP, anyStep(random));
    table.row(work.name, calls, draws, instructions, steps.repaired(), faults.count() - before);
  }
  table.print("A program killed at each step of a lock's life, seed " +
              std::to_string(options.seed) + ":");
  return faults.conclude("lock steps");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::killAtEachStep);
}
