#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "device/state_contents.h"
#include "device/state_record.h"
#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::HasSubstr;

class HostileJournalTest : public JournalTest {
 protected:
  HostileJournalTest() {
    open();  // whose contents are there
    text_ = device.read(kJournal);
    device.remove(kJournal);
  }

  static std::string withHead(const std::string& rest) {
    return "camcfg-change 1 " + std::to_string(rest.size()) + " " + hashOf(rest) + "\n" + rest;
  }

  std::string json() const { return text_.substr(text_.find('\n') + 1); }

  void expectPutAside(const std::string& text, const std::string& why) const {
    for (const char* path : {kJournal, "/cfg1/.camcfg/rollback", kNewJournal}) {
      device.remove(kAside);
      device.write(path, text);
      EXPECT_EQ(waitingChange(), std::nullopt) << why;
      EXPECT_THAT(finish(), ElementsAre(path + why +
                                        "; it was put aside as /cfg1/.camcfg/aside-1 and not "
                                        "applied"));
      EXPECT_TRUE(isIdle() && isOld()) << why;
    }
  }

  void expectReported(const std::string& line) const {
    EXPECT_THAT(finish(), ElementsAre(HasSubstr(line)));
    EXPECT_TRUE(isIdle() && isOld());
    device.remove(kAside);
  }

  std::string text_;
};

TEST_F(HostileJournalTest, LaterVersionIsPutAside) {
  const std::string why = " was written by a later version of this program";
  expectPutAside("camcfg-change 2" + text_.substr(text_.find(" 1 ") + 2), why);
  expectPutAside("camcfg-change 2 in another way\n", why);
}

TEST_F(HostileJournalTest, WrongChecksumIsPutAside) {
  expectPutAside(with(text_, "business", "busyness"), " is damaged: its checksum is wrong");
  expectPutAside("something else\n", " is damaged: its checksum is wrong");
}

TEST_F(HostileJournalTest, PathsThatAreNoMainCopiesArePutAside) {
  for (const char* path : {"/etc/passwd.xml", "/cfg0/../etc/x.xml", "/cfg0/sub/x.xml",
                           "/cfg1/business_param.xml", "/cfg0/passwd", "/app/resource/x.xml"})
    expectPutAside(withHead(with(json(), kBusiness, path)),
                   " is about " + std::string(path) + ", which is no main copy of a device");
}

TEST_F(HostileJournalTest, JsonWithoutSenseIsPutAside) {
  expectPutAside(withHead("{}"), " is damaged: it has no number or no time");
  expectPutAside(withHead("[1"), " is damaged: it has no number or no time");
  expectPutAside(withHead(with(json(), "\"number\": 1", "\"number\": 0")),
                 " is damaged: it has no number or no time");
  expectPutAside(withHead(with(json(), "\"number\": 1", "\"number\": 18446744073709551615")),
                 " is damaged: it has no number or no time");
  expectPutAside(withHead(with(json(), "\"files\"", "\"flies\"")), " is damaged: it names no file");
  expectPutAside(withHead(with(json(), kPreset, kBusiness)), " is damaged: it names a file twice");
  expectPutAside(withHead(with(json(), hashOf(kNewPreset), "../../x")),
                 " is damaged: a file has no contents");
  expectPutAside(withHead(std::string(1000, '[')),
                 " is damaged: it is nested deeper than 32 levels");
}

TEST_F(HostileJournalTest, MissingContentsAreNotMadeUp) {
  const std::string other = withHead(with(json(), hashOf(kNewPreset), std::string(64, 'a')));
  device.write(kJournal, other);
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("is damaged: contents are missing")));
  EXPECT_TRUE(isOld());
}

TEST_F(HostileJournalTest, GiantOneIsNotRead) {
  device.write(kJournal, "");
  ASSERT_EQ(truncate(kJournal, off_t{1} << 40), 0);
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("journal is damaged: it is too long")));
}

TEST_F(HostileJournalTest, LinkInItsPlaceIsPutAside) {
  device.write("/elsewhere", text_);
  for (const char* path : {kJournal, kNewJournal}) {
    ASSERT_EQ(symlink("/elsewhere", path), 0);
    expectReported(std::string(path) + " is damaged: it is a link");
  }
}

TEST_F(HostileJournalTest, DirectoryOrPipeInItsPlaceIsPutAside) {
  for (const char* path : {kJournal, kNewJournal}) {
    const std::string line = std::string(path) + " is damaged: it is not a regular file";
    device.makeDirectory(path);
    expectReported(line);
    ASSERT_EQ(mkfifo(path, 0600), 0);
    expectReported(line);
  }
}

TEST_F(HostileJournalTest, LinkInPlaceOfTheContentsIsNotFollowed) {
  std::filesystem::rename("/cfg1/.camcfg/contents", "/elsewhere");
  ASSERT_EQ(symlink("/elsewhere", "/cfg1/.camcfg/contents"), 0);
  device.write(kJournal, text_);
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("contents are missing")));
  EXPECT_THROW(open(), tool::Refusal);
  EXPECT_TRUE(isIdle());
}

TEST_F(HostileJournalTest, CommandLineIsShownOnOneLineAndCut) {
  RecordedChange change{1, 0, "a\nb\x1b[1m" + std::string(10000, 'x'), "", files()};
  device.write(kJournal, recordText(withHashes(change)));
  const Lines lines = finishInterrupted();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], HasSubstr("a\\nb\\x1b[1m"));
  EXPECT_LT(lines[0].size(), 5000U);
  EXPECT_TRUE(isNew());
}

TEST_F(HostileJournalTest, TimeBeyondAllCalendarsIsShown) {
  RecordedChange change{1, INT64_MAX, "set", "", files()};
  device.write(kJournal, recordText(withHashes(change)));
  EXPECT_THAT(finish(), ElementsAre("finished an interrupted change: set (at an unknown time)"));
}

}  // namespace
}  // namespace camcfg::tests
