#include "media/service_test.h"

namespace camcfg::tests {
namespace {

struct SubSessionModel {
  std::string strName;
  std::int32_t s32Id;
};

struct SessionModel {
  std::string strName;
  std::list<tag_CFG_RTSP_SUBSESSION_T> lstSubSession;
};

using Sessions = std::list<tag_CFG_RTSP_SESSION_T>;

const std::string kNoGroupName = required("Name", "<RTSP><MediaGroup>");
const std::string kRtspNoId = required("Id", "<RTSP><MediaGroup><Channel>");
const std::string kRtspNoName = required("Name", "<RTSP><MediaGroup><Channel>");

class RtspTest : public ServiceTest<RtspList> {
 protected:
  RtspTest()
      : ServiceTest("RTSP", CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig,
                    shared({{"old", {{"old", 99}}}})) {}
};

std::string group(const std::string& channels) {
  return "<MediaGroup Name='g'>" + channels + "</MediaGroup>";
}

TEST(RtspRecordTest, FieldsLieInTheOrderOfTheInterface) {
  EXPECT_EQ(layoutOf(&tag_CFG_RTSP_SUBSESSION_T::strName, &tag_CFG_RTSP_SUBSESSION_T::s32Id),
            layoutOf(&SubSessionModel::strName, &SubSessionModel::s32Id));
  EXPECT_EQ(layoutOf(&tag_CFG_RTSP_SESSION_T::strName, &tag_CFG_RTSP_SESSION_T::lstSubSession),
            layoutOf(&SessionModel::strName, &SessionModel::lstSubSession));
}

TEST_F(RtspTest, ANewSessionHasNoNameAndNoChannels) {
  EXPECT_EQ(tag_CFG_RTSP_SESSION_T(), (tag_CFG_RTSP_SESSION_T{"", {}}));
}

TEST_F(RtspTest, GroupsAndChannelsAreLoadedInDocumentOrder) {
  expectLoaded(
      "<MediaGroup Name='main'><Channel Id='2' Name='video'/><Channel Id='1' Name='audio'/>"
      "</MediaGroup><MediaGroup Name='a'><Channel Id='0' Name='v'/></MediaGroup>",
      {{"main", {{"video", 2}, {"audio", 1}}}, {"a", {{"v", 0}}}});
}

TEST_F(RtspTest, GroupWithoutChannelsIsAccepted) {
  expectLoaded("<MediaGroup Name='main'/><MediaGroup Name='more'>text<!-- c --></MediaGroup>",
               {{"main", {}}, {"more", {}}});
}

TEST_F(RtspTest, GroupsAndChannelsOfTheSameNameAreAllLoaded) {
  expectLoaded(
      "<MediaGroup Name='a'><Channel Id='1' Name='v'/><Channel Id='1' Name='v'/>"
      "</MediaGroup><MediaGroup Name='a'/>",
      {{"a", {{"v", 1}, {"v", 1}}}, {"a", {}}});
}

TEST_F(RtspTest, ElementNamesMatchInAnyCase) {
  expectLoaded(
      "<mediagroup Name='a'><channel Id='0' Name='v'/></mediagroup>"
      "<MEDIAGROUP Name='b'><CHANNEL Id='1' Name='w'/></MEDIAGROUP>",
      {{"a", {{"v", 0}}}, {"b", {{"w", 1}}}});
}

TEST_F(RtspTest, AttributeNamesMatchExactly) {
  expectRefused("<MediaGroup name='g'/>", kNoGroupName);
  expectRefused(group("<Channel id='1' Name='v'/>"), kRtspNoId);
  expectRefused(group("<Channel Id='1' name='v'/>"), kRtspNoName);
}

TEST_F(RtspTest, EmptyNamesAreAccepted) {
  expectLoaded("<MediaGroup Name=''><Channel Id='1' Name=''/></MediaGroup>", {{"", {{"", 1}}}});
}

TEST_F(RtspTest, ChannelIdIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& id) { return group("<Channel Id='" + id + "' Name='v'/>"); },
      [](int id) {
        return Sessions{{"g", {{"v", id}}}};
      },
      kRtspNoId);
}

TEST_F(RtspTest, AChannelDoesNotTakeTheIdOfTheOneBeforeIt) {
  expectRefused(group("<Channel Id='1' Name='v'/><Channel Name='w'/>"), kRtspNoId);
}

TEST_F(RtspTest, MissingAttributesAreReportedOneByOne) {
  expectRefused("<MediaGroup/>", kNoGroupName);
  expectRefused("<MediaGroup><Channel/></MediaGroup>", kNoGroupName);
  expectRefused(group("<Channel/>"), kRtspNoId);
  expectRefused(group("<Channel Name='v'/>"), kRtspNoId);
  expectRefused(group("<Channel Id='3'/>"), kRtspNoName);
}

TEST_F(RtspTest, AFaultKeepsExactlyTheGroupsThatWereComplete) {
  const std::string complete =
      "<MediaGroup Name='a'><Channel Id='1' Name='v'/></MediaGroup><MediaGroup Name='b'/>";
  const Sessions kept{{"a", {{"v", 1}}}, {"b", {}}};
  expectRefused(complete + "<MediaGroup/>" + group(""), kNoGroupName, kept);
  expectRefused(complete + group("<Channel Id='4' Name='v'/><Channel Id='5'/>") + group(""),
                kRtspNoName, kept);
}

TEST_F(RtspTest, UnknownElementsInsideAGroupAreSkippedInSilence) {
  expectLoaded(group("text<Track/><!-- c --><Channels Id='9'/><Channel Id='1' Name='v'/>"
                     "<MediaGroup><Channel/></MediaGroup><Chann/>"),
               {{"g", {{"v", 1}}}});
}

TEST_F(RtspTest, WhatIsInsideAChannelIsIgnored) {
  expectLoaded(group("<Channel Id='1' Name='v'><Channel Id='2' Name='w'/></Channel>"),
               {{"g", {{"v", 1}}}});
}

TEST_F(RtspTest, UnknownElementOfTheSectionIsSkippedWithAWarning) {
  expectLoaded("<Track/>" + group("") + "<Channel Id='1' Name='v'/>", {{"g", {}}},
               unsupported("Track", "<RTSP>") + unsupported("Channel", "<RTSP>"));
}

TEST_F(RtspTest, TheListIsUntouchedWhereTheFileCannotBeOpened) {
  EXPECT_EQ(load().records, before());
}

TEST_F(RtspTest, TheLoadedListIsTheOnlyOwnerOfItsSessions) {
  give(group(""));
  const Loaded loaded = load();
  ASSERT_EQ(loaded.records.size(), 1u);
  EXPECT_EQ(loaded.records.front().use_count(), 1);
}

TEST_F(RtspTest, ASessionIsOneAllocationWithItsCount) {
  // The other one is the list's.
  EXPECT_EQ(allocationsOfLoading("<MediaGroup Name='a'/>", CFG_LM_LoadRtspConfig),
            allocationsOfLoading("<OtherGroup Name='a'/>", CFG_LM_LoadRtspConfig) + 2);
}

TEST_F(RtspTest, ASessionThatIsStillHeldOutlivesTheReload) {
  give("<MediaGroup Name='a'><Channel Id='1' Name='v'/></MediaGroup>");
  RtspList sessions = load().records;
  ASSERT_EQ(sessions.size(), 1u);
  const std::shared_ptr<tag_CFG_RTSP_SESSION_T> held = sessions.front();
  give("");
  captureOutput([&] { CFG_LM_LoadRtspConfig(sessions); });
  EXPECT_TRUE(sessions.empty());
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(*held, (tag_CFG_RTSP_SESSION_T{"a", {{"v", 1}}}));
}

TEST_F(RtspTest, ReloadingReleasesTheSessionsOfTheList) {
  give("");
  RtspList sessions = shared({{"old", {}}});
  const std::weak_ptr<tag_CFG_RTSP_SESSION_T> old = sessions.front();
  captureOutput([&] { CFG_LM_LoadRtspConfig(sessions); });
  EXPECT_TRUE(old.expired());
}

TEST_F(RtspTest, SessionsAreDumpedInListOrderWithIdBeforeName) {
  expectDumped(shared({{"main", {{"video", 2}, {"a & b", 1}}}, {"none", {}}, {"sub", {{"v", 0}}}}),
               R"(<MediaGroup Name="main">
    <Channel Id="2" Name="video"/>
    <Channel Id="1" Name="a &amp; b"/>
</MediaGroup>
<MediaGroup Name="none"/>
<MediaGroup Name="sub">
    <Channel Id="0" Name="v"/>
</MediaGroup>)");
}

TEST_F(RtspTest, DumpingLeavesTheSessionsToTheirOwner) {
  give("");
  const RtspList sessions = shared({{"a", {{"v", 1}}}});
  dump(sessions);
  EXPECT_EQ(sessions.front().use_count(), 1);
  EXPECT_EQ(*sessions.front(), (tag_CFG_RTSP_SESSION_T{"a", {{"v", 1}}}));
}

TEST_F(RtspTest, NoValueIsCheckedWhenDumping) {
  expectDumped(shared({{"", {{"", -1}, {"v", -5}}}, {"a", {}}, {"a", {}}}),
               R"(<MediaGroup Name="">
    <Channel Id="-1" Name=""/>
    <Channel Id="-5" Name="v"/>
</MediaGroup>
<MediaGroup Name="a"/>
<MediaGroup Name="a"/>)");
}

TEST_F(RtspTest, EmptyPointersAreLeftOutWhenDumping) {
  RtspList sessions = shared({{"a", {}}});
  sessions.push_front(nullptr);
  sessions.push_back(nullptr);
  expectDumped(sessions, "<MediaGroup Name=\"a\"/>");
}

TEST_F(RtspTest, AGroupWithoutChannelsSurvivesLoadAndDump) {
  give("<MediaGroup Name='main'/>");
  expectDumped(load().records, "<MediaGroup Name=\"main\"/>");
}

TEST_F(RtspTest, DumpingAnEmptyListLeavesTheSectionEmpty) {
  expectDumped({}, "");
}

TEST_F(RtspTest, LoadAndDumpDropWhatIsNotUsed) {
  give("<MediaGroup Name='a' More='x'><Track/><Channel Name='v' Id='0x10' More='x'/></MediaGroup>");
  expectDumped(load().records, R"(<MediaGroup Name="a">
    <Channel Id="16" Name="v"/>
</MediaGroup>)");
}

}  // namespace
}  // namespace camcfg::tests
