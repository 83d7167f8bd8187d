#include <thread>

#include "media/service_test.h"

namespace camcfg::tests {
namespace {

struct RtmpModel {
  std::int32_t s32Id;
  std::int32_t bEnable;
  std::string strUrl;
  std::string strUsername;
  std::string strPassword;
  std::int32_t s32VideoId;
  std::int32_t s32AudioId;
};

const std::string kNoTargetId = required("Id", "<RTSP><MediaGroup>");
const std::string kNoUrl = required("url", "<RTSP><MediaGroup>");
const std::string kRtmpNoChannelId = required("Id", "<RTMP><Target><Channel>");
const std::string kRtmpNoType = required("Type", "<RTMP><Target><Channel>");

class RtmpTest : public ServiceTest<RtmpList> {
 protected:
  RtmpTest()
      : ServiceTest("RTMP", CFG_LM_LoadRtmpConfig, CFG_LM_DumpRtmpConfig,
                    {{9, 1, "old", "old", "old", 97, 98}}) {}
};

// A target of id 0 with these channels, and its record.
std::string target(const std::string& channels) {
  return "<Target Id='0' url='x' username='u' password='p'>" + channels + "</Target>";
}

tag_CFG_RTMP_SESSION_T targetWith(std::int32_t video, std::int32_t audio) {
  return {0, 1, "x", "u", "p", video, audio};
}

TEST(RtmpRecordTest, FieldsLieInTheOrderOfTheInterface) {
  EXPECT_EQ(
      layoutOf(&tag_CFG_RTMP_SESSION_T::s32Id, &tag_CFG_RTMP_SESSION_T::bEnable,
               &tag_CFG_RTMP_SESSION_T::strUrl, &tag_CFG_RTMP_SESSION_T::strUsername,
               &tag_CFG_RTMP_SESSION_T::strPassword, &tag_CFG_RTMP_SESSION_T::s32VideoId,
               &tag_CFG_RTMP_SESSION_T::s32AudioId),
      layoutOf(&RtmpModel::s32Id, &RtmpModel::bEnable, &RtmpModel::strUrl, &RtmpModel::strUsername,
               &RtmpModel::strPassword, &RtmpModel::s32VideoId, &RtmpModel::s32AudioId));
}

TEST_F(RtmpTest, ANewRecordHasNoIdNoTextsAndNoChannelsAndIsDisabled) {
  EXPECT_EQ(tag_CFG_RTMP_SESSION_T(), (tag_CFG_RTMP_SESSION_T{-1, 0, "", "", "", -1, -1}));
}

TEST_F(RtmpTest, TargetsAreLoadedInDocumentOrder) {
  expectLoaded(
      "<Target Id='2' Enable='false' url='rtmp://b/live?a=1&amp;b=2' username='me' "
      "password='&lt;%s'>"
      "<Channel Id='3' Type='Video'/><Channel Id='4' Type='Audio'/></Target>"
      "<Target Id='1' Enable='true' url='rtmp://a' username='you' password='q'/>",
      {{2, 0, "rtmp://b/live?a=1&b=2", "me", "<%s", 3, 4}, {1, 1, "rtmp://a", "you", "q", -1, -1}});
}

TEST_F(RtmpTest, TargetWithoutEnableIsEnabledAndHasNoChannels) {
  expectLoaded("<Target Id='0' url='x' username='' password=''/>", {{0, 1, "x", "", "", -1, -1}});
}

TEST_F(RtmpTest, OnlyTheWordTrueEnables) {
  for (const char* word : {"true", "TRUE", "True", "tRuE"})
    expectLoaded(std::string("<Target Id='0' Enable='") + word + "' url='x'/>",
                 {{0, 1, "x", "", "", -1, -1}});
  for (const char* word :
       {"false", "FALSE", "yes", "1", "on", "", " true", "true ", "truex", "tru"})
    expectLoaded(std::string("<Target Id='0' Enable='") + word + "' url='x'/>",
                 {{0, 0, "x", "", "", -1, -1}});
}

TEST_F(RtmpTest, MissingUserNameAndPasswordAreEmpty) {
  expectLoaded("<Target Id='0' url='x'/>", {{0, 1, "x", "", "", -1, -1}});
  expectLoaded("<Target Id='0' url='x' username='u'/>", {{0, 1, "x", "u", "", -1, -1}});
  expectLoaded("<Target Id='0' url='x' password='p'/>", {{0, 1, "x", "", "p", -1, -1}});
}

TEST_F(RtmpTest, ATargetDoesNotTakeTheValuesOfTheOneBeforeIt) {
  expectLoaded(
      "<Target Id='7' Enable='false' url='x' username='u' password='p'>"
      "<Channel Id='1' Type='Video'/><Channel Id='2' Type='Audio'/></Target>"
      "<Target Id='8' url='y'/>",
      {{7, 0, "x", "u", "p", 1, 2}, {8, 1, "y", "", "", -1, -1}});
  expectRefused("<Target Id='7' url='x'/><Target url='y'/>", kNoTargetId,
                {{7, 1, "x", "", "", -1, -1}});
}

TEST_F(RtmpTest, ElementNamesAndTypesMatchInAnyCase) {
  expectLoaded(
      "<target Id='0' url='x' username='u' password='p'><channel Id='1' Type='video'/>"
      "<CHANNEL Id='2' Type='AUDIO'/></target>",
      {targetWith(1, 2)});
}

TEST_F(RtmpTest, AttributeNamesMatchExactly) {
  expectRefused("<Target id='0' url='x'/>", kNoTargetId);
  expectRefused("<Target Id='0' Url='x'/>", kNoUrl);
  expectRefused("<Target Id='0' URL='x'/>", kNoUrl);
  expectLoaded("<Target Id='0' enable='false' url='x' Username='u' Password='p'/>",
               {{0, 1, "x", "", "", -1, -1}});
  expectRefused(target("<Channel id='1' Type='Video'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Id='1' type='Video'/>"), kRtmpNoType);
}

TEST_F(RtmpTest, EmptyUrlIsAccepted) {
  expectLoaded("<Target Id='0' url=''/>", {{0, 1, "", "", "", -1, -1}});
}

TEST_F(RtmpTest, MissingIdIsReportedBeforeMissingUrlUnderTheNameOfAnotherSection) {
  expectRefused("<Target/>", kNoTargetId);
  expectRefused("<Target url='x'/>", kNoTargetId);
  expectRefused("<Target Id='0'/>", kNoUrl);
  expectRefused("<Target Id='0' username='u' password='p'><Channel/></Target>", kNoUrl);
}

TEST_F(RtmpTest, TargetIdIsReadAsAnInteger) {
  expectRequiredInteger([](const std::string& id) { return "<Target Id='" + id + "' url='x'/>"; },
                        [](int id) {
                          return RtmpList{{id, 1, "x", "", "", -1, -1}};
                        },
                        kNoTargetId);
}

TEST_F(RtmpTest, ChannelIdIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& id) { return target("<Channel Id='" + id + "' Type='Video'/>"); },
      [](int id) { return RtmpList{targetWith(id, -1)}; }, kRtmpNoChannelId);
  expectRequiredInteger(
      [](const std::string& id) { return target("<Channel Id='" + id + "' Type='Audio'/>"); },
      [](int id) { return RtmpList{targetWith(-1, id)}; }, kRtmpNoChannelId);
}

TEST_F(RtmpTest, ChannelWithoutIdIsReportedBeforeItsType) {
  expectRefused(target("<Channel/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Id='x'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Type='Video'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Id='-1' Type='Audio'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Type='Data'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Id='1' Type='Video'/><Channel Type='Audio'/>"), kRtmpNoChannelId);
  expectRefused(target("<Channel Id='1'/>"), kRtmpNoType);
  expectRefused(target("<Channel Id='-2'/>"), kRtmpNoType);
}

TEST_F(RtmpTest, ChannelsOfAnotherTypeAreIgnoredInSilence) {
  expectLoaded(target("<Channel Id='3' Type='Data'/><Channel Id='4' Type=''/>"
                      "<Channel Id='5' Type='Videos'/><Channel Id='6' Type=' Audio'/>"),
               {targetWith(-1, -1)});
}

TEST_F(RtmpTest, TheFirstVideoChannelWins) {
  expectLoaded(target("<Channel Id='2' Type='Video'/><Channel Id='5' Type='Video'/>"),
               {targetWith(2, -1)}, warning("Video has been set for RTMP[0] as 2, ignore 5"));
}

TEST_F(RtmpTest, TheFirstAudioChannelWins) {
  expectLoaded(
      "<Target Id='-3' url='x' username='u' password='p'><Channel Id='2' Type='Audio'/>"
      "<Channel Id='2' Type='audio'/><Channel Id='-8' Type='AUDIO'/></Target>",
      {{-3, 1, "x", "u", "p", -1, 2}},
      warning("Audio has been set for RTMP[-3] as 2, ignore 2") +
          warning("Audio has been set for RTMP[-3] as 2, ignore -8"));
}

TEST_F(RtmpTest, TheTypeOfAnIgnoredChannelIsPrintedInItsOwnSpelling) {
  expectLoaded(target("<Channel Id='1' Type='VIDEO'/><Channel Id='2' Type='vIdEo'/>"),
               {targetWith(1, -1)}, warning("Video has been set for RTMP[0] as 1, ignore 2"));
}

TEST_F(RtmpTest, UnknownElementsInsideATargetAreSkippedInSilence) {
  expectLoaded(target("text<Server/><!-- c --><Target/><Channels/><Channel Id='1' Type='Video'>"
                      "<Channel/></Channel>"),
               {targetWith(1, -1)});
}

TEST_F(RtmpTest, UnknownElementOfTheSectionIsSkippedWithAWarningThatNamesAnotherSection) {
  expectLoaded("<Server/>" + target("") + "<MediaGroup Name='a'/>", {targetWith(-1, -1)},
               unsupported("Server", "<RTSP>") + unsupported("MediaGroup", "<RTSP>"));
}

TEST_F(RtmpTest, AFaultKeepsTheTargetsBeforeIt) {
  expectRefused(target("") + "<Target Id='1'/>" + target(""), kNoUrl, {targetWith(-1, -1)});
  expectRefused(target("<Channel Id='1' Type='Video'/>") +
                    target("<Channel Id='2' Type='Audio'/><Channel Id='3'/>") + target(""),
                kRtmpNoType, {targetWith(1, -1)});
}

TEST_F(RtmpTest, TheListIsUntouchedWhereTheFileCannotBeOpened) {
  EXPECT_EQ(load().records, before());
}

TEST_F(RtmpTest, DumpingReportsSuccessButSavesNothingAndLeavesTheLockHeld) {
  give(target(""));
  EXPECT_EQ(dump({{4, 1, "y", "", "", 1, 2}}), (Outcome{0, dumpSuccess()}));
  expectNotSaved(target(""));
  EXPECT_EQ(state(), "closed, locked");
  EXPECT_THAT(log.records(), testing::IsEmpty());
}

TEST_F(RtmpTest, DumpingLeavesTheBackupAlone) {
  give(target(""));
  device.write(kBackupCopy, "an older backup");
  dump({});
  EXPECT_EQ(device.read(kBackupCopy), "an older backup");
}

TEST_F(RtmpTest, AfterADumpTheFileCanBeUnlockedAndStillHoldsTheOldTargets) {
  give(target(""));
  dump({{4, 1, "y", "", "", 1, 2}});
  EXPECT_EQ(observe([] { return CFG_UnlockFile(text(CFG_FILE_MPP)); }), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  const Loaded loaded = load();
  EXPECT_EQ(loaded.outcome, (Outcome{0, loadSuccess()}));
  EXPECT_EQ(loaded.records, RtmpList{targetWith(-1, -1)});
}

TEST_F(RtmpTest, ASaveOfTheFileReleasesTheLockThatADumpLeft) {
  give("");
  dump({});
  tinyxml2::XMLDocument document;
  document.Parse("<LiveMediaService/>");
  EXPECT_EQ(CFG_SaveFile(&document, text(CFG_FILE_MPP), BU_TRUE), 0);
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(RtmpTest, AfterADumpEveryOpeningOfTheFileWaitsTenSecondsAndFails) {
  give("");
  dump({});
  RtmpList records = before();
  std::int32_t result = 0;
  tinyxml2::XMLDocument* reading = nullptr;
  tinyxml2::XMLDocument* writing = nullptr;
  const std::string printed = captureOutput([&] {
    std::thread reader([&] { reading = CFG_GetDocByFileName(text(CFG_FILE_MPP), BU_TRUE); });
    std::thread writer([&] { writing = CFG_GetDocByFileName(text(CFG_FILE_MPP), BU_FALSE); });
    result = CFG_LM_LoadRtmpConfig(records);
    reader.join();
    writer.join();
  });
  EXPECT_EQ(reading, nullptr);
  EXPECT_EQ(writing, nullptr);
  EXPECT_EQ(result, CFG_LM_ERR);
  EXPECT_EQ(records, before());
  EXPECT_THAT(log.texts(), testing::ElementsAre(kLockTimeout, kLockTimeout, kLockTimeout));
  EXPECT_THAT(printed, testing::HasSubstr(family().error("Config File open failed")));
  EXPECT_EQ(state(), "closed, locked");
}

}  // namespace
}  // namespace camcfg::tests
