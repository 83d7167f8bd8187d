// Kills a process that saves over and over at random moments, starts the device and looks at its
// files: once with only verification at each start, once with the tool's `verify --resync`.
//   camcfg-kills [--long] [--seed N]
// Wrong: any setting that is lost where every start resyncs. With only verification a kill that
// damages a backup and one in the next save of the same file can cost both copies: counted.
#include <signal.h>
#include <unistd.h>

#include <array>
#include <random>

#include "torture/harness/child.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/harness/xml_text.h"
#include "torture/power/changing_file.h"
#include "torture/power/start_up.h"

namespace camcfg::torture {
namespace {

constexpr int kFirstValue = 10001;
constexpr int kLastValue = 65000;
constexpr int kShortestLife = 300;  // microseconds
constexpr int kLongestLife = 9000;

/// How far the writer got with each file.
struct Progress {
  std::array<volatile int, kSampleFiles.size()> begun;
  std::array<volatile int, kSampleFiles.size()> done;
};

/// Results of a run of kills.
struct Tally {
  int kills = 0;
  int insideSave = 0;
  int mainDamaged = 0;
  int backupDamaged = 0;
  int lost = 0;
};

class Kills {
 public:
  Kills(std::mt19937& random, Faults& faults) : random_(random), faults_(faults) {
    device_.fill();
    for (ChangingFile& file : files_) file.learn(device_);
  }

  Tally run(int kills, StartUp startUp) {
    Tally tally;
    for (std::size_t i = 0; i < files_.size(); ++i) layOut(i);
    for (; tally.kills < kills; ++tally.kills) {
      killWriter();
      bool inside = false;
      for (std::size_t i = 0; i < files_.size(); ++i) inside |= look(i, tally);
      if (inside) ++tally.insideSave;
      start(device_, startUp);
      for (std::size_t i = 0; i < files_.size(); ++i) check(i, startUp, tally);
    }
    return tally;
  }

 private:
  void layOut(std::size_t i) {
    files_[i].layOut(device_, kFirstValue);
    progress_->begun[i] = progress_->done[i] = kFirstValue;
  }

  void killWriter() {
    std::uniform_int_distribution<useconds_t> life(kShortestLife, kLongestLife);
    const pid_t writer = startInside(device_.root(), [this] {
      for (;;) saveEach();
      return 0;
    });
    usleep(life(random_));
    kill(writer, SIGKILL);
    constexpr int kKilled = 128 + SIGKILL;
    if (waitFor(writer) != kKilled) faults_.add("the writer ended by itself");
  }

  void saveEach() {
    for (std::size_t i = 0; i < files_.size(); ++i) {
      const int value = progress_->done[i] < kLastValue ? progress_->done[i] + 1 : kFirstValue;
      progress_->begun[i] = value;
      files_[i].save(value);
      progress_->done[i] = value;
    }
  }

  Contents judge(std::size_t i, const std::string& path) const {
    return contentsOf(device_.read(path), files_[i].textWith(progress_->done[i]),
                      files_[i].textWith(progress_->begun[i]));
  }

  // Whether a save of this file was under way.
  bool look(std::size_t i, Tally& tally) const {
    const std::string name = files_[i].name();
    if (!isWhole(judge(i, mainPath(name)))) ++tally.mainDamaged;
    const auto backup = device_.read(backupPath(name));
    if (!backup || !settingsOf(*backup)) ++tally.backupDamaged;
    return progress_->begun[i] != progress_->done[i];
  }

  void check(std::size_t i, StartUp startUp, Tally& tally) {
    const Contents contents = judge(i, mainPath(files_[i].name()));
    if (isWhole(contents)) {
      if (contents == Contents::New) progress_->done[i] = progress_->begun[i];
      progress_->begun[i] = progress_->done[i];
      return;
    }
    ++tally.lost;
    if (startUp == StartUp::Resync)
      faults_.add(std::string(files_[i].name()) + " is " + wordFor(contents) + " after kill " +
                  std::to_string(tally.kills + 1) + " though every start resyncs");
    layOut(i);
  }

  std::mt19937& random_;
  Faults& faults_;
  Device device_;
  std::vector<ChangingFile> files_ = changingFiles();
  Shared<Progress> progress_;
};

std::string perThousand(int part, int whole) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f per 1,000", 1000.0 * part / whole);
  return text;
}

int killWriters(const Options& options) {
  std::mt19937 random(options.seed);
  Faults faults;
  Table table({"at each start", "kills", "inside a save", "main copies damaged", "backups damaged",
               "files lost", "rate"});
  const int kills = options.longRun ? 8000 : 150;
  for (const StartUp startUp : kStartUps) {
    const Tally tally = Kills(random, faults).run(kills, startUp);
    table.row(wordFor(startUp), tally.kills, tally.insideSave, tally.mainDamaged,
              tally.backupDamaged, tally.lost, perThousand(tally.lost, tally.kills));
  }
  table.print("A writer killed at random moments, seed " + std::to_string(options.seed));
  return faults.conclude("random kills");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::killWriters);
}
