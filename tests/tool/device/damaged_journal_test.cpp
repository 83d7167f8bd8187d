#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class DamagedJournalTest : public JournalTest {};

TEST_F(DamagedJournalTest, OneThatIsCutOffAnywhereIsDropped) {
  open();
  const std::string text = device.read(kJournal);
  device.remove(kJournal);
  for (std::size_t size = 0; size < 2 * text.size(); ++size) {
    // With zeros where its end was to be, and without.
    std::string cut = text.substr(0, size / 2);
    if (size % 2 != 0) cut.resize(text.size());
    device.write(kNewJournal, cut);
    ASSERT_FALSE(waitingChange()) << size;
    ASSERT_THAT(finish(), IsEmpty()) << size;
    ASSERT_TRUE(isIdle() && isOld()) << size;
  }
}

TEST_F(DamagedJournalTest, CutOffOneUnderItsNameIsDamaged) {
  open();
  const std::string text = device.read(kJournal);
  for (std::size_t size = 0; size < text.size(); size += 7) {
    device.remove(kAside);
    device.write(kJournal, text.substr(0, size));
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("journal is damaged"))) << size;
    EXPECT_TRUE(isIdle() && isOld()) << size;
  }
}

TEST_F(DamagedJournalTest, FlippedBitIsNeverApplied) {
  open();
  const std::string text = device.read(kJournal);
  for (std::size_t at = 0; at < 2 * text.size(); ++at) {
    const bool isNamed = at < text.size();
    std::string flipped = text;
    char& byte = flipped[at % text.size()];
    byte = static_cast<char>(byte ^ (1 << at % 7));
    device.remove(kJournal);
    device.write(isNamed ? kJournal : kNewJournal, flipped);
    ASSERT_FALSE(waitingChange()) << at;
    const Lines lines = finish();
    ASSERT_TRUE(isIdle() && isOld()) << at;
    // One that does not have its name yet may look as if it were cut off.
    ASSERT_EQ(lines.size(), isNamed ? 1U : lines.size()) << at;
  }
}

TEST_F(DamagedJournalTest, DamagedContentsAreNeverApplied) {
  open();
  const std::string text = device.read(kJournal);
  for (const std::string& name : device.list("/cfg1/.camcfg/contents")) {
    const std::string path = "/cfg1/.camcfg/contents/" + name;
    const std::string bytes = device.read(path);
    device.write(kJournal, text);
    device.write(path, bytes + " ");
    EXPECT_EQ(waitingChange(), std::nullopt);
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("journal is damaged: contents are missing")));
    device.remove(path);
    device.write(kNewJournal, text);
    EXPECT_THAT(finish(), IsEmpty());
    EXPECT_TRUE(isOld() && isIdle());
    device.write(path, bytes);
  }
}

TEST_F(DamagedJournalTest, DamagedContentsAreWrittenAgain) {
  open();
  for (const std::string& name : device.list("/cfg1/.camcfg/contents"))
    device.write("/cfg1/.camcfg/contents/" + name, "");
  open();
  EXPECT_THAT(finish(), ElementsAre("finished an interrupted change: import settings.json"));
}

}  // namespace
}  // namespace camcfg::tests
