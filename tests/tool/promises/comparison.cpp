#include "tool/promises/comparison.h"

#include <camcfg/store.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "base/host.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "device/repair.h"
#include "document/trial.h"
#include "upgrade/upgrade.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;
using tool::Json;

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

Json status() {
  const Silence silence;
  return tool::device::checkHealth().value;
}

void verifyAsAtStart() {
  const Silence silence;
  CFG_VerifyFileFormat();
}

// "Well" is a device of which every copy is a file of its own, loads, and is in sync.
void expectTruth(const Json& promised) {
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

// The state of every copy of the device, by its path; nothing of one that is missing.
std::map<std::string, tool::device::State> statesNow() {
  std::map<std::string, tool::device::State> states;
  for (const tool::device::ConfigFile& file : tool::device::surveyFiles().files)
    for (const tool::device::Place place : tool::device::kPlaces)
      states[file.path(place)] = file.copy(place).state;
  return states;
}

void expectStates(const Json& promised, const char* member) {
  const auto now = statesNow();
  for (const Json& copy : promised.at("copies")) {
    const std::string path = copy.at("path").text();
    const std::string state = copy.at(member).text();
    const auto found = now.find(path);
    EXPECT_EQ(wordFor(found == now.end() ? tool::device::State::Missing : found->second), state)
        << member << " of " << path;
    if (state == "cut-short") continue;  // of all its elements, perhaps
    EXPECT_EQ(holdsElement(path), state == "good" || state == "out-of-step")
        << member << " of " << path;
  }
}

void expectStart(const Scene& scene, const Json& promised) {
  scene.layOut();
  const Contents before = contentsNow();
  verifyAsAtStart();
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

void expectBoot(const Scene& scene, const Json& promised) {
  scene.layOut();
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
bool isAmong(const Json& answer, const Json& advice) {
  const Json& all = answer.at("advice");
  return std::any_of(all.begin(), all.end(), [&](const Json& each) {
    return each.at("path") == advice.at("path") && each.at("problem") == advice.at("problem");
  });
}

void moveAway(const std::vector<Json>& advice) {
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

void expectAdvice(const Scene& scene, const std::vector<Json>& advice) {
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

}  // namespace

void expectPromisesKept(const Scene& scene) {
  SCOPED_TRACE(testing::PrintToString(scene));
  scene.layOut();
  const Json promised = status();
  expectTruth(promised);
  expectStart(scene, promised);
  expectBoot(scene, promised);
  for (const Json& advice : promised.at("advice")) expectAdvice(scene, {advice});
  const std::vector<Json> all(promised.at("advice").begin(), promised.at("advice").end());
  if (all.size() > 1) expectAdvice(scene, all);
}

}  // namespace camcfg::tests
