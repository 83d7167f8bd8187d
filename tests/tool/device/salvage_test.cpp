#include "device/salvage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>

#include "base/host.h"
#include "support/random_cases.h"
#include "tool/salvage_scene.h"

namespace camcfg::tests {
namespace {

using tool::device::SalvagedFile;

std::string factoryText(const std::string& name) {
  std::ifstream file(CAMCFG_RESOURCE_DIR "/defcfg/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

class SalvageDamageTest : public testing::TestWithParam<const char*> {
 protected:
  SalvageDamageTest() { tool::rememberTemporaries(); }

  std::optional<SalvagedFile> salvaged(const std::optional<std::string>& main,
                                       const std::optional<std::string>& backup = {}) const {
    return tool::device::salvaged(main, backup, scene.factory);
  }

  void expectNothingInvented(const std::string& main, const std::optional<std::string>& backup,
                             const std::string& damage) const {
    const std::optional<SalvagedFile> file = salvaged(main, backup);
    ASSERT_TRUE(file) << damage;
    EXPECT_EQ(scene.faultOf(*file), "") << damage;
  }

  static void expectWholeFile(const std::optional<SalvagedFile>& file) {
    ASSERT_TRUE(file);
    EXPECT_EQ(valuesOf(file->bytes).size(), file->settings.size());
  }

  const SalvageScene scene{factoryText(GetParam())};
  // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): the same flips each time
  std::mt19937 random{7};
};

INSTANTIATE_TEST_SUITE_P(Files, SalvageDamageTest,
                         testing::Values("business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"));

TEST_P(SalvageDamageTest, TheCopiesDifferInNearlyEverySetting) {
  std::size_t same = 0;
  for (const auto& [place, value] : scene.inMain) {
    const auto other = scene.inBackup.find(place);
    same += other != scene.inBackup.end() && other->second == value ? 1 : 0;
  }
  EXPECT_GT(scene.inMain.size(), 5U);
  EXPECT_LT(same, scene.inMain.size() / 2);
}

TEST_P(SalvageDamageTest, AllComesBackFromAWholeCopy) {
  const auto file = salvaged(scene.main);
  ASSERT_TRUE(file);
  EXPECT_EQ(valuesOf(file->bytes), scene.inMain);
  EXPECT_EQ(file->from("main"), scene.inMain.size());
  EXPECT_EQ(file->notTaken, tool::Json::array()) << file->notTaken.dump(1);
}

TEST_P(SalvageDamageTest, AllComesBackFromTheBackup) {
  const auto file = salvaged(std::nullopt, scene.backup);
  ASSERT_TRUE(file);
  EXPECT_EQ(valuesOf(file->bytes), scene.inBackup);
  EXPECT_EQ(file->from("backup"), scene.inBackup.size()) << file->notTaken.dump(1);
}

TEST_P(SalvageDamageTest, WhereNothingIsLeftAllIsTheFactorys) {
  const auto file = salvaged(std::string(1000, '\0'), std::string());
  ASSERT_TRUE(file);
  EXPECT_EQ(valuesOf(file->bytes), scene.inFactory);
  EXPECT_EQ(file->from("factory"), file->settings.size());
}

TEST_P(SalvageDamageTest, CutsInventNothing) {
  constexpr std::size_t kStep = kOneOf == 1 ? 37 : 191;
  for (std::size_t size = 0; size < scene.main.size(); size += kStep) {
    expectNothingInvented(cut(scene.main, size), std::nullopt, "cut at " + std::to_string(size));
    expectNothingInvented(cut(scene.main, size), cut(scene.backup, scene.backup.size() - size / 2),
                          "both cut, at " + std::to_string(size));
  }
}

TEST_P(SalvageDamageTest, ZeroedBlocksInventNothing) {
  for (const std::size_t size : {512U, 4096U})
    for (std::size_t block = 0; block < blocksOf(scene.main, size); ++block) {
      const std::string what = "block " + std::to_string(block) + " of " + std::to_string(size);
      expectNothingInvented(zeroed(scene.main, block, size), std::nullopt, what);
      expectNothingInvented(zeroed(scene.main, block, size), cut(scene.backup, block * size), what);
    }
}

TEST_P(SalvageDamageTest, RepeatedBlocksGiveAWholeFile) {
  for (std::size_t block = 0; block < blocksOf(scene.main, 512); ++block)
    expectWholeFile(salvaged(repeated(scene.main, block, 512), scene.backup));
}

TEST_P(SalvageDamageTest, OfAFileWithAFlippedBitMostComesBack) {
  for (int i = 0; i < casesOf(200); ++i) {
    const auto file = salvaged(flipped(scene.main, random));
    expectWholeFile(file);
    EXPECT_GE(scene.broughtBack(valuesOf(file->bytes)) + 1, scene.inMain.size() / 2);
  }
}

TEST_P(SalvageDamageTest, NothingComesOfADamagedFactoryCopy) {
  EXPECT_FALSE(tool::device::salvaged(scene.main, scene.backup, cut(scene.factory, 600)));
}

}  // namespace
}  // namespace camcfg::tests
