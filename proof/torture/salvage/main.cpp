// Damages copies of each file of the sample set, salvages what is left of them and counts which
// settings come back; xmllint does the same for comparison, where it is installed.
//   camcfg-salvage [--long] [--seed N]
// Wrong: a file that does not agree with the report on it; after cuts and zeroed blocks also a setting
// that does not have the value that it had before the damage in the copy that is named as its source.
#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/host.h"
#include "device/salvage.h"
#include "tool/salvage_scene.h"
#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/salvage/recovery.h"

namespace camcfg::torture {
namespace {

using tests::SalvageScene;
using tests::Values;
using tool::device::SalvagedFile;

/// The copies of a file after a damage.
struct Damaged {
  std::string main;
  std::optional<std::string> backup{};
};

using Judge = std::function<void(const Damaged&)>;

/// One way to damage a file.
struct Damage {
  const char* name;
  bool mayInvent;     ///< values may come out of it that no copy has had
  std::size_t grain;  ///< so many runs come to one that xmllint tries as well
  void (*each)(const SalvageScene& scene, const Options& options, const Judge& judge);
};

void cuts(const SalvageScene& scene, const Options& options, const Judge& judge) {
  const std::size_t grain = options.longRun ? 1 : 97;
  for (std::size_t size = 0; size < scene.main.size(); size += grain)
    judge({tests::cut(scene.main, size)});
}

template <std::string (*Change)(std::string, std::size_t, std::size_t), std::size_t Size>
void blocks(const SalvageScene& scene, const Options& /*options*/, const Judge& judge) {
  for (std::size_t block = 0; block < tests::blocksOf(scene.main, Size); ++block)
    judge({Change(scene.main, block, Size)});
}

void flips(const SalvageScene& scene, const Options& options, const Judge& judge) {
  std::mt19937 random(options.seed);
  for (int left = options.longRun ? 10000 : 200; left > 0; --left)
    judge({tests::flipped(scene.main, random)});
}

// A cut or a zeroed block.
std::string damagedByChance(const std::string& text, std::mt19937& random) {
  if (random() % 2 == 0) return tests::cut(text, random() % text.size());
  const std::size_t size = random() % 2 == 0 ? 512 : 4096;
  return tests::zeroed(text, random() % tests::blocksOf(text, size), size);
}

void pairs(const SalvageScene& scene, const Options& options, const Judge& judge) {
  std::mt19937 random(options.seed);
  for (int left = options.longRun ? 5000 : 100; left > 0; --left) {
    const std::string main = damagedByChance(scene.main, random);
    judge({main, damagedByChance(scene.backup, random)});
  }
}

constexpr Damage kDamages[] = {
    {"cut", false, 8, cuts},
    {"zeroed, 512 bytes", false, 1, blocks<tests::zeroed, 512>},
    {"zeroed, 4,096 bytes", false, 1, blocks<tests::zeroed, 4096>},
    {"repeated, 512 bytes", true, 1, blocks<tests::repeated, 512>},
    {"repeated, 4,096 bytes", true, 1, blocks<tests::repeated, 4096>},
    {"a bit flipped", true, 8, flips},
    {"both cut or zeroed", false, 0, pairs},
};

struct Share {
  std::size_t back = 0;
  std::size_t all = 0;

  std::string text() const {
    if (all == 0) return "-";
    char shown[16];
    std::snprintf(shown, sizeof shown, "%.1f %%",
                  100 * static_cast<double>(back) / static_cast<double>(all));
    return shown;
  }
};

struct Tally {
  int runs = 0;
  int wrong = 0;
  std::size_t invented = 0;
  Share salvaged;
  int compared = 0;  ///< runs that xmllint has tried, too
  Share salvagedOfThose;
  Share recovered;
  Share recoveredInOne;
  std::size_t inventedThere = 0;
  char example[256] = {};
};

struct Tallies {
  Tally of[std::size(kSampleFiles)][std::size(kDamages)];
};

class Experiment {
 public:
  Experiment(const char* file, const Damage& damage, Tally& tally)
      : file_(file), scene_{sampleText(file)}, damage_(damage), tally_(tally) {}

  int run(const Options& options) {
    damage_.each(scene_, options, [this](const Damaged& copies) { judge(copies); });
    return 0;
  }

 private:
  void judge(const Damaged& copies) {
    const auto file = tool::device::salvaged(copies.main, copies.backup, scene_.factory);
    ++tally_.runs;
    if (!file) return blame("nothing was salvaged");
    const Values taken = takenFrom(*file);
    const Share share = shareOf(taken, copies.backup.has_value());
    add(tally_.salvaged, share);
    tally_.invented += scene_.invented(taken);
    const std::string fault = scene_.faultOf(*file);
    if (!damage_.mayInvent && !fault.empty()) blame(fault);
    if (tests::valuesOf(file->bytes).size() != file->settings.size()) blame("the report is wrong");
    if (damage_.grain != 0 && tally_.runs % static_cast<int>(damage_.grain) == 0 &&
        Recovery::isThere())
      compare(copies.main, share);
  }

  // What comes from the damaged copies.
  Values takenFrom(const SalvagedFile& file) const {
    const Values result = tests::valuesOf(file.bytes);
    Values taken;
    for (const tool::Json& setting : file.settings) {
      const auto found = result.find(setting.at("place").text());
      if (setting.at("source") != tool::Json("factory") && found != result.end())
        taken.insert(*found);
    }
    return taken;
  }

  Share shareOf(const Values& values, bool hasBackup) const {
    std::size_t back = scene_.broughtBack(values);
    if (hasBackup)
      for (const auto& [place, value] : values) {
        const auto main = scene_.inMain.find(place);
        const auto backup = scene_.inBackup.find(place);
        if (main != scene_.inMain.end() && main->second != value &&
            backup != scene_.inBackup.end() && backup->second == value)
          ++back;
      }
    return {back, scene_.inMain.size()};
  }

  void compare(const std::string& damaged, const Share& share) {
    ++tally_.compared;
    add(tally_.salvagedOfThose, share);
    const Values plain = tests::valuesOf(recovery_.of(damaged));
    const Values inOne = tests::valuesOf(recovery_.inOneElement(damaged));
    add(tally_.recovered, shareOf(plain, false));
    add(tally_.recoveredInOne, shareOf(inOne, false));
    tally_.inventedThere += scene_.invented(inOne);
  }

  static void add(Share& sum, const Share& share) {
    sum.back += share.back;
    sum.all += share.all;
  }

  void blame(const std::string& fault) {
    if (tally_.wrong++ == 0)
      std::snprintf(tally_.example, sizeof tally_.example, "%s, %s, run %d: %s", file_,
                    damage_.name, tally_.runs, fault.c_str());
  }

  const char* file_;
  const SalvageScene scene_;
  const Damage& damage_;
  Tally& tally_;
  const Recovery recovery_;
};

int salvage(const Options& options) {
  tool::rememberTemporaries();
  Shared<Tallies> tallies;
  std::vector<std::function<int()>> tasks;
  for (std::size_t i = 0; i < std::size(kSampleFiles); ++i)
    for (const Damage& damage : kDamages)
      tasks.emplace_back([&options, i, &damage, &tally = tallies->of[i][&damage - kDamages]] {
        return Experiment(kSampleFiles[i], damage, tally).run(options);
      });
  Faults faults;
  if (runSideBySide(tasks) > 0) faults.add("a part of the program failed");

  Table found({"file", "damage", "runs", "brought back", "in no copy", "wrong"});
  Table compared({"file", "damage", "runs", "salvage", "xmllint", "in one element", "in no copy"});
  for (std::size_t i = 0; i < std::size(kSampleFiles); ++i)
    for (std::size_t j = 0; j < std::size(kDamages); ++j) {
      const Tally& tally = tallies->of[i][j];
      found.row(kSampleFiles[i], kDamages[j].name, tally.runs, tally.salvaged.text(),
                tally.invented, tally.wrong);
      if (tally.compared > 0)
        compared.row(kSampleFiles[i], kDamages[j].name, tally.compared,
                     tally.salvagedOfThose.text(), tally.recovered.text(),
                     tally.recoveredInOne.text(), tally.inventedThere);
      if (tally.wrong > 0) faults.add(tally.example);
    }
  found.print("Settings brought back, seed " + std::to_string(options.seed));
  compared.print("The same settings by salvage and by xmllint --recover");
  return faults.conclude("salvage");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::salvage);
}
