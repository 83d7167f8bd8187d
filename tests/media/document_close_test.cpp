#include <cstdint>
#include <type_traits>

#include "media/document_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(static_cast<std::uint32_t>(CFG_MPP_ERR) == 0x80002205u);
static_assert(static_cast<std::uint32_t>(CFG_LM_ERR) == 0x80002305u);
static_assert(CFG_MPP_ERR < 0 && sizeof CFG_MPP_ERR == 4);
static_assert(CFG_LM_ERR < 0 && sizeof CFG_LM_ERR == 4);
static_assert(std::is_same<decltype(CFG_MPP_CloseRead()), int>());
static_assert(std::is_same<decltype(CFG_MPP_CloseWrite()), int>());
static_assert(std::is_same<decltype(CFG_LM_CloseRead()), std::int32_t>());
static_assert(std::is_same<decltype(CFG_LM_CloseWrite()), std::int32_t>());
static_assert(std::is_same<decltype(g_STREAM_xmlDoc), tinyxml2::XMLDocument*>());
static_assert(std::is_same<decltype(g_LM_xmlDoc), tinyxml2::XMLDocument*>());

class CloseTest : public MediaDocumentTest {};

INSTANTIATE_TEST_SUITE_P(, CloseTest, testing::Values(&kStreams, &kServices), nameOf);

TEST_P(CloseTest, ClosingWithNoDocumentOpenDoesNothing) {
  giveSections("<Section/>");
  const std::string file = device.read(kMainCopy);
  EXPECT_EQ(observe(family().closeRead), (Outcome{0, ""}));
  EXPECT_EQ(observe(family().closeWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_P(CloseTest, ClosingForReadingDestroysTheDocument) {
  int destroyed = 0;
  family().handle = new WatchedDocument(destroyed);
  EXPECT_EQ(observe(family().closeRead), (Outcome{0, ""}));
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_FALSE(device.exists(kMainCopy));
}

TEST_P(CloseTest, CloseReadDropsTheDocumentUnsaved) {
  give("");
  open("Section", BU_TRUE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(observe(family().closeRead), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  expectNotSaved("");
}

TEST_P(CloseTest, CloseReadLeavesTheLockOfWriteModeHeld) {
  give("");
  open("Section", BU_FALSE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(observe(family().closeRead), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, locked");
  expectNotSaved("");
  CFG_UnlockFile(text(CFG_FILE_MPP));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(CloseTest, CloseWriteSavesBothCopiesAndReleasesTheLock) {
  give("");
  open("Section", BU_FALSE).section->InsertNewChildElement("Foo")->SetAttribute("Edited", 1);
  EXPECT_EQ(observe(family().closeWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  expectSaved("<Foo Edited=\"1\"/>\n");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(CloseTest, ClosingForWritingDestroysTheDocument) {
  int destroyed = 0;
  family().handle = new WatchedDocument(destroyed);
  captureOutput(family().closeWrite);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(family().handle, nullptr);
  EXPECT_EQ(device.read(kMainCopy), "<Watched/>\n");
}

TEST_P(CloseTest, ClosingReadModeForWritingSavesAndWarnsOfTheLock) {
  giveSections("<Section/>");
  open("Section", BU_TRUE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(observe(family().closeWrite), (Outcome{0, unlockedTwice}));
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_EQ(device.read(kBackupCopy), oneSection(" Changed=\"1\""));
}

TEST_P(CloseTest, CloseWriteSaysNothingOfASaveThatFailed) {
  giveSections("<Section/>");
  open("Section", BU_FALSE);
  device.remove("/cfg0");
  EXPECT_EQ(observe(family().closeWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_FALSE(device.exists(kMainCopy));
  EXPECT_FALSE(device.exists(kBackupCopy));
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
