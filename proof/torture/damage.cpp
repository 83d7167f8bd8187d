// Damages a main copy in every way that one byte can be damaged or a file cut short, starts the
// device and looks at what is left. All files of the sample set.
//   camcfg-damage [--long] [--seed N]
// Wrong: a main copy that is not, byte for byte, what start-up verification must leave: the
// damaged text if it parses (damage that goes unnoticed), else the backup if that parses, else the
// factory default, which the backup directory then holds as well if it held any file.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "camcfg/store.h"
#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/harness/xml_text.h"

namespace camcfg::torture {
namespace {

constexpr std::size_t kBitsWithin = 4096;  // bytes each bit of which is flipped

/// The state that the backup of the damaged file is in.
enum class Backup { Good, DamagedAlike, Missing, DirectoryEmpty };

struct Setting {
  Backup backup;
  const char* text;
};

constexpr Setting kSettings[] = {
    {Backup::Good, "good"},
    {Backup::DamagedAlike, "damaged alike"},
    {Backup::Missing, "missing"},
    {Backup::DirectoryEmpty, "directory empty"},
};

struct Tally {
  int cuts = 0;
  int flips = 0;
  int restored = 0;
  int unnoticed = 0;
  int harmless = 0;  ///< of those unnoticed: every setting reads as before
  int wrong = 0;
  char example[128] = {};
};

using Judge = std::function<void(const std::string& damaged)>;

void cutEverywhere(const std::string& text, std::size_t grain, const Judge& judge) {
  for (std::size_t size = 0; size < text.size(); size += grain) judge(text.substr(0, size));
}

void flipEverywhere(const std::string& text, std::size_t grain, const Judge& judge) {
  std::string damaged = text;
  for (std::size_t at = 0; at < text.size(); at += grain) {
    for (int bit = 0; at < kBitsWithin && bit < 8; ++bit) {
      damaged[at] = static_cast<char>(text[at] ^ (1 << bit));
      judge(damaged);
    }
    damaged[at] = static_cast<char>(text[at] ^ 0xff);
    judge(damaged);
    damaged[at] = text[at];
  }
}

struct Tallies {
  Tally of[std::size(kSampleFiles)][std::size(kSettings)];
};

/// A device whose factory default of one file differs from what the device has stored.
class DamagedDevice {
 public:
  DamagedDevice(const char* name, Backup backup, Tally& tally)
      : name_(name), stored_(sampleText(name)), backup_(backup), tally_(tally) {
    for (const char* directory : {CFG_DIR_MAIN, CFG_DIR_BACKUP, CFG_DIR_DEFAULT})
      device_.makeDirectory(directory);
    device_.write(factoryPath(name_), factory_);
    if (backup_ == Backup::Missing) device_.write(backupPath("other.txt"), "no configuration");
  }

  /// Runs inside the device's root.
  void damageInEveryWay(std::size_t grain) {
    cutEverywhere(stored_, grain, [this](const std::string& damaged) {
      ++tally_.cuts;
      judge(damaged);
    });
    flipEverywhere(stored_, grain, [this](const std::string& damaged) {
      ++tally_.flips;
      judge(damaged);
    });
  }

  const std::string& root() const { return device_.root(); }

 private:
  void judge(const std::string& damaged) {
    layOut(damaged);
    const int result = CFG_VerifyFileFormat();
    const std::string main = Device::readHere(mainPath(name_)).value_or("");
    const auto settings = settingsOf(damaged);
    if (settings) {
      ++tally_.unnoticed;
      if (settings == settingsOf(stored_)) ++tally_.harmless;
      expect(result == 0 && main == damaged, damaged);
    } else {
      ++tally_.restored;
      expect(result == 0 && main == sourceOfMain() && settingsOf(main), damaged);
    }
    expect(Device::readHere(backupPath(name_)) == backupAfter(damaged, !settings), damaged);
  }

  void layOut(const std::string& damaged) const {
    Device::writeHere(mainPath(name_), damaged);
    if (backup_ == Backup::Good) Device::writeHere(backupPath(name_), stored_);
    if (backup_ == Backup::DamagedAlike) Device::writeHere(backupPath(name_), damaged);
    if (backup_ == Backup::Missing) Device::removeHere(backupPath(name_));
  }

  std::string sourceOfMain() const { return backup_ == Backup::Good ? stored_ : factory_; }

  std::optional<std::string> backupAfter(const std::string& damaged, bool restored) const {
    if (backup_ == Backup::Good) return stored_;
    if (backup_ == Backup::DirectoryEmpty) return std::nullopt;
    if (restored) return factory_;
    return backup_ == Backup::Missing ? std::nullopt : std::optional<std::string>(damaged);
  }

  void expect(bool asStated, const std::string& damaged) {
    if (asStated) return;
    ++tally_.wrong;
    const std::string what = name_ + " with " + std::to_string(damaged.size()) + " bytes, case " +
                             std::to_string(tally_.cuts + tally_.flips);
    what.copy(tally_.example, sizeof tally_.example - 1);
  }

  const std::string name_;
  const std::string stored_;
  const std::string factory_ = stored_ + "<!-- as it left the factory -->\n";
  const Backup backup_;
  Tally& tally_;
  Device device_;
};

std::size_t grainOf(const Options& options) {
  return options.longRun ? 1 : 13;
}

std::function<int()> taskFor(const char* name, Backup backup, const Options& options,
                             Tally& tally) {
  return [=, &tally] {
    DamagedDevice device(name, backup, tally);
    return runInside(device.root(), [&] {
      device.damageInEveryWay(grainOf(options));
      return 0;
    });
  };
}

int damage(const Options& options) {
  Shared<Tallies> tallies;
  std::vector<std::function<int()>> tasks;
  for (std::size_t i = 0; i < std::size(kSampleFiles); ++i)
    for (std::size_t j = 0; j < std::size(kSettings); ++j)
      tasks.push_back(taskFor(kSampleFiles[i], kSettings[j].backup, options, tallies->of[i][j]));
  Faults faults;
  if (runSideBySide(tasks) > 0) faults.add("a part of the program failed");

  Table table(
      {"file", "backup", "cut", "flipped", "restored", "unnoticed", "of these harmless", "wrong"});
  for (std::size_t i = 0; i < std::size(kSampleFiles); ++i)
    for (std::size_t j = 0; j < std::size(kSettings); ++j) {
      const Tally& tally = tallies->of[i][j];
      table.row(kSampleFiles[i], kSettings[j].text, tally.cuts, tally.flips, tally.restored,
                tally.unnoticed, tally.harmless, tally.wrong);
      if (tally.wrong > 0) faults.add(tally.example);
    }
  table.print("Main copies cut at every " +
              (grainOf(options) == 1 ? "byte" : std::to_string(grainOf(options)) + "th byte") +
              ", such bytes flipped, each bit of those within the first 4 KiB");
  return faults.conclude("damage");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::damage);
}
