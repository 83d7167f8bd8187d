#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kSound[] = "<A>\n    <B Cur=\"1\"/>\n</A>\n";
constexpr char kLonger[] = "<A>\n    <B Cur=\"22\"/>\n</A>\n";
constexpr char kNotApart[] = "programs: not kept apart (/run/camcfg does not exist)\n";
constexpr char kCutShort[] = "<A>\n    <B Cu";
constexpr const char* kDirectories[] = {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"};

/// A device whose three files are well, except for what a test does to the first of them.
class StatusTest : public ToolTest {
 protected:
  StatusTest() {
    for (const char* directory : kDirectories)
      for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
        write(std::string(directory) + name, kSound);
  }

  void write(const std::string& path, const std::string& contents) const {
    device.write(path, contents);
    // 2026-02-03 04:05:06
    const timespec times[] = {{1770091506, 0}, {1770091506, 0}};
    utimensat(AT_FDCWD, (device.hostPath() + path).c_str(), times, 0);
  }

  ToolRun status() const { return run({"status"}); }

  // The rows of one file in the table, and what follows the table.
  std::string rowsOf(const std::string& name, const ToolRun& run) const {
    std::string rows;
    std::istringstream lines(run.out);
    for (std::string line; std::getline(lines, line);)
      if (line.find(name) == 0) rows += line + "\n";
    return rows;
  }
};

TEST_F(StatusTest, AllCopiesInStepAreWell) {
  EXPECT_EQ(status(),
            (ToolRun{0,
                     "FILE                COPY     STATE  BYTES  CHANGED               AT START\n"
                     "business_param.xml  main     good   26     2026-02-03T04:05:06Z  stays\n"
                     "business_param.xml  backup   good   26     2026-02-03T04:05:06Z  stays\n"
                     "business_param.xml  default  good   26     2026-02-03T04:05:06Z  -\n"
                     "mpp_cfg.xml         main     good   26     2026-02-03T04:05:06Z  stays\n"
                     "mpp_cfg.xml         backup   good   26     2026-02-03T04:05:06Z  stays\n"
                     "mpp_cfg.xml         default  good   26     2026-02-03T04:05:06Z  -\n"
                     "preset_cfg.xml      main     good   26     2026-02-03T04:05:06Z  stays\n"
                     "preset_cfg.xml      backup   good   26     2026-02-03T04:05:06Z  stays\n"
                     "preset_cfg.xml      default  good   26     2026-02-03T04:05:06Z  -\n"
                     "health: well\n" +
                         std::string(kNotApart),
                     ""}));
}

TEST_F(ToolTest, StoreWithoutAnyFileIsUnusable) {
  const std::string row = "  missing  -      -        -\n";
  std::string table = "FILE                COPY     STATE    BYTES  CHANGED  AT START\n";
  std::string told;
  for (std::string name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"}) {
    const std::string padded = name + std::string(20 - name.size(), ' ');
    for (const char* copy : {"main   ", "backup ", "default"}) table += padded + copy + row;
    told += "camcfg: status: /cfg0/" + name + " is missing and no other copy of it is good\n" +
            "camcfg: status: /cfg1/" + name + " is missing\n" +
            "camcfg: status: /app/resource/defcfg/" + name +
            " is missing, so no start can restore from it\n";
  }
  EXPECT_EQ(run({"status"}), (ToolRun{3, table + "health: unusable\n" + kNotApart, told}));
}

TEST_F(StatusTest, SaysWhetherProgramsAreKeptApart) {
  device.makeDirectory("/run/camcfg");
  EXPECT_THAT(status().out, testing::EndsWith("\nprograms: kept apart\n"));
  EXPECT_THAT(run({"--json", "status"}).out,
              testing::HasSubstr("\"keptApart\": true,\n  \"keptApartWhyNot\": null"));
  device.remove("/run/camcfg");
  device.write("/run/camcfg", "");
  EXPECT_THAT(status().out,
              testing::EndsWith("\nprograms: not kept apart (/run/camcfg is not a directory)\n"));
}

TEST_F(StatusTest, JsonHasEveryMember) {
  for (const char* name : {"mpp_cfg.xml", "preset_cfg.xml"})
    for (const char* directory : kDirectories) device.remove(std::string(directory) + name);
  device.remove("/cfg1/business_param.xml");
  device.write("/cfg1/other", "");
  const ToolRun result = run({"status", "--json"});
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.out, testing::StartsWith("{\n"
                                              "  \"health\": \"unusable\",\n"
                                              "  \"files\": [\n"
                                              "    {\n"
                                              "      \"name\": \"business_param.xml\",\n"
                                              "      \"health\": \"degraded\",\n"
                                              "      \"required\": true,\n"
                                              "      \"checkedAtStart\": true\n"
                                              "    },\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("  \"copies\": [\n"
                                             "    {\n"
                                             "      \"file\": \"business_param.xml\",\n"
                                             "      \"copy\": \"main\",\n"
                                             "      \"path\": \"/cfg0/business_param.xml\",\n"
                                             "      \"state\": \"good\",\n"
                                             "      \"bytes\": 26,\n"
                                             "      \"changed\": \"2026-02-03T04:05:06Z\",\n"
                                             "      \"atStart\": \"stays\",\n"
                                             "      \"afterStart\": \"good\",\n"
                                             "      \"atBoot\": \"stays\",\n"
                                             "      \"afterBoot\": \"good\",\n"
                                             "      \"sameFileAs\": null\n"
                                             "    },\n"
                                             "    {\n"
                                             "      \"file\": \"business_param.xml\",\n"
                                             "      \"copy\": \"backup\",\n"
                                             "      \"path\": \"/cfg1/business_param.xml\",\n"
                                             "      \"state\": \"missing\",\n"
                                             "      \"bytes\": null,\n"
                                             "      \"changed\": null,\n"
                                             "      \"atStart\": \"stays\",\n"
                                             "      \"afterStart\": \"missing\",\n"
                                             "      \"atBoot\": \"from-main\",\n"
                                             "      \"afterBoot\": \"good\",\n"
                                             "      \"sameFileAs\": null\n"
                                             "    },\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("  \"findings\": [\n"
                                             "    \"/cfg1/business_param.xml is missing; 'camcfg "
                                             "verify --resync' brings it up to date\",\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("  \"advice\": [\n"
                                             "    {\n"
                                             "      \"path\": \"/cfg1/business_param.xml\",\n"
                                             "      \"problem\": \"is missing\",\n"
                                             "      \"move\": [],\n"
                                             "      \"command\": \"verify --resync\"\n"
                                             "    },\n"));
}

struct Damage {
  const char* main;
  const char* backup;
  const char* factory;
  int status;
  std::string rows;      // state and what start-up does, of main, backup and default
  std::string findings;  // a line each
};

void PrintTo(const Damage& damage, std::ostream* out) {
  *out << damage.rows;
}

class DamagedFileTest : public StatusTest, public testing::WithParamInterface<Damage> {
 protected:
  static std::string states(const std::string& table) {
    std::string states;
    std::istringstream lines(table);
    for (std::string file, copy, state, bytes, changed, atStart;
         lines >> file >> copy >> state >> bytes >> changed >> atStart;)
      states.append(states.empty() ? "" : ", ").append(state).append(" ").append(atStart);
    return states;
  }
};

constexpr char kMainAt[] = "/cfg0/business_param.xml";
constexpr char kBackupAt[] = "/cfg1/business_param.xml";
constexpr char kDefaultAt[] = "/app/resource/defcfg/business_param.xml";

TEST_P(DamagedFileTest, IsReportedWithWhatStartUpDoesToIt) {
  const Damage& damage = GetParam();
  const char* copies[] = {damage.main, damage.backup, damage.factory};
  const char* paths[] = {kMainAt, kBackupAt, kDefaultAt};
  for (int i = 0; i < 3; ++i) {
    device.remove(paths[i]);
    if (copies[i] != nullptr) write(paths[i], copies[i]);
  }
  const ToolRun result = status();
  EXPECT_EQ(states(rowsOf("business_param.xml", result)), damage.rows);
  EXPECT_EQ(result.status, damage.status);
  EXPECT_EQ(result.err, damage.findings);
  EXPECT_THAT(result.out,
              testing::HasSubstr(damage.status == 3 ? "health: unusable\n" : "health: degraded\n"));
}

std::string finding(const char* path, const std::string& text) {
  return std::string("camcfg: status: ") + path + " " + text + "\n";
}

constexpr char kFromBackup[] = "; the next start restores it from its backup";
constexpr char kFromDefault[] = "; the next start restores it from the factory set";
constexpr char kResync[] = "; 'camcfg verify --resync' brings it up to date";
constexpr char kNone[] = ", so no start can restore from it";

INSTANTIATE_TEST_SUITE_P(
    Copies, DamagedFileTest,
    testing::Values(
        Damage{nullptr, kSound, kSound, 4, "missing from-backup, good stays, good -",
               finding(kMainAt, std::string("is missing") + kFromBackup)},
        Damage{kCutShort, kSound, kSound, 4, "damaged from-backup, good stays, good -",
               finding(kMainAt, std::string("is not well-formed XML") + kFromBackup)},
        Damage{kCutShort, kCutShort, kSound, 4,
               "damaged from-default, damaged from-default, good -",
               finding(kMainAt, std::string("is not well-formed XML") + kFromDefault) +
                   finding(kBackupAt, std::string("is not well-formed XML") + kFromDefault)},
        Damage{kSound, kCutShort, kSound, 4, "good stays, damaged stays, good -",
               finding(kBackupAt, std::string("is not well-formed XML") + kResync)},
        Damage{kSound, nullptr, kSound, 4, "good stays, missing stays, good -",
               finding(kBackupAt, std::string("is missing") + kResync)},
        Damage{kSound, kLonger, kSound, 4, "good stays, out-of-step stays, good -",
               finding(kBackupAt, std::string("differs from its main copy") + kResync)},
        Damage{kSound, kSound, kCutShort, 4, "good stays, good stays, damaged -",
               finding(kDefaultAt, std::string("is not well-formed XML") + kNone)},
        // The names of the factory set are those that start-up verification looks at.
        Damage{kSound, kSound, nullptr, 4, "good -, good -, missing -",
               finding(kDefaultAt, std::string("is missing") + kNone)},
        Damage{kCutShort, kSound, nullptr, 3, "damaged -, good -, missing -",
               finding(kMainAt,
                       "is not well-formed XML; 'camcfg verify --resync' restores it from its "
                       "backup") +
                   finding(kDefaultAt, std::string("is missing") + kNone)},
        Damage{kCutShort, kCutShort, kCutShort, 3, "damaged stays, damaged stays, damaged -",
               finding(kMainAt, "is not well-formed XML and no other copy of it is good") +
                   finding(kBackupAt, "is not well-formed XML") +
                   finding(kDefaultAt, std::string("is not well-formed XML") + kNone)},
        Damage{"<A/>", "<A/><B/>", kSound, 3, "cut-short stays, good stays, good -",
               finding(kMainAt,
                       "ends before 'B', which its backup has; 'camcfg verify --resync' restores "
                       "it from its backup")},
        Damage{"<!-- x -->", kSound, kSound, 3, "cut-short stays, good stays, good -",
               finding(kMainAt,
                       "ends before 'A', which its backup has; 'camcfg verify --resync' restores "
                       "it from its backup")},
        Damage{"<!-- x -->", "<!-- x -->", kSound, 3, "no-element stays, no-element stays, good -",
               finding(kMainAt,
                       "holds no element; 'camcfg verify --resync' restores it from the factory "
                       "set") +
                   finding(kBackupAt, std::string("holds no element") + kResync)}));

TEST_F(StatusTest, FileOutsideTheFactorySetNeedsNoFactoryCopy) {
  write("/cfg0/own.xml", kSound);
  write("/cfg1/own.xml", kSound);
  EXPECT_EQ(status().status, 0);
  EXPECT_EQ(rowsOf("own.xml", status()),
            "own.xml             main     good     26     2026-02-03T04:05:06Z  -\n"
            "own.xml             backup   good     26     2026-02-03T04:05:06Z  -\n"
            "own.xml             default  missing  -      -                     -\n");
}

constexpr char kMoveIt[] = "; move it away and run 'camcfg verify --resync'";

TEST_F(StatusTest, WhatIsInTheWayOfAMainCopyIsRestoredByNoStart) {
  const std::string main = device.hostPath() + kMainAt;
  const auto expectUnusable = [&](const std::string& fault) {
    const ToolRun result = status();
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, finding(kMainAt, fault + kMoveIt));
    EXPECT_THAT(rowsOf("business_param.xml", result), testing::HasSubstr("not-a-file"));
    EXPECT_THAT(rowsOf("business_param.xml", result), testing::Not(testing::HasSubstr("from-")));
    device.remove(kMainAt);
  };
  device.remove(kMainAt);
  ASSERT_EQ(mkfifo(main.c_str(), 0600), 0);
  expectUnusable("is not a regular file");
  std::filesystem::create_symlink("/no/such", main);
  expectUnusable("is a link to nothing");
  device.makeDirectory(kMainAt);
  expectUnusable("is a directory");
}

TEST_F(StatusTest, BackupThatIsItsMainCopyIsNone) {
  const std::string backup = device.hostPath() + kBackupAt;
  device.remove(kBackupAt);
  std::filesystem::create_symlink(kMainAt, backup);
  const std::string same =
      finding(kBackupAt, std::string("is the same file as ") + kMainAt + kMoveIt);
  EXPECT_EQ(status().err, same);
  EXPECT_EQ(status().status, 4);
  device.remove(kBackupAt);
  std::filesystem::create_hard_link(device.hostPath() + kMainAt, backup);
  EXPECT_EQ(status().err, same);
}

TEST_F(StatusTest, LinkInTheFactorySetIsPassedByWhenTheDeviceStarts) {
  device.write("/good.xml", kSound);
  device.remove(kDefaultAt);
  std::filesystem::create_symlink("/good.xml", device.hostPath() + kDefaultAt);
  device.remove(kMainAt);
  device.remove(kBackupAt);
  EXPECT_EQ(
      status().err,
      finding(kMainAt, "is missing; 'camcfg verify --resync' restores it from the factory set") +
          finding(kBackupAt, std::string("is missing") + kResync) +
          finding(kDefaultAt, "is a link, so no start can restore from it"));
}

TEST_F(StatusTest, NothingIsChanged) {
  device.remove(kMainAt);
  write(kBackupAt, kCutShort);
  status();
  EXPECT_FALSE(device.exists(kMainAt));
  EXPECT_EQ(device.read(kBackupAt), kCutShort);
}

}  // namespace
}  // namespace camcfg::tests
