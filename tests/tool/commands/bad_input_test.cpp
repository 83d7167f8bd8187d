#include <camcfg/store.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "base/outcome.h"
#include "parameters/parameter.h"
#include "tool/others_file.h"
#include "tool/sample_test.h"
#include "tool/small_disk.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;

using Tree = std::map<std::string, std::string>;

// Stands for the path of an input file.
constexpr char kDocumentFile[] = "@document";
constexpr char kPresetTableFile[] = "@presets";

const std::vector<Words> kReading = {{"list"},
                                     {"get", "System", "Rtsp"},
                                     {"describe", "Rtsp"},
                                     {"system"},
                                     {"system", "rtsp-port"},
                                     {"network", "cards"},
                                     {"network", "show", "Lan0"},
                                     {"network", "hostname"},
                                     {"preset", "list"},
                                     {"preset", "get", "0"},
                                     {"preset", "export"},
                                     {"stream", "sources"},
                                     {"stream", "caches"},
                                     {"live", "websocket"},
                                     {"live", "rtsp"},
                                     {"live", "rtmp"},
                                     {"live", "ndi"},
                                     {"live", "srt"},
                                     {"graph"},
                                     {"export"}};

const std::vector<Words> kWriting = {{"set", "System", "Rtsp", "8554"},
                                     {"system", "rtsp-port", "8554"},
                                     {"network", "set", "Lan0", "MTU", "1400"},
                                     {"network", "hostname", "gate"},
                                     {"network", "reset", "Lan0"},
                                     {"preset", "set", "0", "--pan", "3"},
                                     {"preset", "add", "--pan", "3"},
                                     {"preset", "delete", "0"},
                                     {"preset", "import", kPresetTableFile},
                                     {"stream", "cache", "0", "select", "1"},
                                     {"stream", "cache", "0", "default", "1"},
                                     {"stream", "cache", "0", "allow", "0", "1"},
                                     {"import", kDocumentFile},
                                     {"reset", "System", "WebHttp"},
                                     {"reset", "--section", "System"},
                                     {"reset", "--section", "NetWork"},
                                     {"reset", "--section", "presets"},
                                     {"reset", "--section", "live.srt"},
                                     {"reset", "--all", "--yes"}};

std::string named(const Words& words) {
  std::string line;
  for (const std::string& word : words) line += " " + word.substr(0, 40);
  return line;
}

std::size_t linesIn(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// A device on which every command that writes has something to change.
class BadInputTest : public SampleTest {
 protected:
  BadInputTest() {
    run({"set", "System", "WebHttp", "81"});
    run({"network", "hostname", "other"});
    run({"preset", "set", "0", "--tilt", "5"});
    const std::string media = with(device.read("/cfg0/mpp_cfg.xml"), "Port=\"9001\"", "Port=\"9\"");
    for (const char* path : {"/cfg0/mpp_cfg.xml", "/cfg1/mpp_cfg.xml"}) device.write(path, media);
    inputs_.write("/document.json",
                  R"({"version": 1, "parameters": {"System": {"Rtsp": 8554}}, "presets": [],
                      "live": {"websocket": []}})");
    inputs_.write("/presets.csv", "id,pan\n0,9\n");
  }

  Words ready(Words words) const {
    for (std::string& word : words) {
      if (word == kDocumentFile) word = input("/document.json");
      if (word == kPresetTableFile) word = input("/presets.csv");
    }
    return words;
  }
  std::string input(const std::string& name) const { return inputs_.hostPath() + name; }

  // Every file of the device with its bytes, every directory.
  Tree tree() const {
    Tree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(device.hostPath())) {
      std::ostringstream bytes;
      if (entry.is_regular_file()) bytes << std::ifstream(entry.path()).rdbuf();
      tree[entry.path()] = bytes.str();
    }
    return tree;
  }

  // Runs a command that must be refused in one line and leave the device as it is.
  void expectRefused(const Words& words, int status,
                     const std::function<void()>& inChild = {}) const {
    SCOPED_TRACE(named(words));
    const Tree before = tree();
    const ToolRun result = run(ready(words), inChild);
    EXPECT_EQ(result.status, status) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(linesIn(result.err), 1U) << result.err;
    EXPECT_LT(result.err.size(), 700U);
    EXPECT_THAT(result.err, testing::StartsWith("camcfg: " + words.front()));
    EXPECT_TRUE(tree() == before);
  }

  void expectAllRefused(int status) const {
    for (const auto* table : {&kReading, &kWriting})
      for (const Words& words : *table) expectRefused(words, status);
  }

  void writeMains(const char* contents) const {
    for (const std::string name : kFileNames) device.write("/cfg0/" + name, contents);
  }

  testkit::DeviceRoot inputs_{testkit::DeviceRoot::StayOut};
};

TEST_F(BadInputTest, MissingMainCopiesAreUnusableForEveryCommand) {
  for (const std::string name : kFileNames) device.remove("/cfg0/" + name);
  expectAllRefused(3);
}

TEST_F(BadInputTest, BrokenMainCopiesAreUnusableForEveryCommand) {
  writeMains("<System><Rtsp Cur=\"554\"");
  expectAllRefused(3);
}

TEST_F(BadInputTest, EmptyMainCopiesAreUnusableForEveryCommand) {
  writeMains("");
  expectAllRefused(3);
}

TEST_F(BadInputTest, MainCopiesWithoutWhatIsSoughtAreRefused) {
  writeMains("<Other/>\n");
  for (const auto* table : {&kReading, &kWriting})
    for (const Words& words : *table) {
      // These need nothing of it, or make what is missing.
      const bool isMade = words.size() > 2 && (words[2] == "presets" || words[2] == "live.srt");
      if (words.front() == "list" || words == Words{"system"} || isMade) continue;
      SCOPED_TRACE(named(words));
      const Tree before = tree();
      const ToolRun result = run(ready(words));
      EXPECT_NE(result.status, 0);
      EXPECT_EQ(result.out, "");
      EXPECT_GE(linesIn(result.err), 1U);
      EXPECT_TRUE(tree() == before);
    }
}

TEST_F(BadInputTest, CommandsForDamagedDevicesAnswerAndChangeNothing) {
  writeMains("<System");
  const Tree before = tree();
  EXPECT_EQ(run({"status"}).status, 4);
  EXPECT_EQ(run({"explain", "System", "Rtsp"}).status, 0);
  EXPECT_EQ(run({"explain", "card", "Lan0"}).status, 0);
  EXPECT_EQ(run({"explain", "preset", "0"}).status, 0);
  EXPECT_EQ(run({"explain", "session", "srt", "1"}).status, 0);
  EXPECT_EQ(run({"diff"}).status, 3);
  EXPECT_EQ(run({"diff", "--factory"}).status, 3);
  EXPECT_TRUE(tree() == before);
}

TEST_F(BadInputTest, DeviceThatMayOnlyBeReadIsChangedByNothing) {
  for (const std::string name : kFileNames)
    for (const char* directory : {"/cfg0/", "/cfg1/"}) {
      const std::string why = giveToAnother(device.hostPath() + directory + name);
      if (!why.empty()) GTEST_SKIP() << why;
      fs::permissions(device.hostPath() + directory + name, fs::perms(0644));
    }
  for (const Words& words : kWriting) expectRefused(words, 1, obeyPermissions);
  for (const Words& words : kReading)
    EXPECT_EQ(run(words, obeyPermissions).status, 0) << named(words);
}

TEST_F(BadInputTest, FullDiskIsReportedBeforeAnythingIsWritten) {
  const SmallDisk disk(device.hostPath() + "/cfg1", "64k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  for (const std::string name : kFileNames)
    device.write("/cfg1/" + name, device.read("/cfg0/" + name));
  // Up to the last block.
  std::ofstream(device.hostPath() + "/cfg1/filler") << std::string(64 << 10, 'x');
  for (const Words& words : kWriting) expectRefused(words, 1);
}

TEST_F(BadInputTest, DiskMountedReadOnlyIsReportedBeforeAnythingIsWritten) {
  const SmallDisk disk(device.hostPath() + "/cfg1", "64k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  for (const std::string name : kFileNames)
    device.write("/cfg1/" + name, device.read("/cfg0/" + name));
  ASSERT_TRUE(disk.makeReadOnly());
  for (const Words& words : kWriting) expectRefused(words, 1);
}

TEST_F(BadInputTest, BackupDirectoryThatIsMissingIsReportedBeforeAnythingIsWritten) {
  device.remove("/cfg1");
  for (const Words& words : kWriting) expectRefused(words, 1);
}

TEST_F(BadInputTest, EndlessNamesAreRefusedInALineThatCanBeRead) {
  const std::string endless(100000, 'n');
  for (const Words& words : std::vector<Words>{{"list", endless},
                                               {"get", endless, "Rtsp"},
                                               {"get", "System", endless},
                                               {"set", endless, "Rtsp", "1"},
                                               {"set", "System", endless, "1"},
                                               {"set", "System", "Rtsp", endless},
                                               {"set", "System", "Language", endless},
                                               {"describe", endless},
                                               {"system", "rtsp-port", endless},
                                               {"network", "show", endless},
                                               {"network", "set", endless, "MTU", "1400"},
                                               {"network", "set", "Lan0", endless, "1400"},
                                               {"network", "set", "Lan0", "MTU", endless},
                                               {"network", "set", "Lan0", "IpAddr", endless},
                                               {"network", "set", "Lan0", "Speed", endless},
                                               {"network", "hostname", endless},
                                               {"network", "reset", endless},
                                               {"preset", "get", endless},
                                               {"preset", "get", std::string(100000, '9')},
                                               {"preset", "set", endless},
                                               {"preset", "set", "0", "--pan", endless},
                                               {"preset", "set", "0", "--description", endless},
                                               {"preset", "delete", endless},
                                               {"stream", "cache", endless, "select", "1"},
                                               {"stream", "cache", "0", "select", endless},
                                               {"stream", "cache", "0", "allow", endless},
                                               {"lang", endless, "MenuLive"},
                                               {"explain", endless, "Rtsp"},
                                               {"explain", "System", endless},
                                               {"explain", "card", endless},
                                               {"explain", "card", "Lan0", endless},
                                               {"explain", "preset", endless},
                                               {"explain", "session", "srt", endless},
                                               {"reset", endless, "Rtsp"},
                                               {"reset", "System", endless},
                                               {"reset", "--section", endless},
                                               {"export", endless},
                                               {"import", endless},
                                               {"preset", "import", endless}})
    expectRefused(words, 1);
  for (const Words& words : std::vector<Words>{
           {"explain", "session", endless, "1"}, {"diff", endless}, {"graph", "--format", endless}})
    expectRefused(words, 2);
}

TEST_F(BadInputTest, InputThatIsNoDocumentIsRefused) {
  const std::string nested(100000, '[');
  const std::string utf16("\xff\xfe{\0}\0", 6);
  for (const std::string& text :
       {std::string(), std::string("no JSON"), std::string("{\"version\": 1"), nested, utf16,
        std::string(3, '\0'), std::string("<System/>")}) {
    inputs_.write("/document.json", text);
    SCOPED_TRACE(text.substr(0, 20));
    expectRefused({"import", kDocumentFile}, 1);
    expectRefused({"diff", kDocumentFile}, 2);
    inputs_.write("/presets.csv", text);
    expectRefused({"preset", "import", kPresetTableFile}, 1);
  }
}

TEST_F(BadInputTest, InputThatCannotBeReadIsRefused) {
  for (const char* name : {"/none", "/", "/document.json/x"}) {
    expectRefused({"import", input(name)}, 1);
    expectRefused({"preset", "import", input(name)}, 1);
    expectRefused({"diff", input(name)}, 2);
  }
}

TEST_F(BadInputTest, RootThatCannotBeEnteredIsRefused) {
  for (const std::string& root :
       {device.hostPath() + "/none", device.hostPath() + "/cfg0/mpp_cfg.xml"}) {
    const ToolRun result = runCamcfg({"--root", root, "list"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(linesIn(result.err), 1U) << result.err;
  }
}

// Locks are those of one process, so only a thread of the tool's own could hold one.
TEST(LockedFileTest, FileWhoseLockIsHeldIsReportedAfterTheTimeOut) {
  const testkit::DeviceRoot device;
  device.write(kBusiness, kParameters);
  device.write(kBusinessBackup, kParameters);
  ASSERT_EQ(cfgLockFile(kBusiness), 0);
  try {
    const tool::parameters::Parameters parameters;
    FAIL() << "it was read";
  } catch (const tool::Refusal& refusal) {
    EXPECT_EQ(refusal.status(), tool::Status::Unusable);
    EXPECT_THAT(refusal.what(), testing::StartsWith("/cfg0/business_param.xml "));
  }
  EXPECT_EQ(device.read(kBusiness), kParameters);
  EXPECT_EQ(device.read(kBusinessBackup), kParameters);
}

}  // namespace
}  // namespace camcfg::tests
