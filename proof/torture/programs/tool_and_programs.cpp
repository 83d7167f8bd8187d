// The tool and three programs that each change one setting every 20 milliseconds: `get`, `verify`
// and `set` in a loop, with the directory of lock files and without it.
//   camcfg-tool-and-programs [--long] [--seed N]
// Wrong with the directory: a call or a run of the tool that fails, and a value that is gone when it
// is read again. Without it the programs damage their file; the same is counted and printed, and what
// the tool reports then may be true.
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "camcfg/params.h"
#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"

namespace camcfg::torture {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int kBriefSeconds = 4;
constexpr int kLongSeconds = 25;
constexpr std::array<const char*, 3> kOfPrograms = {"Rtsp", "RtspOverHttp", "WebHttp"};
constexpr char kOfTool[] = "WebHttps";
constexpr int kFirst = 10000;
constexpr int kValues = 50000;

/// Attempts of one kind, and what came of them.
struct Tally {
  std::atomic<long> attempts{0};
  std::atomic<long> failed{0};
  std::atomic<long> lost{0};

  void add(bool succeeded) {
    ++attempts;
    if (!succeeded) ++failed;
  }
};

struct State {
  std::atomic<bool> end{false};
  Tally calls;
  Tally get;
  Tally verify;
  Tally set;
};

char* text(const char* word) {
  return const_cast<char*>(word);
}

int valueOf(const char* parameter) {
  int value = -1;
  return CFG_COM_GetIntParam(text("System"), text(parameter), &value) == 0 ? value : -1;
}

// A program: changes its setting and reads it again.
int changeAgainAndAgain(const char* parameter, State& state) {
  for (int i = 0; !state.end; ++i) {
    const int value = kFirst + i % kValues;
    const bool stored = CFG_COM_SetIntParam(text("System"), text(parameter), value) == 0;
    state.calls.add(stored);
    std::this_thread::sleep_for(20ms);
    const int found = valueOf(parameter);
    state.calls.add(found >= 0);
    if (stored && found >= 0 && found != value) ++state.calls.lost;
  }
  return 0;
}

class Storm {
 public:
  explicit Storm(bool directory) {
    device_.fill();
    if (directory) device_.makeDirectory(kLockDirectory);
  }

  void run(std::chrono::seconds duration) {
    std::array<pid_t, kOfPrograms.size()> programs{};
    for (std::size_t i = 0; i < programs.size(); ++i)
      programs.at(i) = startInside(
          device_.root(), [this, i] { return changeAgainAndAgain(kOfPrograms.at(i), *state_); });
    const auto end = Clock::now() + duration;
    for (int i = 0; Clock::now() < end; ++i) useTool(kFirst + i % kValues);
    state_->end = true;
    for (const pid_t program : programs) waitFor(program);
  }

  /// @return whether nothing failed and nothing was lost
  bool print(const std::string& title) const {
    Table table({"who", "calls or runs", "failed", "lost"});
    bool isFaultless = true;
    const auto row = [&](const char* who, const Tally& tally) {
      table.row(who, tally.attempts.load(), tally.failed.load(), tally.lost.load());
      isFaultless = isFaultless && tally.failed + tally.lost == 0;
    };
    row("the programs", state_->calls);
    row("`camcfg get`", state_->get);
    row("`camcfg verify`", state_->verify);
    row("`camcfg set`", state_->set);
    table.print(title);
    return isFaultless;
  }

 private:
  void useTool(int value) {
    state_->get.add(tool({"get", "System", kOfTool}));
    state_->verify.add(tool({"verify"}));
    const bool stored = tool({"set", "System", kOfTool, std::to_string(value)});
    state_->set.add(stored);
    if (!stored) return;
    const bool isGone = runInside(device_.root(), [value] {
                          const int found = valueOf(kOfTool);
                          return found >= 0 && found != value ? 1 : 0;
                        }) != 0;
    if (isGone) ++state_->set.lost;
  }

  bool tool(const std::vector<std::string>& words) const {
    std::vector<std::string> line = {CAMCFG_TOOL, "--root", device_.root()};
    line.insert(line.end(), words.begin(), words.end());
    return runProgram(line) == 0;
  }

  Device device_;
  Shared<State> state_;
};

int useToolAmongPrograms(const Options& options) {
  Faults faults;
  const int seconds = options.longRun ? kLongSeconds : kBriefSeconds;
  for (const bool directory : {true, false}) {
    Storm storm(directory);
    storm.run(std::chrono::seconds(seconds));
    const bool isFaultless =
        storm.print("The tool and three programs for " + std::to_string(seconds) + " seconds, " +
                    (directory ? "with" : "without") + " /run/camcfg:");
    if (directory && !isFaultless) faults.add("failed or lost with the directory");
  }
  return faults.conclude("tool and programs");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::useToolAmongPrograms);
}
