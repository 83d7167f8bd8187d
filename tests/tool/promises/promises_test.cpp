#include <camcfg/store.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "base/host.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "camcfg/testkit/device_root.h"
#include "device/repair.h"
#include "document/trial.h"
#include "support/later_clock.h"
#include "support/quick_saves.h"
#include "support/without_override.h"
#include "tool/promises/scene.h"
#include "tool/tool_test.h"
#include "upgrade/upgrade.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;
using tool::Json;

// Other builds than the usual one, on other machines, take a sample.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kEvery = 29;
#else
const int kEvery = std::string(CAMCFG_EMULATOR).empty() ? 1 : 29;
#endif

/// Lets the library print into nothing.
class Silence {
 public:
  Silence() {
    std::fflush(stdout);
    output_ = dup(STDOUT_FILENO);
    dup2(nowhere_.get(), STDOUT_FILENO);
  }
  ~Silence() {
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
    close(output_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  tool::MemoryFile nowhere_;
  int output_;
};

using Contents = std::map<std::string, std::string>;

// What every copy of the device holds; nothing of one that is no file.
Contents contentsNow() {
  Contents contents;
  for (const char* directory : kDirectories)
    for (const char* name : kNames) {
      const std::string path = std::string(directory) + "/" + name;
      std::error_code ignored;
      if (fs::is_regular_file(path, ignored))
        contents[path] = tool::readFile(path).value_or("unreadable");
    }
  return contents;
}

std::string otherCopy(const std::string& path, std::size_t place) {
  return std::string(kDirectories[place]) + "/" + fs::path(path).filename().string();
}

class PromisesTest : public QuickSaves, public testing::Test {
 protected:
  void compare(const Scene& scene) {
    if (++number_ % kEvery != 0) return;
    ++compared_;
    SCOPED_TRACE(testing::PrintToString(scene));
    scene.layOut();
    const Json promised = status();
    expectTruth(promised);
    expectStart(scene, promised);
    expectBoot(scene, promised);
    for (const Json& advice : promised.at("advice")) expectAdvice(scene, {advice});
    std::vector<Json> all(promised.at("advice").begin(), promised.at("advice").end());
    if (all.size() > 1) expectAdvice(scene, all);
  }

  bool isEnough() const { return testing::Test::HasFailure() && ++reported_ > kMostReported; }

  ~PromisesTest() override { RecordProperty("compared", compared_); }

 private:
  static constexpr int kMostReported = 20;

  static Json status() {
    const Silence silence;
    return tool::device::checkHealth().value;
  }

  static void verifyAsAtStart() {
    const Silence silence;
    CFG_VerifyFileFormat();
  }

  // "Well" is a device of which every copy is a file of its own, loads, and is in sync.
  static void expectTruth(const Json& promised) {
    if (promised.at("health") != "well") return;
    std::set<std::pair<dev_t, ino_t>> files;
    for (const char* directory : kDirectories)
      for (const char* name : kNames) {
        const std::string path = std::string(directory) + "/" + name;
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
        files.emplace(status.st_dev, status.st_ino);
        EXPECT_TRUE(holdsElement(path)) << path;
      }
    EXPECT_EQ(files.size(), std::size(kDirectories) * std::size(kNames));
    for (const char* name : kNames)
      EXPECT_EQ(tool::readFile(std::string("/cfg0/") + name),
                tool::readFile(std::string("/cfg1/") + name));
  }

  void expectStates(const Json& promised, const char* member) const {
    const Json now = status();
    for (std::size_t i = 0; i < promised.at("copies").size(); ++i) {
      const Json& copy = *(promised.at("copies").begin() + static_cast<std::ptrdiff_t>(i));
      const Json& found = *(now.at("copies").begin() + static_cast<std::ptrdiff_t>(i));
      const std::string path = copy.at("path").text();
      const std::string state = copy.at(member).text();
      EXPECT_EQ(found.at("state").text(), state) << member << " of " << path;
      if (state == "cut-short") continue;  // of all its elements, perhaps
      EXPECT_EQ(holdsElement(path), state == "good" || state == "out-of-step")
          << member << " of " << path;
    }
  }

  void expectStart(const Scene& scene, const Json& promised) const {
    scene.layOut();
    const Contents before = contentsNow();
    {
      const Silence silence;
      CFG_VerifyFileFormat();
    }
    Contents after = contentsNow();
    expectStates(promised, "afterStart");
    for (const Json& copy : promised.at("copies")) {
      const std::string path = copy.at("path").text();
      const std::string source = copy.at("atStart").is_null() ? "" : copy.at("atStart").text();
      if (source.empty()) continue;
      const std::string from =
          source == "stays" ? path : otherCopy(path, source == "from-backup" ? 1 : 2);
      EXPECT_EQ(before.count(from) == 0 ? "" : before.at(from), after[path]) << path;
    }
  }

  void expectBoot(const Scene& scene, const Json& promised) const {
    scene.layOut();
    std::set<std::string> salvaged;
    std::string done;
    try {
      const tool::Outcome outcome =
          tool::upgrade::upgradeAtStart(tool::device::boot(true, tool::document::rollBackAtStart));
      for (const Json& line : outcome.value.at("done")) done += line.text() + "\n";
    } catch (const tool::Refusal& refusal) {
      done = refusal.what();
    }
    SCOPED_TRACE("boot: " + done);
    expectStates(promised, "afterBoot");
    for (const Json& copy : promised.at("copies")) {
      if (copy.at("copy") != "main") continue;
      EXPECT_EQ(copy.at("atBoot") == "salvaged",
                done.find(copy.at("path").text() + " was salvaged") != std::string::npos);
    }
  }

  // Whether an answer still has a piece of advice.
  static bool isAmong(const Json& answer, const Json& advice) {
    const Json& all = answer.at("advice");
    return std::any_of(all.begin(), all.end(), [&](const Json& each) {
      return each.at("path") == advice.at("path") && each.at("problem") == advice.at("problem");
    });
  }

  static void moveAway(const std::vector<Json>& advice) {
    int number = 0;
    std::error_code ignored;
    fs::create_directory("/moved", ignored);
    std::set<std::string> paths;
    for (const Json& each : advice)
      for (const Json& path : each.at("move")) paths.insert(path.text());
    // What is in a directory that was moved away is gone with it.
    for (const std::string& path : paths)
      fs::rename(path, "/moved/" + std::to_string(++number), ignored);
  }

  void expectAdvice(const Scene& scene, const std::vector<Json>& advice) const {
    bool resyncs = false;
    bool runs = false;
    bool isAll = true;
    for (const Json& each : advice) {
      isAll = isAll && !each.at("command").is_null();
      runs = runs || !each.at("command").is_null();
      resyncs = resyncs || each.at("command") == "verify --resync";
    }
    if (!runs) return;
    scene.layOut();
    moveAway(advice);
    SCOPED_TRACE("followed: " + Json(advice).dump());
    try {
      const Silence silence;
      tool::device::verify(nullptr, resyncs);
    } catch (const tool::Refusal& refusal) {
      ADD_FAILURE() << refusal.what();
    }
    const Json now = status();
    for (const Json& each : advice)
      for (const Json& copy : now.at("copies")) {
        if (copy.at("path") != each.at("path") || each.at("command").is_null()) continue;
        EXPECT_EQ(copy.at("state").text(), "good") << copy.at("path").text();
        EXPECT_FALSE(isAmong(now, each)) << "the advice is still given";
      }
    if (advice.size() > 1 && isAll && resyncs) {
      EXPECT_EQ(now.at("health").text(), "well");
    }
  }

  // Salvage tries what it finds on a device among the host's temporary files.
  struct Host {
    Host() { tool::rememberTemporaries(); }
  } host_;
  testkit::DeviceRoot device_;
  WithoutOverride obeyPermissions_;
  LaterClock later_;
  int number_ = 0;
  int compared_ = 0;
  mutable int reported_ = 0;
};

constexpr Kinds kSound = {Kind::Good, Kind::Good, Kind::Good};

Kind kind(int number) {
  return static_cast<Kind>(number);
}

/// One of the three files, with every combination of copies, the others being as given.
class EveryCombination : public PromisesTest, public testing::WithParamInterface<Kind> {
 protected:
  void compareAll(const Kinds& others, int every) {
    int number = 0;
    for (int backup = 0; backup < kKinds; ++backup)
      for (int factory = 0; factory < kKinds; ++factory) {
        Scene scene;
        scene.files.fill(others);
        scene.files[static_cast<std::size_t>(++number) % 3] = {GetParam(), kind(backup),
                                                               kind(factory)};
        if (number % every == 0) compare(scene);
        if (isEnough()) return;
      }
  }
};

TEST_P(EveryCombination, OfOneFileBesideSoundOnes) {
  compareAll(kSound, 1);
}

TEST_P(EveryCombination, OfOneFileWithoutBackupsOfTheOthers) {
  compareAll({Kind::Good, Kind::Missing, Kind::Good}, 7);
}

TEST_P(EveryCombination, OfOneFileWithoutFactoryCopiesOfTheOthers) {
  compareAll({Kind::Good, Kind::Good, Kind::Missing}, 7);
}

INSTANTIATE_TEST_SUITE_P(OfMain, EveryCombination, testing::ValuesIn([] {
                           std::vector<Kind> all;
                           for (int each = 0; each < kKinds; ++each) all.push_back(kind(each));
                           return all;
                         }()));

Kind randomKind(std::mt19937& random) {
  return random() % 3 == 0 ? Kind::Good : kind(static_cast<int>(random() % kKinds));
}

TEST_F(PromisesTest, OfAllFilesAtRandom) {
  std::mt19937 random(15);
  for (int i = 0; i < 600 && !isEnough(); ++i) {
    Scene scene;
    for (Kinds& file : scene.files)
      for (Kind& copy : file) copy = randomKind(random);
    compare(scene);
  }
}

TEST_F(PromisesTest, OfDirectoriesThatAreNotThere) {
  std::mt19937 random(4);
  for (int i = 0; i < 900 && !isEnough(); ++i) {
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
