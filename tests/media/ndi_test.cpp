#include "media/service_test.h"

namespace camcfg::tests {
namespace {

struct NdiModel {
  std::int32_t s32Id;
  std::int32_t bEnable;
  std::int32_t bDiscoveryServerEnable;
  std::string strDiscoveryServer;
  std::int32_t bMulticastEnable;
  std::string strMulticastIp;
  std::string strMulticastNetmask;
  std::int32_t s32MulticastTTL;
  std::string strGroupName;
  std::string strMainStreamName;
  std::int32_t s32MainVideoId;
  std::int32_t s32SubVideoId;
  std::int32_t s32AudioId;
};

const std::string kNdiNoId = required("Id", "<NDI><Session><Channel>");
const std::string kNdiNoType = required("Type", "<NDI><Session><Channel>");

// A record as loaded from an instance that says nothing at all.
tag_CFG_NDI_SESSION_T silent(std::int32_t id = -1) {
  return {id, 0, 0, "", 0, "239.255.0.0", "255.255.0.0", 1, "", "", -1, -1, -1};
}

tag_CFG_NDI_SESSION_T withChannels(std::int32_t mainVideo, std::int32_t subVideo,
                                   std::int32_t audio) {
  tag_CFG_NDI_SESSION_T record = silent(2);
  record.s32MainVideoId = mainVideo;
  record.s32SubVideoId = subVideo;
  record.s32AudioId = audio;
  return record;
}

std::string instance(const std::string& channels) {
  return "<Instance Id='2' DiscoveryServer='' GroupName='' MainStreamName=''>" + channels +
         "</Instance>";
}

class NdiTest : public ServiceTest<NdiList> {
 protected:
  NdiTest()
      : ServiceTest("NDI", CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig, {withChannels(97, 98, 99)}) {
  }
};

TEST(NdiRecordTest, FieldsLieInTheOrderOfTheInterface) {
  EXPECT_EQ(
      layoutOf(&tag_CFG_NDI_SESSION_T::s32Id, &tag_CFG_NDI_SESSION_T::bEnable,
               &tag_CFG_NDI_SESSION_T::bDiscoveryServerEnable,
               &tag_CFG_NDI_SESSION_T::strDiscoveryServer, &tag_CFG_NDI_SESSION_T::bMulticastEnable,
               &tag_CFG_NDI_SESSION_T::strMulticastIp, &tag_CFG_NDI_SESSION_T::strMulticastNetmask,
               &tag_CFG_NDI_SESSION_T::s32MulticastTTL, &tag_CFG_NDI_SESSION_T::strGroupName,
               &tag_CFG_NDI_SESSION_T::strMainStreamName, &tag_CFG_NDI_SESSION_T::s32MainVideoId,
               &tag_CFG_NDI_SESSION_T::s32SubVideoId, &tag_CFG_NDI_SESSION_T::s32AudioId),
      layoutOf(&NdiModel::s32Id, &NdiModel::bEnable, &NdiModel::bDiscoveryServerEnable,
               &NdiModel::strDiscoveryServer, &NdiModel::bMulticastEnable,
               &NdiModel::strMulticastIp, &NdiModel::strMulticastNetmask,
               &NdiModel::s32MulticastTTL, &NdiModel::strGroupName, &NdiModel::strMainStreamName,
               &NdiModel::s32MainVideoId, &NdiModel::s32SubVideoId, &NdiModel::s32AudioId));
}

TEST_F(NdiTest, ANewRecordIsOffAndHasTheUsualMulticastRange) {
  EXPECT_EQ(tag_CFG_NDI_SESSION_T(), silent());
}

TEST_F(NdiTest, InstancesAreLoadedInDocumentOrder) {
  expectLoaded(
      "<Instance Id='7' Enable='true' DiscoveryServerEnable='true' DiscoveryServer='10.0.0.1,b'"
      " GroupName='public &amp; %s' MainStreamName='CAM (1)' MulticastEnable='true'"
      " MulticastIp='239.1.2.3' MulticastNetmask='255.0.0.0' MulticastTTL='64'>"
      "<Channel Id='3' Type='Audio'/><Channel Id='1' Type='SubVideo'/>"
      "<Channel Id='0' Type='MainVideo'/></Instance>" +
          instance(""),
      {{7, 1, 1, "10.0.0.1,b", 1, "239.1.2.3", "255.0.0.0", 64, "public & %s", "CAM (1)", 0, 1, 3},
       silent(2)});
}

TEST_F(NdiTest, MissingMulticastSettingsAreTheUsualOnes) {
  expectLoaded(
      "<Instance Id='0' Enable='true' DiscoveryServer='' GroupName='g' "
      "MainStreamName='m'/>",
      {{0, 1, 0, "", 0, "239.255.0.0", "255.255.0.0", 1, "g", "m", -1, -1, -1}});
}

TEST_F(NdiTest, NoAttributeOfAnInstanceIsRequired) {
  expectLoaded("<Instance/>", {silent()});
  expectLoaded("<Instance DiscoveryServer='' GroupName='' MainStreamName=''/>", {silent()});
}

TEST_F(NdiTest, MissingTextsAreEmpty) {
  tag_CFG_NDI_SESSION_T server = silent(2);
  server.strDiscoveryServer = "s";
  tag_CFG_NDI_SESSION_T group = silent(2);
  group.strGroupName = "g";
  tag_CFG_NDI_SESSION_T name = silent(2);
  name.strMainStreamName = "m";
  expectLoaded(
      "<Instance Id='2' DiscoveryServer='s'/><Instance Id='2' GroupName='g'/>"
      "<Instance Id='2' MainStreamName='m'/>",
      {server, group, name});
}

TEST_F(NdiTest, EmptyMulticastAddressesAreTakenAsTheyAre) {
  tag_CFG_NDI_SESSION_T record = silent(2);
  record.strMulticastIp = "";
  record.strMulticastNetmask = "";
  expectLoaded("<Instance Id='2' MulticastIp='' MulticastNetmask=''/>", {record});
}

TEST_F(NdiTest, AnInstanceDoesNotTakeTheValuesOfTheOneBeforeIt) {
  give(
      "<Instance Id='7' Enable='true' DiscoveryServerEnable='true' DiscoveryServer='s'"
      " GroupName='g' MainStreamName='m' MulticastEnable='true' MulticastIp='1' "
      "MulticastNetmask='2' MulticastTTL='3'><Channel Id='1' Type='MainVideo'/>"
      "<Channel Id='2' Type='SubVideo'/><Channel Id='3' Type='Audio'/></Instance><Instance/>");
  const NdiList records = load().records;
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records.back(), silent());
}

TEST_F(NdiTest, OnlyTheWordTrueSwitchesOn) {
  tag_CFG_NDI_SESSION_T on = silent(2);
  on.bEnable = on.bDiscoveryServerEnable = on.bMulticastEnable = 1;
  const auto instanceOf = [](const std::string& word) {
    return "<Instance Id='2' Enable='" + word + "' DiscoveryServerEnable='" + word +
           "' MulticastEnable='" + word + "'/>";
  };
  for (const char* word : {"true", "TRUE", "True"}) expectLoaded(instanceOf(word), {on});
  for (const char* word : {"false", "FALSE", "yes", "1", "on", "", " true", "true ", "truex"})
    expectLoaded(instanceOf(word), {silent(2)});
}

TEST_F(NdiTest, EachSwitchIsReadFromItsOwnAttribute) {
  tag_CFG_NDI_SESSION_T enabled = silent(2);
  enabled.bEnable = 1;
  tag_CFG_NDI_SESSION_T server = silent(2);
  server.bDiscoveryServerEnable = 1;
  tag_CFG_NDI_SESSION_T multicast = silent(2);
  multicast.bMulticastEnable = 1;
  expectLoaded(
      "<Instance Id='2' Enable='true'/><Instance Id='2' DiscoveryServerEnable='true'/>"
      "<Instance Id='2' MulticastEnable='true'/>",
      {enabled, server, multicast});
}

TEST_F(NdiTest, TheDiscoverySwitchIsNotReadUnderTheNameThatItIsWrittenBy) {
  expectLoaded("<Instance Id='2' bDiscoveryServerEnable='true'/>", {silent(2)});
}

TEST_F(NdiTest, AttributeNamesMatchExactly) {
  expectLoaded(
      "<Instance id='2' enable='true' discoveryServer='s' groupname='g' "
      "mainStreamName='m' multicastEnable='true' MulticastIP='1' MulticastNetMask='2' "
      "MulticastTtl='3'/>",
      {silent()});
  expectRefused(instance("<Channel id='1' Type='Audio'/>"), kNdiNoId);
  expectRefused(instance("<Channel Id='1' type='Audio'/>"), kNdiNoType);
}

TEST_F(NdiTest, ElementNamesAndTypesMatchInAnyCase) {
  expectLoaded(
      "<instance Id='2'><channel Id='4' Type='mainvideo'/><CHANNEL Id='5' "
      "Type='SUBVIDEO'/><Channel Id='6' Type='aUDIO'/></instance><INSTANCE Id='2'/>",
      {withChannels(4, 5, 6), silent(2)});
}

TEST_F(NdiTest, IdIsReadAsAnIntegerAndMayBeMissing) {
  expectOptionalInteger([](const std::string& id) { return "<Instance Id='" + id + "'/>"; },
                        [](int id) { return NdiList{silent(id)}; }, -1);
}

TEST_F(NdiTest, TimeToLiveIsReadAsAnIntegerAndIsOtherwiseOne) {
  expectOptionalInteger(
      [](const std::string& ttl) { return "<Instance Id='2' MulticastTTL='" + ttl + "'/>"; },
      [](int ttl) {
        tag_CFG_NDI_SESSION_T record = silent(2);
        record.s32MulticastTTL = ttl;
        return NdiList{record};
      },
      1);
}

TEST_F(NdiTest, ChannelIdIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& id) { return instance("<Channel Type='SubVideo' Id='" + id + "'/>"); },
      [](int id) { return NdiList{withChannels(-1, id, -1)}; }, kNdiNoId);
}

TEST_F(NdiTest, ChannelWithoutIdIsReportedBeforeItsTypeUnderTheNameOfAnotherElement) {
  expectRefused(instance("<Channel/>"), kNdiNoId);
  expectRefused(instance("<Channel Id='x'/>"), kNdiNoId);
  expectRefused(instance("<Channel Type='Audio'/>"), kNdiNoId);
  expectRefused(instance("<Channel Id='-1' Type='Audio'/>"), kNdiNoId);
  expectRefused(instance("<Channel Id='1' Type='Audio'/><Channel Type='SubVideo'/>"), kNdiNoId);
  expectRefused(instance("<Channel Id='1'/>"), kNdiNoType);
}

TEST_F(NdiTest, ChannelOfAnUnknownTypeNeedsAnIdNevertheless) {
  expectRefused(instance("<Channel Type='Data'/>"), kNdiNoId);
}

TEST_F(NdiTest, ChannelsOfAnUnknownTypeAreSkippedWithAWarning) {
  const std::string huge(900, 'T');
  expectLoaded(instance("<Channel Id='1' Type='Data'/><Channel Id='1' Type=''/>"
                        "<Channel Id='1' Type='Video'/><Channel Id='2' Type='100%s %n'/>"
                        "<Channel Id='3' Type='" +
                        huge + "'/><Channel Id='4' Type='Audio'/>"),
               {withChannels(-1, -1, 4)},
               warning("Un-support Type Data for <NDI><Instance><Channel>, ignored.") +
                   warning("Un-support Type  for <NDI><Instance><Channel>, ignored.") +
                   warning("Un-support Type Video for <NDI><Instance><Channel>, ignored.") +
                   warning("Un-support Type 100%s %n for <NDI><Instance><Channel>, ignored.") +
                   warning("Un-support Type " + huge + " for <NDI><Instance><Channel>, ignored."));
}

TEST_F(NdiTest, TheFirstChannelOfATypeWinsAndTheTypeIsPrintedAsWritten) {
  expectLoaded(instance("<Channel Id='4' Type='mainvideo'/><Channel Id='6' Type='MAINVIDEO'/>"
                        "<Channel Id='1' Type='SubVideo'/><Channel Id='1' Type='subVideo'/>"
                        "<Channel Id='0' Type='Audio'/><Channel Id='-5' Type='audio'/>"),
               {withChannels(4, 1, 0)},
               warning("MAINVIDEO has been set for NDI[2] as 4, ignore 6") +
                   warning("subVideo has been set for NDI[2] as 1, ignore 1") +
                   warning("audio has been set for NDI[2] as 0, ignore -5"));
}

TEST_F(NdiTest, AnInstanceWithoutIdIsCalledMinusOne) {
  tag_CFG_NDI_SESSION_T record = silent();
  record.s32AudioId = 1;
  expectLoaded("<Instance><Channel Id='1' Type='Audio'/><Channel Id='2' Type='Audio'/></Instance>",
               {record}, warning("Audio has been set for NDI[-1] as 1, ignore 2"));
}

TEST_F(NdiTest, UnknownElementsInsideAnInstanceAreSkippedInSilence) {
  expectLoaded(instance("text<Foo/><!-- c --><Instance/><Channels/><Channel Id='1' Type='Audio'>"
                        "<Channel/></Channel>"),
               {withChannels(-1, -1, 1)});
}

TEST_F(NdiTest, UnknownElementOfTheSectionIsSkippedWithAWarning) {
  expectLoaded("<Session Id='1'/>" + instance("") + "<Channel/>", {silent(2)},
               unsupported("Session", "<NDI>") + unsupported("Channel", "<NDI>"));
}

TEST_F(NdiTest, AFaultKeepsTheInstancesBeforeIt) {
  expectRefused(
      instance("<Channel Id='1' Type='Audio'/>") + instance("<Channel Id='2'/>") + instance(""),
      kNdiNoType, {withChannels(-1, -1, 1)});
}

TEST_F(NdiTest, TheListIsUntouchedWhereTheFileCannotBeOpened) {
  EXPECT_EQ(load().records, before());
}

TEST_F(NdiTest, AttributesAndChannelsAreDumpedInOneOrder) {
  expectDumped(
      {{7, 1, 1, "10.0.0.1", 0, "239.1.2.3", "255.0.0.0", 64, "a & b", "CAM \"1\"", 10, 11, 12},
       {8, 0, 0, "", 1, "no address", "", -9, "", "", -1, -1, -1}},
      R"(<Instance Id="7" Enable="true" bDiscoveryServerEnable="true" DiscoveryServer="10.0.0.1")"
      R"( GroupName="a &amp; b" MainStreamName="CAM &quot;1&quot;" MulticastEnable="false")"
      R"( MulticastIp="239.1.2.3" MulticastNetmask="255.0.0.0" MulticastTTL="64">
    <Channel Id="10" Type="MainVideo"/>
    <Channel Id="11" Type="SubVideo"/>
    <Channel Id="12" Type="Audio"/>
</Instance>
<Instance Id="8" Enable="false" bDiscoveryServerEnable="false" DiscoveryServer="" GroupName="")"
      R"( MainStreamName="" MulticastEnable="true" MulticastIp="no address" MulticastNetmask="")"
      R"( MulticastTTL="-9"/>)");
}

TEST_F(NdiTest, ChannelsOfMinusOneAreNotDumped) {
  const std::string begin =
      R"(<Instance Id="2" Enable="false" bDiscoveryServerEnable="false" DiscoveryServer="")"
      R"( GroupName="" MainStreamName="" MulticastEnable="false" MulticastIp="239.255.0.0")"
      R"( MulticastNetmask="255.255.0.0" MulticastTTL="1">
)";
  expectDumped({withChannels(4, -1, 0)}, begin + R"(    <Channel Id="4" Type="MainVideo"/>
    <Channel Id="0" Type="Audio"/>
</Instance>)");
  expectDumped({withChannels(-1, -6, -1)}, begin + R"(    <Channel Id="-6" Type="SubVideo"/>
</Instance>)");
}

TEST_F(NdiTest, DumpingAnEmptyListLeavesTheSectionEmpty) {
  expectDumped({}, "");
}

TEST_F(NdiTest, ADumpedDiscoverySwitchIsOffWhenLoadedAgain) {
  give("");
  tag_CFG_NDI_SESSION_T record{7, 1, 1, "s", 1, "1", "2", 3, "g", "m", 4, 5, 6};
  dump({record});
  const Loaded loaded = load();
  EXPECT_EQ(loaded.outcome, (Outcome{0, loadSuccess()}));
  record.bDiscoveryServerEnable = 0;
  EXPECT_EQ(loaded.records, NdiList{record});
}

}  // namespace
}  // namespace camcfg::tests
