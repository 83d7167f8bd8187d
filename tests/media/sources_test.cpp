#include <list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "media/layout.h"
#include "media/media_test.h"
#include "media/records.h"
#include "support/random_values.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Source = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;
using Sources = SourceList;

template <typename Record>
Source make(int id, const std::string& name, int channel, int enabled) {
  auto source = std::make_shared<Record>();
  source->s32Id = id;
  source->strName = name;
  source->s32ChnId = channel;
  source->s32Enabled = enabled;
  return source;
}
constexpr auto venc = make<tag_CFG_STREAM_SOURCE_VENC_T>;
constexpr auto ai = make<tag_CFG_STREAM_SOURCE_AI_T>;
constexpr auto aenc = make<tag_CFG_STREAM_SOURCE_AENC_T>;

// A record whole, its class included.
std::string described(const Source& source) {
  const tag_CFG_STREAM_SOURCE_T* record = source.get();
  const char* kind = dynamic_cast<const tag_CFG_STREAM_SOURCE_VENC_T*>(record)   ? "VENC"
                     : dynamic_cast<const tag_CFG_STREAM_SOURCE_AI_T*>(record)   ? "AI"
                     : dynamic_cast<const tag_CFG_STREAM_SOURCE_AENC_T*>(record) ? "AENC"
                                                                                 : "?";
  return kind + std::string("/") + std::to_string(source->s32Type) + " " +
         std::to_string(source->s32Id) + " " + testing::PrintToString(source->strName) +
         " channel " + std::to_string(source->s32ChnId) + " enabled " +
         std::to_string(source->s32Enabled);
}

std::vector<std::string> described(const Sources& sources) {
  std::vector<std::string> all;
  for (const Source& source : sources) all.push_back(described(source));
  return all;
}

template <typename Record>
void expectFresh(std::int32_t type) {
  const Record record{};
  EXPECT_EQ(record.s32Type, type);
  EXPECT_EQ(record.s32Id, -1);
  EXPECT_EQ(record.strName, "");
  EXPECT_EQ(record.s32Enabled, 0);
}

TEST(SourceRecordTest, NewSourceHasItsKindAndNothingElse) {
  expectFresh<tag_CFG_STREAM_SOURCE_T>(0);
  expectFresh<tag_CFG_STREAM_SOURCE_VENC_T>(1);
  expectFresh<tag_CFG_STREAM_SOURCE_AI_T>(2);
  expectFresh<tag_CFG_STREAM_SOURCE_AENC_T>(3);
}

struct SourceModel {
  std::int32_t s32Type;
  std::int32_t s32Id;
  std::string strName;
  std::int32_t s32Enabled;
  std::int32_t s32ChnId;

  virtual ~SourceModel() = default;
};

TEST(SourceRecordTest, FieldsLieInTheOrderOfTheInterface) {
  using Record = tag_CFG_STREAM_SOURCE_T;
  EXPECT_EQ(layoutOf(&Record::s32Type, &Record::s32Id, &Record::strName, &Record::s32Enabled,
                     &Record::s32ChnId),
            layoutOf(&SourceModel::s32Type, &SourceModel::s32Id, &SourceModel::strName,
                     &SourceModel::s32Enabled, &SourceModel::s32ChnId));
}

template <typename Kind>
constexpr bool isPlainKind() {
  return std::is_base_of<tag_CFG_STREAM_SOURCE_T, Kind>::value &&
         std::is_convertible<Kind*, tag_CFG_STREAM_SOURCE_T*>::value &&
         std::has_virtual_destructor<Kind>::value &&
         sizeof(Kind) == sizeof(tag_CFG_STREAM_SOURCE_T);
}

TEST(SourceRecordTest, KindsAddNoFieldsAndAreDestroyedThroughTheirBase) {
  EXPECT_TRUE(std::has_virtual_destructor<tag_CFG_STREAM_SOURCE_T>::value);
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_VENC_T>());
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_AI_T>());
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_AENC_T>());
}

class SourcesTest : public MediaTest {
 protected:
  SourcesTest() : MediaTest(kStreams, "StreamSource") {}

  Outcome load() {
    return observe([this] { return CFG_MPP_LoadStreamSourceConfig(sources); });
  }
  Outcome dump() {
    return observe([this] { return CFG_MPP_DumpStreamSourceConfig(sources); });
  }

  Sources sources;
};

TEST_F(SourcesTest, EveryKindLoadsAsItsOwnClassInDocumentOrder) {
  give(R"(<AENC Id="7" Name="aac" AencId="2"/>
<VENC Id="0" Name="main" ChnId="1" Enabled="1"/>
<AI Id="3" Name="mic" AiId="4" Enabled="0"/>
)");
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_THAT(described(sources), ElementsAre("AENC/3 7 \"aac\" channel 2 enabled 1",
                                              "VENC/1 0 \"main\" channel 1 enabled 1",
                                              "AI/2 3 \"mic\" channel 4 enabled 0"));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SourcesTest, ElementNamesMatchInAnyCaseAndAreWrittenInUpperCase) {
  give(R"(<venc Id="0" Name="main" ChnId="0"/>
<Ai Id="1" Name="mic" AiId="0"/>
<aEnC Id="2" Name="aac" AencId="0"/>
)");
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<VENC Id="0" Name="main" ChnId="0"/>
<AI Id="1" Name="mic" AiId="0"/>
<AENC Id="2" Name="aac" AencId="0"/>
)");
}

TEST_F(SourcesTest, EmptySectionLoadsAsAnEmptyList) {
  give("");
  sources = {venc(9, "old", 9, 1)};
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_THAT(sources, IsEmpty());
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(SourcesTest, LoadEmptiesTheListButRecordsStillHeldLiveOn) {
  give("<VENC Id=\"1\" Name=\"new\" ChnId=\"2\"/>\n");
  const Source held = ai(9, "old", 8, 1);
  sources = {held};
  EXPECT_EQ(load(), (Outcome{0, ""}));
  EXPECT_THAT(described(sources), ElementsAre("VENC/1 1 \"new\" channel 2 enabled 1"));
  EXPECT_EQ(sources.front().use_count(), 1);
  EXPECT_EQ(described(held), "AI/2 9 \"old\" channel 8 enabled 1");
}

TEST_F(SourcesTest, EachRecordIsOneAllocationWithItsCount) {
  const auto allocationsFor = [this](const std::string& name) {
    return allocationsOfLoading("<" + name + R"( Id="1" Name="a" ChnId="2" AiId="2" AencId="2"/>)",
                                CFG_MPP_LoadStreamSourceConfig);
  };
  // The other one is the list's.
  EXPECT_EQ(allocationsFor("VENC"), allocationsFor("NONE") + 2);
  EXPECT_EQ(allocationsFor("AENC"), allocationsFor("NONE") + 2);
  EXPECT_EQ(allocationsFor("AI"), allocationsFor("NO") + 2);
}

TEST_F(SourcesTest, FailedOpenLeavesTheListAsItWas) {
  sources = {venc(9, "old", 9, 1)};
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, line("Error", "Config File open failed")}));
  device.write(CFG_FILE_MPP, "<Stream/>");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, line("Error", "<StreamSource> not found")}));
  EXPECT_THAT(described(sources), ElementsAre("VENC/1 9 \"old\" channel 9 enabled 1"));
  EXPECT_EQ(state(), "closed, unlocked");
}

// A faulty element, and what is missing from it where.
struct SourceFault {
  const char* entry;
  const char* attribute;
  const char* path;
};
void PrintTo(const SourceFault& fault, std::ostream* out) {
  *out << fault.entry;
}

class SourceFaultTest : public SourcesTest, public testing::WithParamInterface<SourceFault> {};

TEST_P(SourceFaultTest, StopsTheLoadAndKeepsTheRecordsBeforeIt) {
  give(std::string("<VENC Id=\"1\" Name=\"\" ChnId=\"2\"/>\n") + GetParam().entry +
       "\n<VENC Id=\"3\" Name=\"after\" ChnId=\"4\"/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, missing(GetParam().attribute, GetParam().path)}));
  EXPECT_THAT(described(sources), ElementsAre("VENC/1 1 \"\" channel 2 enabled 1"));
  EXPECT_EQ(state(), "closed, unlocked");
}

constexpr char kVenc[] = "<Stream><StreamSource><VENC>";
constexpr char kAi[] = "<Stream><StreamSource><AI>";
constexpr char kAenc[] = "<Stream><StreamSource><AENC>";
constexpr char kAny[] = "<Stream><StreamSource><*>";

INSTANTIATE_TEST_SUITE_P(
    All, SourceFaultTest,
    testing::Values(SourceFault{R"(<VENC Id="0" Name="a"/>)", "ChnId", kVenc},
                    SourceFault{R"(<VENC Id="0" Name="a" ChnId="-1"/>)", "ChnId", kVenc},
                    SourceFault{R"(<VENC Id="0" Name="a" ChnId="x"/>)", "ChnId", kVenc},
                    SourceFault{R"(<VENC Id="0" Name="a" ChnId=""/>)", "ChnId", kVenc},
                    SourceFault{R"(<VENC Id="0" Name="a" chnid="1"/>)", "ChnId", kVenc},
                    SourceFault{R"(<venc Id="0" Name="a" AiId="1"/>)", "ChnId", kVenc},
                    SourceFault{R"(<AI Id="2" Name="mic"/>)", "AiId", kAi},
                    SourceFault{R"(<AI Id="2" Name="mic" AiId="-1"/>)", "AiId", kAi},
                    SourceFault{R"(<AENC Id="2" Name="aac" ChnId="1"/>)", "AencId", kAenc},
                    SourceFault{R"(<AENC/>)", "AencId", kAenc},
                    SourceFault{R"(<VENC Name="a" ChnId="0"/>)", "Id", kAny},
                    SourceFault{R"(<AI Name="a" AiId="0" Id="-1"/>)", "Id", kAny},
                    SourceFault{R"(<AENC Name="a" AencId="0" Id="first"/>)", "Id", kAny},
                    SourceFault{R"(<VENC ID="5" Name="a" ChnId="0"/>)", "Id", kAny}));

TEST_F(SourcesTest, MissingChannelIsReportedBeforeIdAndIdBeforeName) {
  give("<AI/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, missing("AiId", kAi)}));
  give("<AI AiId=\"0\"/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, missing("Id", kAny)}));
  give("<AI AiId=\"0\" Id=\"0\"/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, missing("Name", kAny)}));
  EXPECT_THAT(sources, IsEmpty());
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(SourcesTest, ElementWithoutNameTakesTheNameOfTheNearestNamedSourceBeforeIt) {
  give(R"(<VENC Id="0" Name="first" ChnId="0"/>
<AI Id="1" AiId="0"/>
<Other Name="other"/>
<AENC Id="2" AencId="0"/>
<VENC Id="3" Name="" ChnId="0"/>
<VENC Id="4" ChnId="0"/>
)");
  EXPECT_EQ(load().result, 0);
  EXPECT_THAT(
      described(sources),
      ElementsAre("VENC/1 0 \"first\" channel 0 enabled 1", "AI/2 1 \"first\" channel 0 enabled 1",
                  "AENC/3 2 \"first\" channel 0 enabled 1", "VENC/1 3 \"\" channel 0 enabled 1",
                  "VENC/1 4 \"\" channel 0 enabled 1"));
}

TEST_F(SourcesTest, NameIsNotCarriedFromOneLoadToTheNext) {
  give("<VENC Id=\"0\" Name=\"a\" ChnId=\"0\"/>\n");
  EXPECT_EQ(load().result, 0);
  give("<VENC Id=\"0\" ChnId=\"0\"/>\n<VENC Id=\"1\" Name=\"late\" ChnId=\"0\"/>\n");
  EXPECT_EQ(load(), (Outcome{CFG_MPP_ERR, missing("Name", kAny)}));
}

TEST_F(SourcesTest, EnabledIsANumberAndOneUnlessItReadsAsAnother) {
  give(R"(<VENC Id="0" Name="n" ChnId="0" Enabled="0"/>
<VENC Id="0" Name="n" ChnId="0" Enabled="5"/>
<VENC Id="0" Name="n" ChnId="0" Enabled="-1"/>
<VENC Id="0" Name="n" ChnId="0" Enabled="true"/>
<VENC Id="0" Name="n" ChnId="0" Enabled="false"/>
<VENC Id="0" Name="n" ChnId="0" Enabled=""/>
<VENC Id="0" Name="n" ChnId="0" enabled="0"/>
)");
  EXPECT_EQ(load(), (Outcome{0, ""}));
  std::vector<int> enabled;
  for (const Source& source : sources) enabled.push_back(source->s32Enabled);
  EXPECT_THAT(enabled, ElementsAre(0, 5, -1, 1, 1, 1, 1));
}

TEST_F(SourcesTest, UnknownElementsAreNamedAndSkippedOthersPassUnnoticed) {
  const std::string longName(400, 'n');
  give(
      "<!-- comment -->\n<VENCX Id=\"0\"/>\ntext\n<VENC Id=\"1\" Name=\"a\" ChnId=\"2\">inner"
      "<Unknown/></VENC>\n<" +
      longName + "/>\n");
  const auto skipped = [this](const std::string& name) {
    return line("Warning", "Un-Support node <" + name + "> by <StreamSource>, Skip.");
  };
  EXPECT_EQ(load(), (Outcome{0, skipped("VENCX") + skipped(longName)}));
  EXPECT_THAT(described(sources), ElementsAre("VENC/1 1 \"a\" channel 2 enabled 1"));
}

TEST_F(SourcesTest, NumbersOfAnySizeDoNoHarm) {
  give(R"(<VENC Id="99999999999999999999" Name="a" ChnId="-99999999999"/>
<VENC Id="2147483647" Name="a" ChnId="-2147483648" Enabled="0x10"/>
<VENC Id="12abc" Name="a" ChnId=" 7 "/>
)");
  load();
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_EQ(dump().result, 0);
}

TEST_F(SourcesTest, DumpWritesTheAttributesInOrderAndEnabledForADisabledSourceOnly) {
  give("");
  sources = {venc(0, "main", 1, 1), ai(-1, "", -1, 0), aenc(2147483647, "a & \"b\" <c>", 3, 5),
             venc(-2147483647 - 1, "last", 0, -1)};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved(R"(<VENC Id="0" Name="main" ChnId="1"/>
<AI Id="-1" Name="" AiId="-1" Enabled="0"/>
<AENC Id="2147483647" Name="a &amp; &quot;b&quot; &lt;c&gt;" AencId="3"/>
<VENC Id="-2147483648" Name="last" ChnId="0"/>
)");
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(SourcesTest, DisabledSourceStaysDisabledAndAnyOtherIsPlainlyEnabled) {
  give(R"(<VENC Id="0" Name="a" ChnId="0" Enabled="0"/>
<VENC Id="1" Name="b" ChnId="1" Enabled="5"/>
)");
  EXPECT_EQ(load().result, 0);
  EXPECT_EQ(dump().result, 0);
  expectSaved(R"(<VENC Id="0" Name="a" ChnId="0" Enabled="0"/>
<VENC Id="1" Name="b" ChnId="1"/>
)");
}

TEST_F(SourcesTest, DumpReplacesWhateverWasInTheSection) {
  give("<!-- comment -->\n<VENC Id=\"1\" Name=\"a\" ChnId=\"2\"/>\n<Unknown/>\n<AI/>\n");
  sources = {ai(3, "mic", 4, 1)};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved("<AI Id=\"3\" Name=\"mic\" AiId=\"4\"/>\n");
}

TEST_F(SourcesTest, DumpOfAnEmptyListLeavesAnEmptySection) {
  give("<VENC Id=\"1\" Name=\"a\" ChnId=\"2\"/>\n");
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved("");
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(SourcesTest, DumpLeavesOutRecordsOfUnknownKindAndNullPointers) {
  give("");
  const auto unknown = std::make_shared<tag_CFG_STREAM_SOURCE_T>();
  unknown->s32ChnId = 0;
  const auto other = std::make_shared<tag_CFG_STREAM_SOURCE_T>(*unknown);
  other->s32Type = 4;
  sources = {nullptr, unknown, venc(1, "a", 2, 1), other, nullptr};
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  expectSaved("<VENC Id=\"1\" Name=\"a\" ChnId=\"2\"/>\n");
}

TEST_F(SourcesTest, DumpThatCannotOpenTheSectionWritesNothing) {
  device.write(CFG_FILE_MPP, "<Stream><StreamCache/></Stream>");
  sources = {venc(1, "a", 2, 1)};
  EXPECT_EQ(dump(), (Outcome{CFG_MPP_ERR, line("Error", "<StreamSource> not found")}));
  EXPECT_EQ(device.read(CFG_FILE_MPP), "<Stream><StreamCache/></Stream>");
  EXPECT_FALSE(device.exists(kBackupCopy));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(SourcesTest, DumpWhoseSaveFailsSucceedsNevertheless) {
  give("");
  device.remove("/cfg1");
  EXPECT_EQ(dump(), (Outcome{0, ""}));
  EXPECT_EQ(device.read(CFG_FILE_MPP), fileWith(""));
  EXPECT_EQ(state(), "closed, unlocked");
}

Source randomSource(RandomValues& random) {
  constexpr decltype(venc) kMake[] = {venc, ai, aenc};
  return kMake[random.number(0, 2)](random.id(), random.text(), random.id(), random.number(0, 1));
}

TEST_F(SourcesTest, AnySourcesLoadAsTheyWereDumped) {
  RandomValues random;
  SCOPED_TRACE(random.trace());
  give("");
  for (int round = 0; round < 3000 && !HasFailure(); ++round) {
    sources.clear();
    for (int count = random.number(0, 12); count > 0; --count)
      sources.push_back(randomSource(random));
    const std::vector<std::string> before = described(sources);
    ASSERT_EQ(dump(), (Outcome{0, ""}));
    ASSERT_EQ(load(), (Outcome{0, ""}));
    ASSERT_EQ(described(sources), before);
  }
}

}  // namespace
}  // namespace camcfg::tests
