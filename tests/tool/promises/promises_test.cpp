#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "base/host.h"
#include "camcfg/testkit/device_root.h"
#include "support/later_clock.h"
#include "support/quick_saves.h"
#include "support/random_cases.h"
#include "support/without_override.h"
#include "tool/promises/comparison.h"

namespace camcfg::tests {
namespace {

class PromisesTest : public QuickSaves, public testing::Test {
 protected:
  ~PromisesTest() override { RecordProperty("compared", compared_); }

  void compare(const Scene& scene) {
    if (!isTried(++number_)) return;
    ++compared_;
    expectPromisesKept(scene);
    if (HasFailure()) ++failed_;
  }

  /// Whether so much was reported that more would help nobody.
  bool isEnough() const { return failed_ > 20; }

 private:
  // Salvage tries what it finds on a device among the host's temporary files.
  struct Host {
    Host() { tool::rememberTemporaries(); }
  } host_;
  testkit::DeviceRoot device_;
  WithoutOverride obeyPermissions_;
  LaterClock later_;
  int number_ = 0;
  int compared_ = 0;
  int failed_ = 0;
};

constexpr Kinds kSound = {Kind::Good, Kind::Good, Kind::Good};

Kind kind(int number) {
  return static_cast<Kind>(number);
}

bool isUsual(Kind kind) {
  constexpr Kind kUsual[] = {Kind::Good,      Kind::Missing, Kind::Damaged,     Kind::Empty,
                             Kind::Directory, Kind::Pipe,    Kind::LinkToOther, Kind::Unreadable};
  return std::find(std::begin(kUsual), std::end(kUsual), kind) != std::end(kUsual);
}

// Of the combinations with an unusual copy every second one, in which each two copies still meet in all
// their kinds.
bool isWorthATry(const Kinds& copies) {
  int sum = 0;
  for (const Kind copy : copies) sum += static_cast<int>(copy);
  return sum % 2 == 0 || std::all_of(copies.begin(), copies.end(), isUsual);
}

/// One of the three files, with the combinations of copies, the others being as given.
class EveryCombination : public PromisesTest, public testing::WithParamInterface<Kind> {
 protected:
  void compareAll(const Kinds& others, int every) {
    int number = 0;
    for (int backup = 0; backup < kKinds; ++backup)
      for (int factory = 0; factory < kKinds; ++factory) {
        const Kinds copies = {GetParam(), kind(backup), kind(factory)};
        Scene scene;
        scene.files.fill(others);
        scene.files[static_cast<std::size_t>(++number) % 3] = copies;
        if (number % every == 0 && isWorthATry(copies)) compare(scene);
        if (isEnough()) return;
      }
  }
};

TEST_P(EveryCombination, OfOneFileWithOthersSound) {
  compareAll(kSound, 1);
}

TEST_P(EveryCombination, OfOneFileWithoutBackupsOfTheOthers) {
  compareAll({Kind::Good, Kind::Missing, Kind::Good}, 17);
}

TEST_P(EveryCombination, OfOneFileWithoutFactoryCopiesOfTheOthers) {
  compareAll({Kind::Good, Kind::Good, Kind::Missing}, 17);
}

INSTANTIATE_TEST_SUITE_P(OfMain, EveryCombination, testing::ValuesIn([] {
                           std::vector<Kind> all;
                           for (int each = 0; each < kKinds; ++each) all.push_back(kind(each));
                           return all;
                         }()),
                         [](const testing::TestParamInfo<Kind>& main) {
                           return testing::PrintToString(main.param);
                         });

Kind randomKind(std::mt19937& random) {
  return random() % 3 == 0 ? Kind::Good : kind(static_cast<int>(random() % kKinds));
}

TEST_F(PromisesTest, OfAllFilesAtRandom) {
  std::mt19937 random(15);
  for (int i = 0; i < 300 && !isEnough(); ++i) {
    Scene scene;
    for (Kinds& file : scene.files)
      for (Kind& copy : file) copy = randomKind(random);
    compare(scene);
  }
}

TEST_F(PromisesTest, OfDirectoriesThatAreNotThere) {
  std::mt19937 random(4);
  for (int i = 0; i < 450 && !isEnough(); ++i) {
    Scene scene;
    for (DirectoryKind& directory : scene.directories)
      directory = static_cast<DirectoryKind>(random() % 2 * (random() % kDirectoryKinds));
    scene.files.fill(kSound);
    if (i % 2 != 0)
      for (Kind& copy : scene.files[random() % 3]) copy = randomKind(random);
    compare(scene);
  }
}

}  // namespace
}  // namespace camcfg::tests
