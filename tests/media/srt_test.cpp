#include "media/service_test.h"

namespace camcfg::tests {
namespace {

struct StreamModel {
  std::string strId;
  std::int32_t s32Default;
  std::list<int> lstChannel;
};

struct InstanceModel {
  std::int32_t s32Id;
  std::int32_t s32Mode;
  std::string strHostname;
  std::int32_t s32Port;
  std::int32_t s32AesMode;
  std::string strPassword;
  std::int32_t s32Latency;
  std::list<tag_CFG_SRT_STREAM_T> lstStream;
};

constexpr std::int32_t kListener = 1;
constexpr std::int32_t kCaller = 0;

const std::string kInstance = "<SRT><Instance>";
const std::string kNoStreamId = required("Id", "<SRT><Instance><Stream>");
const std::string kSrtNoChannelId = required("Id", "<SRT><Instance><Stream><Channel>");

std::string badMode(const std::string& mode) {
  return warning("Bad srt mode = " + mode + ", only allow {Listener, Caller}, skip instance.");
}

// A listener with these streams, and its record.
std::string listener(const std::string& streams) {
  return "<Instance Id='1' Mode='Listener' Port='9000'>" + streams + "</Instance>";
}

tag_CFG_SRT_INSTANCE_T listenerWith(const std::list<tag_CFG_SRT_STREAM_T>& streams) {
  return {1, kListener, "", 9000, 0, "", 20, streams};
}

class SrtTest : public ServiceTest<SrtList> {
 protected:
  SrtTest()
      : ServiceTest("SRT", CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig,
                    {listenerWith({{"old", 1, {9}}})}) {}
};

TEST(SrtRecordTest, FieldsLieInTheOrderOfTheInterface) {
  EXPECT_EQ(layoutOf(&tag_CFG_SRT_STREAM_T::strId, &tag_CFG_SRT_STREAM_T::s32Default,
                     &tag_CFG_SRT_STREAM_T::lstChannel),
            layoutOf(&StreamModel::strId, &StreamModel::s32Default, &StreamModel::lstChannel));
  EXPECT_EQ(
      layoutOf(&tag_CFG_SRT_INSTANCE_T::s32Id, &tag_CFG_SRT_INSTANCE_T::s32Mode,
               &tag_CFG_SRT_INSTANCE_T::strHostname, &tag_CFG_SRT_INSTANCE_T::s32Port,
               &tag_CFG_SRT_INSTANCE_T::s32AesMode, &tag_CFG_SRT_INSTANCE_T::strPassword,
               &tag_CFG_SRT_INSTANCE_T::s32Latency, &tag_CFG_SRT_INSTANCE_T::lstStream),
      layoutOf(&InstanceModel::s32Id, &InstanceModel::s32Mode, &InstanceModel::strHostname,
               &InstanceModel::s32Port, &InstanceModel::s32AesMode, &InstanceModel::strPassword,
               &InstanceModel::s32Latency, &InstanceModel::lstStream));
}

TEST_F(SrtTest, InstancesStreamsAndChannelsAreLoadedInDocumentOrder) {
  expectLoaded(
      "<Instance Id='2' Mode='Caller' Hostname='host.example' Port='9001' AesMode='2'"
      " Password='a &amp; %s' Latency='120'>"
      "<Stream Id='main' Default='1'><Channel Id='4'/><Channel Id='0'/><Channel Id='4'/></Stream>"
      "<Stream Id='7'/></Instance>" +
          listener("<Stream Id='s' Default='0'><Channel Id='1'/></Stream>"),
      {{2, kCaller, "host.example", 9001, 2, "a & %s", 120, {{"main", 1, {4, 0, 4}}, {"7", 0, {}}}},
       listenerWith({{"s", 0, {1}}})});
}

TEST_F(SrtTest, MissingOptionalSettingsAreNoEncryptionNoPassPhraseAndALatencyOfTwenty) {
  expectLoaded(listener(""), {listenerWith({})});
}

TEST_F(SrtTest, AnInstanceDoesNotTakeTheValuesOfTheOneBeforeIt) {
  const std::string full =
      "<Instance Id='2' Mode='Caller' Hostname='h' Port='1' AesMode='2' Password='p' Latency='3'>"
      "<Stream Id='s' Default='1'><Channel Id='4'/></Stream></Instance>";
  const tag_CFG_SRT_INSTANCE_T record{2, kCaller, "h", 1, 2, "p", 3, {{"s", 1, {4}}}};
  expectLoaded(full + listener(""), {record, listenerWith({})});
  expectRefused(full + "<Instance Mode='Listener' Port='1'/>", required("Id", kInstance), {record});
  expectRefused(full + "<Instance Id='1' Port='1'/>", required("Mode", kInstance), {record});
  expectRefused(full + "<Instance Id='1' Mode='Listener'/>", required("Port", kInstance), {record});
  expectRefused(full + "<Instance Id='1' Mode='Caller' Port='1'/>", required("Hostname", kInstance),
                {record});
}

TEST_F(SrtTest, AStreamDoesNotTakeTheValuesOfTheOneBeforeIt) {
  expectLoaded(listener("<Stream Id='a' Default='1'><Channel Id='1'/></Stream><Stream Id='b'/>"),
               {listenerWith({{"a", 1, {1}}, {"b", 0, {}}})});
  expectRefused(listener("<Stream Id='a'><Channel Id='1'/><Channel/></Stream>"), kSrtNoChannelId);
  expectRefused(listener("<Stream Id='a'/><Stream/>"), kNoStreamId);
}

TEST_F(SrtTest, ElementNamesAndModesMatchInAnyCase) {
  expectLoaded(
      "<instance Id='1' Mode='LISTENER' Port='9000'><stream Id='s'><channel Id='3'/>"
      "</stream></instance>"
      "<INSTANCE Id='1' Mode='listener' Port='9000'><STREAM Id='t'><CHANNEL Id='4'/>"
      "</STREAM></INSTANCE>"
      "<Instance Id='3' Mode='cALLER' Hostname='h' Port='1'/>"
      "<Instance Id='3' Mode='caller' Hostname='h' Port='1'/>",
      {listenerWith({{"s", 0, {3}}}),
       listenerWith({{"t", 0, {4}}}),
       {3, kCaller, "h", 1, 0, "", 20, {}},
       {3, kCaller, "h", 1, 0, "", 20, {}}});
}

TEST_F(SrtTest, AttributeNamesMatchExactly) {
  expectRefused("<Instance id='1' Mode='Listener' Port='1'/>", required("Id", kInstance));
  expectRefused("<Instance Id='1' mode='Listener' Port='1'/>", required("Mode", kInstance));
  expectRefused("<Instance Id='1' Mode='Listener' port='1'/>", required("Port", kInstance));
  expectRefused("<Instance Id='1' Mode='Caller' HostName='h' Port='1'/>",
                required("Hostname", kInstance));
  expectRefused(listener("<Stream id='1'/>"), kNoStreamId);
  expectRefused(listener("<Stream Id='1'><Channel id='1'/></Stream>"), kSrtNoChannelId);
  expectLoaded(
      "<Instance Id='1' Mode='Listener' Port='9000' aesMode='1' AESMode='1' password='p' "
      "latency='3'><Stream Id='s' default='1'/></Instance>",
      {listenerWith({{"s", 0, {}}})});
}

TEST_F(SrtTest, MissingAttributesAreReportedInTheOrderIdModePortHostname) {
  expectRefused("<Instance/>", required("Id", kInstance));
  expectRefused("<Instance Port='1'/>", required("Id", kInstance));
  expectRefused("<Instance Mode='Listener'/>", required("Id", kInstance));
  expectRefused("<Instance Mode='Listener' Port='1'/>", required("Id", kInstance));
  expectRefused("<Instance Id='1'/>", required("Mode", kInstance));
  expectRefused("<Instance Id='1' Port='1'/>", required("Mode", kInstance));
  expectRefused("<Instance Id='1' Mode='Caller'/>", required("Port", kInstance));
  expectRefused("<Instance Id='1' Mode='rendezvous'/>", required("Port", kInstance));
  expectRefused("<Instance Id='1' Mode='Caller' Port='1'/>", required("Hostname", kInstance));
}

TEST_F(SrtTest, AnInstanceIsCheckedBeforeItsStreams) {
  expectRefused("<Instance Id='1' Mode='Caller' Port='1'><Foo/><Stream/></Instance>",
                required("Hostname", kInstance));
  expectRefused("<Instance Id='1' Mode='both' Port='1'><Foo/><Stream/></Instance>",
                badMode("both"));
}

// A listener whose attributes end with this one, and its record with a field changed.
std::string listenerAnd(const std::string& attribute, const std::string& value) {
  return "<Instance Id='1' Mode='Listener' Port='9000' " + attribute + "='" + value + "'/>";
}

SrtList listenerBut(std::int32_t tag_CFG_SRT_INSTANCE_T::*field, std::int32_t value) {
  tag_CFG_SRT_INSTANCE_T record = listenerWith({});
  record.*field = value;
  return {record};
}

TEST_F(SrtTest, IdIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& id) {
        return "<Instance Id='" + id + "' Mode='Listener' Port='9000'/>";
      },
      [](int id) { return listenerBut(&tag_CFG_SRT_INSTANCE_T::s32Id, id); },
      required("Id", kInstance));
}

TEST_F(SrtTest, PortIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& port) {
        return "<Instance Id='1' Mode='Listener' Port='" + port + "'/>";
      },
      [](int port) { return listenerBut(&tag_CFG_SRT_INSTANCE_T::s32Port, port); },
      required("Port", kInstance));
}

TEST_F(SrtTest, AesModeIsReadAsAnIntegerAndIsOtherwiseZero) {
  expectOptionalInteger(
      [](const std::string& mode) { return listenerAnd("AesMode", mode); },
      [](int mode) { return listenerBut(&tag_CFG_SRT_INSTANCE_T::s32AesMode, mode); }, 0);
}

TEST_F(SrtTest, LatencyIsReadAsAnIntegerAndIsOtherwiseTwenty) {
  expectOptionalInteger(
      [](const std::string& latency) { return listenerAnd("Latency", latency); },
      [](int latency) { return listenerBut(&tag_CFG_SRT_INSTANCE_T::s32Latency, latency); }, 20);
}

TEST_F(SrtTest, DefaultOfAStreamIsReadAsAnIntegerAndIsOtherwiseZero) {
  expectOptionalInteger(
      [](const std::string& mark) { return listener("<Stream Id='s' Default='" + mark + "'/>"); },
      [](int mark) {
        return SrtList{listenerWith({{"s", mark, {}}})};
      },
      0);
}

TEST_F(SrtTest, ChannelIdIsReadAsAnInteger) {
  expectRequiredInteger(
      [](const std::string& id) {
        return listener("<Stream Id='s'><Channel Id='" + id + "'/></Stream>");
      },
      [](int id) {
        return SrtList{listenerWith({{"s", 0, {id}}})};
      },
      kSrtNoChannelId);
}

TEST_F(SrtTest, StreamIdIsKeptAsText) {
  expectLoaded(listener("<Stream Id=''/><Stream Id='-1'/><Stream Id=' 007 '/><Stream Id='%s'/>"),
               {listenerWith({{"", 0, {}}, {"-1", 0, {}}, {" 007 ", 0, {}}, {"%s", 0, {}}})});
}

TEST_F(SrtTest, ABadModeIsOnlyAWarningButFailsTheLoad) {
  const std::string huge = std::string(900, 'm') + "%n";
  for (const std::string& mode : {std::string("rendezvous"), std::string(), std::string(" Caller"),
                                  std::string("Listeners"), std::string("100%s %n"), huge})
    expectRefused(listener("") + "<Instance Id='2' Mode='" + mode + "' Hostname='h' Port='1'/>" +
                      listener(""),
                  badMode(mode), {listenerWith({})});
}

TEST_F(SrtTest, HostnameOfAListenerIsNotRead) {
  expectLoaded("<Instance Id='1' Mode='Listener' Hostname='h' Port='9000'/>", {listenerWith({})});
}

TEST_F(SrtTest, HostnameOfACallerMayBeEmpty) {
  expectLoaded("<Instance Id='1' Mode='Caller' Hostname='' Port='9000'/>",
               {{1, kCaller, "", 9000, 0, "", 20, {}}});
}

TEST_F(SrtTest, UnknownElementOfTheSectionIsSkippedWithAWarning) {
  expectLoaded("<Foo/>" + listener("") + "<Stream/>", {listenerWith({})},
               unsupported("Foo", "<SRT>") + unsupported("Stream", "<SRT>"));
}

TEST_F(SrtTest, UnknownElementOfAnInstanceIsSkippedWithAWarning) {
  expectLoaded(listener("text<Foo/><Stream Id='s'/><!-- c --><Channel Id='1'/><Instance/>"),
               {listenerWith({{"s", 0, {}}})},
               unsupported("Foo", "<SRT><Instance>") + unsupported("Channel", "<SRT><Instance>") +
                   unsupported("Instance", "<SRT><Instance>"));
}

TEST_F(SrtTest, UnknownElementOfAStreamIsSkippedInSilence) {
  expectLoaded(listener("<Stream Id='s'>text<Foo/><!-- c --><Stream/><Channels/>"
                        "<Channel Id='1'><Channel/></Channel></Stream>"),
               {listenerWith({{"s", 0, {1}}})});
}

TEST_F(SrtTest, AFaultKeepsExactlyTheInstancesThatWereComplete) {
  const std::string complete = listener("<Stream Id='s'><Channel Id='1'/></Stream>");
  const SrtList kept{listenerWith({{"s", 0, {1}}})};
  expectRefused(complete + "<Instance Id='2' Mode='Listener' Port='-1'/>" + complete,
                required("Port", kInstance), kept);
  expectRefused(complete + listener("<Stream Id='t'/><Foo/><Stream/>") + complete,
                unsupported("Foo", "<SRT><Instance>") + kNoStreamId, kept);
  expectRefused(complete + listener("<Stream Id='t'><Channel Id='1'/><Channel Id='x'/></Stream>"),
                kSrtNoChannelId, kept);
}

TEST_F(SrtTest, TheListIsUntouchedWhereTheFileCannotBeOpened) {
  EXPECT_EQ(load().records, before());
}

TEST_F(SrtTest, InstancesAreDumpedInListOrderAndTheirAttributesInOneOrder) {
  expectDumped({{2, kCaller, "host", 9001, 2, "a & b", 120, {{"main", 1, {4, 0}}, {"", -1, {}}}},
                listenerWith({})},
               R"(<Instance Id="2" Mode="Caller" Hostname="host" Port="9001" AesMode="2")"
               R"( Password="a &amp; b" Latency="120">
    <Stream Id="main" Default="1">
        <Channel Id="4"/>
        <Channel Id="0"/>
    </Stream>
    <Stream Id="" Default="-1"/>
</Instance>
<Instance Id="1" Mode="Listener" Port="9000" Latency="20"/>)");
}

TEST_F(SrtTest, EveryModeButZeroIsDumpedAsListener) {
  expectDumped(
      {{1, 2, "", 1, 0, "", 0, {}}, {1, -1, "", 1, 0, "", 0, {}}, {1, 0, "", 1, 0, "", 0, {}}},
      R"(<Instance Id="1" Mode="Listener" Port="1" Latency="0"/>
<Instance Id="1" Mode="Listener" Port="1" Latency="0"/>
<Instance Id="1" Mode="Caller" Port="1" Latency="0"/>)");
}

TEST_F(SrtTest, HostnameIsDumpedInEveryModeUnlessItIsEmpty) {
  expectDumped({{1, kListener, "h", 1, 0, "", 0, {}}, {1, kCaller, "", 1, 0, "", 0, {}}},
               R"(<Instance Id="1" Mode="Listener" Hostname="h" Port="1" Latency="0"/>
<Instance Id="1" Mode="Caller" Port="1" Latency="0"/>)");
}

TEST_F(SrtTest, AesModeIsDumpedOnlyAboveZeroAndPasswordOnlyUnlessEmpty) {
  expectDumped({{1, kListener, "", 1, 0, "p", 0, {}},
                {2, kListener, "", 1, -3, "", 0, {}},
                {3, kListener, "", 1, 1, "", 0, {}}},
               R"(<Instance Id="1" Mode="Listener" Port="1" Password="p" Latency="0"/>
<Instance Id="2" Mode="Listener" Port="1" Latency="0"/>
<Instance Id="3" Mode="Listener" Port="1" AesMode="1" Latency="0"/>)");
}

TEST_F(SrtTest, NoValueIsCheckedWhenDumping) {
  expectDumped({{-1, kListener, "", -1, 2147483647, "", -5, {{"s", 7, {-1, -1}}}},
                {-1, kListener, "", -1, 0, "", -5, {}}},
               R"(<Instance Id="-1" Mode="Listener" Port="-1" AesMode="2147483647" Latency="-5">
    <Stream Id="s" Default="7">
        <Channel Id="-1"/>
        <Channel Id="-1"/>
    </Stream>
</Instance>
<Instance Id="-1" Mode="Listener" Port="-1" Latency="-5"/>)");
}

TEST_F(SrtTest, LoadAndDumpDropWhatIsNotUsed) {
  give(
      "<Foo/><Instance Mode='listener' Id='0x1' Hostname='h' Port='9000' AesMode='0' Password='' "
      "More='x'><Foo/><Stream More='x' Id='s'><Foo/><Channel More='x' Id='3'/></Stream>"
      "</Instance>");
  expectDumped(load().records, R"(<Instance Id="1" Mode="Listener" Port="9000" Latency="20">
    <Stream Id="s" Default="0">
        <Channel Id="3"/>
    </Stream>
</Instance>)");
}

TEST_F(SrtTest, DumpingAnEmptyListLeavesTheSectionEmpty) {
  expectDumped({}, "");
}

}  // namespace
}  // namespace camcfg::tests
