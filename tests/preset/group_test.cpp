#include <memory>

#include "preset/preset_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

const tagBU_BOOL kFlags[] = {BU_TRUE, BU_FALSE, static_cast<tagBU_BOOL>(2),
                             static_cast<tagBU_BOOL>(-1)};

// What cfgGetPresetCfgNode gave, with the document in safe keeping.
struct Opened {
  explicit Opened(tagBU_BOOL readOnly) {
    XMLDocument* handedOut = nullptr;
    group = cfgGetPresetCfgNode(&handedOut, readOnly);
    document.reset(handedOut);
  }
  std::string mark() const {
    const char* mark = group == nullptr ? nullptr : group->Attribute("Mark");
    return mark == nullptr ? "" : mark;
  }

  XMLElement* group = nullptr;
  std::unique_ptr<XMLDocument> document;
};

class GroupTest : public PresetTest {};

TEST_F(GroupTest, ReadModeHandsOutGroupAndDocumentWithTheFileUnlocked) {
  givenFile("<PresetCfg Mark=\"this\"/>");
  const Opened opened(BU_TRUE);
  ASSERT_NE(opened.group, nullptr);
  EXPECT_EQ(opened.mark(), "this");
  EXPECT_EQ(opened.group->GetDocument(), opened.document.get());
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GroupTest, WriteModeKeepsTheFileLockedUntilItIsSaved) {
  givenFile("<PresetCfg Mark=\"this\"/>");
  const Opened opened(BU_FALSE);
  ASSERT_NE(opened.group, nullptr);
  EXPECT_EQ(opened.group->GetDocument(), opened.document.get());
  EXPECT_FALSE(unlocked());

  opened.group->SetAttribute("Mark", "that");
  EXPECT_EQ(CFG_SaveFile(opened.document.get(), text(CFG_FILE_PRESET), BU_TRUE), 0);
  EXPECT_TRUE(unlocked());
  expectBothCopies(R"(<PresetCfg Mark="that"/>)"
                   "\n");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GroupTest, WriteModeKeepsTheFileLockedUntilItIsGivenUp) {
  givenFile("<PresetCfg/>");
  const Opened opened(BU_FALSE);
  EXPECT_FALSE(unlocked());
  CFG_UnlockFile(text(CFG_FILE_PRESET));
  EXPECT_TRUE(unlocked());
  expectBothCopies("<PresetCfg/>");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GroupTest, EveryFlagButOneIsWriteMode) {
  givenFile("<PresetCfg/>");
  for (const int flag : {0, 2, -1}) {
    const Opened opened(static_cast<tagBU_BOOL>(flag));
    EXPECT_NE(opened.group, nullptr) << flag;
    EXPECT_FALSE(unlocked()) << flag;
    CFG_UnlockFile(text(CFG_FILE_PRESET));
  }
}

TEST_F(GroupTest, GroupIsTheFirstTopLevelElementOfExactlyItsName) {
  for (const std::string before :
       {"", "<Other/>", "<Other/><Another><PresetCfg/></Another>", "<PresetCfgX/>", "<PresetCf/>",
        "<presetcfg/>", "<PRESETCFG/>", "<?xml version=\"1.0\"?><!-- PresetCfg -->"}) {
    givenFile(before + "<PresetCfg Mark=\"this\"/><PresetCfg Mark=\"second\"/>");
    EXPECT_EQ(Opened(BU_TRUE).mark(), "this") << before;
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(GroupTest, NullDocumentFailsBeforeTheFileIsOpened) {
  for (const tagBU_BOOL flag : kFlags) EXPECT_EQ(cfgGetPresetCfgNode(nullptr, flag), nullptr);
  EXPECT_TRUE(neverLocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

constexpr char kNotLoaded[] = "/cfg0/preset_cfg.xml XMLDocument haven't initialize\n";
constexpr char kNoElement[] = "Load /cfg0/preset_cfg.xml failed\n";
constexpr char kNoGroup[] = "PresetCfg node doesn't exist\n";

struct Failure {
  const char* name;
  const char* contents;  // null: there is no file
  const char* message;
};

void PrintTo(const Failure& failure, std::ostream* out) {
  *out << failure.name;
}

constexpr Failure kFailures[] = {
    {"NoFile", nullptr, kNotLoaded},
    {"EmptyFile", "", kNotLoaded},
    {"BlankFile", " \n\t\n", kNotLoaded},
    {"NotXml", "preset 1: door\n", kNotLoaded},
    {"CutShort", "<PresetCfg><preset Id='1'", kNotLoaded},
    {"NotClosed", "<PresetCfg><preset Id='1'/>", kNotLoaded},
    {"CommentOnly", "<!-- <PresetCfg/> -->\n", kNoElement},
    {"DeclarationOnly", "<?xml version='1.0'?>\n", kNoElement},
    {"OtherElement", "<Other/>\n", kNoGroup},
    {"LongerName", "<PresetCfgX/>\n", kNoGroup},
    {"ShorterName", "<PresetCf/>\n", kNoGroup},
    {"OtherCase", "<presetCfg/><PRESETCFG/>\n", kNoGroup},
    {"OneLevelDown", "<Root><PresetCfg/></Root>\n", kNoGroup},
};

class GroupFailureTest : public PresetTest, public testing::WithParamInterface<Failure> {
 protected:
  void SetUp() override {
    if (GetParam().contents != nullptr) givenFile(GetParam().contents);
  }

  // What is logged where there is no group.
  static std::vector<testing::Matcher<testkit::LogRecord>> messages() {
    std::vector<testing::Matcher<testkit::LogRecord>> records;
    if (GetParam().message == kNotLoaded)
      records.push_back(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/preset_cfg.xml fail\n"));
    records.push_back(Logged(3, "cfgGetPresetCfgNode", GetParam().message));
    return records;
  }

  void expectFailure(tagBU_BOOL readOnly) {
    log.clear();
    XMLDocument before;
    XMLDocument* handedOut = &before;
    XMLElement* group = nullptr;
    EXPECT_EQ(captureOutput([&] { group = cfgGetPresetCfgNode(&handedOut, readOnly); }), "");
    EXPECT_EQ(group, nullptr);
    EXPECT_EQ(handedOut, &before);
    EXPECT_TRUE(unlocked());
    EXPECT_THAT(log.records(), ElementsAreArray(messages()));
  }

  void expectFailure(const Operation& operation) {
    log.clear();
    tagPRESET_CFG_S record = preset(1, "Door");
    int number = 77;
    int result = 0;
    EXPECT_EQ(captureOutput([&] { result = operation.run(record, number); }), "");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(record, preset(1, "Door"));
    EXPECT_EQ(number, 77);
    EXPECT_TRUE(unlocked());
    auto records = messages();
    records.push_back(Logged(3, operation.function, "pstPresetGrp is NULL\n"));
    EXPECT_THAT(log.records(), ElementsAreArray(records));
  }
};

TEST_P(GroupFailureTest, IsReportedAndLeavesDocumentAndLockAlone) {
  for (const tagBU_BOOL flag : kFlags) expectFailure(flag);
}

TEST_P(GroupFailureTest, IsReportedOnceMoreByEveryOperation) {
  for (const Operation& operation : kOperations) {
    SCOPED_TRACE(operation.function);
    expectFailure(operation);
  }
  if (GetParam().contents != nullptr)
    expectBothCopies(GetParam().contents);
  else
    EXPECT_THAT(device.list("/cfg0"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, GroupFailureTest, testing::ValuesIn(kFailures),
                         [](const auto& failure) { return failure.param.name; });

}  // namespace
}  // namespace camcfg::tests
