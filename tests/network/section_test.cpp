#include <functional>

#include "network/network_test.h"
#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

using testing::AnyOf;
using testing::Matcher;
using testing::ValuesIn;
using testing::WithParamInterface;
using testkit::LogRecord;

constexpr char kNotOpened[] = "XMLDocument haven't initialize\n";
constexpr char kNoElement[] = "Load /cfg0/business_param.xml failed\n";
constexpr char kNotStored[] = "Save /cfg0/business_param.xml failed\n";

// An operation on the section; it works on a card "Lan" if it takes one.
struct Operation {
  const char* name;
  const char* loggedAs;
  std::function<void()> run;
  bool takesCard = true;
  const char* notOpened = kNotOpened;
};

void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

std::vector<Operation> writers() {
  return {
      {"SetAllParamInner", "cfgNetworkSetAllParam",
       [] { cfgNetworkSetAllParam(text("Lan"), factoryDefault()); }},
      {"SetAllParam", "cfgNetworkSetAllParam",
       [] { CFG_NETWORK_SetAllParam(text("Lan"), factoryDefault()); }},
      {"SetSingleParam", "cfgNetworkSetSingleParam",
       [] { cfgNetworkSetSingleParam(text("GateWay"), text("Lan"), factoryDefault()); }},
      {"SetLinkMtu", "cfgNetworkSetSingleParam", [] { CFG_NETWORK_SetLinkMTU(text("Lan"), 1500); }},
      {"SetHostname", "CFG_NETWORK_SetHostname",
       [] { CFG_NETWORK_SetHostname(text("a name that is not short")); }, false}};
}

std::vector<Operation> readers() {
  static tagNETWORK_CFG_S settings;
  static tagNETWORK_CARDS_S cards;
  static char hostname[16];
  return {
      {"GetParam", "cfgNetworkGetParam",
       [] { cfgNetworkGetParam(text("Cur"), text("Lan"), &settings); }},
      {"GetAllParamCur", "cfgNetworkGetParam",
       [] { CFG_NETWORK_GetAllParamCur(text("Lan"), &settings); }},
      {"GetAllParamDef", "cfgNetworkGetParam",
       [] { CFG_NETWORK_GetAllParamDef(text("Lan"), &settings); }},
      {"GetHostname", "CFG_NETWORK_GetHostname",
       [] { CFG_NETWORK_GetHostname(hostname, sizeof hostname); }, false},
      {"GetCards", "CFG_NETWORK_GetCards", [] { CFG_NETWORK_GetCards(&cards); }, false, kNoElement},
      {"GetCardIntf", "CFG_NETWORK_GetCardIntf",
       [] { CFG_NETWORK_GetCardIntf(text("Lan"), &settings); }, true, kNoElement}};
}

class SectionTest : public NetworkTest, public WithParamInterface<Operation> {
 protected:
  Matcher<LogRecord> reported(const char* message) const {
    return Logged(3, GetParam().loggedAs, std::string(message));
  }
};

TEST_P(SectionTest, AFileThatCannotBeOpenedIsReported) {
  GetParam().run();
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_GetDocByFileName",
                                                "Load file /cfg0/business_param.xml fail\n"),
                                         reported(GetParam().notOpened)));
  EXPECT_THAT(device.list("/cfg0"), IsEmpty());
  EXPECT_THAT(device.list("/cfg1"), IsEmpty());
  EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
}

TEST_P(SectionTest, AFileThatIsNotWellFormedIsReportedAndLeftAlone) {
  for (const char* contents : {"", "no element", "<NetWork><Lan></NetWork>", "<NetWork>"}) {
    SCOPED_TRACE(contents);
    store(contents);
    log.clear();
    GetParam().run();
    EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_GetDocByFileName",
                                                  "Load file /cfg0/business_param.xml fail\n"),
                                           reported(GetParam().notOpened)));
    expectNotSaved();
  }
}

TEST_P(SectionTest, AFileWithoutAnElementIsReportedAndLeftAlone) {
  for (const char* contents : {"<!-- only a comment -->\n", "<?xml version=\"1.0\"?>\n"}) {
    SCOPED_TRACE(contents);
    store(contents);
    log.clear();
    GetParam().run();
    EXPECT_THAT(log.records(), ElementsAre(reported(kNoElement)));
    expectNotSaved();
  }
}

TEST_P(SectionTest, AMissingSectionIsReportedAndTheFileLeftAlone) {
  for (const char* contents :
       {"<System/>\n", "<NetWorks><Lan/></NetWorks>\n", "<Network><Lan/></Network>\n",
        "<Device><NetWork><Lan/></NetWork></Device>\n"}) {
    SCOPED_TRACE(contents);
    store(contents);
    log.clear();
    GetParam().run();
    EXPECT_THAT(log.records(), ElementsAre(reported("NetWork node doesn't exist\n")));
    expectNotSaved();
  }
}

TEST_P(SectionTest, AMissingCardIsReportedByItsNameAndTheFileLeftAlone) {
  if (!GetParam().takesCard) return;
  for (const char* contents : {"<NetWork/>\n", "<NetWork><La/><lan/><Wifi/></NetWork>\n",
                               "<NetWork><Group><Lan/></Group></NetWork>\n"}) {
    SCOPED_TRACE(contents);
    store(contents);
    log.clear();
    GetParam().run();
    EXPECT_THAT(log.records(), ElementsAre(reported("Network Lan node doesn't exist\n")));
    expectNotSaved();
  }
}

TEST_P(SectionTest, TheSectionIsFoundAfterOthers) {
  store(kFactory);
  GetParam().run();
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
}

INSTANTIATE_TEST_SUITE_P(Writers, SectionTest, ValuesIn(writers()), nameOf<Operation>);
INSTANTIATE_TEST_SUITE_P(Readers, SectionTest, ValuesIn(readers()), nameOf<Operation>);

class ShortMemoryTest : public NetworkTest, public WithParamInterface<Operation> {
 protected:
  void SetUp() override { makeLockRecord(); }

  // Runs the operation with the given allocation failing; false if it makes fewer.
  bool strikes(int allocation, Shortage shortage) {
    store(kFactory + deeplyNested());  // so that saving needs memory as well
    device.remove(kBackup);
    log.clear();
    const ScarceMemory memory(allocation, shortage);
    GetParam().run();
    return memory.struck();
  }

  void expectNothingStored() const {
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
    EXPECT_FALSE(device.exists(kBackup));
  }

  std::string lastText() const {
    const auto texts = log.texts();
    return texts.empty() ? "nothing" : texts.back();
  }
};

TEST_P(ShortMemoryTest, IsReportedWithTheFileUnlockedAndTheBackupLeftAlone) {
  int allocation = 1;
  while (strikes(allocation, Shortage::OneAllocation)) {
    SCOPED_TRACE(allocation);
    expectNothingStored();
    EXPECT_THAT(lastText(), AnyOf(kNotOpened, GetParam().notOpened, kNotStored));
    ++allocation;
  }
  EXPECT_GT(allocation, 1);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(ShortMemoryTest, ForGoodLeavesTheFileUnlockedAndTheBackupUnchanged) {
  for (int allocation = 1; strikes(allocation, Shortage::FromThenOn); ++allocation) {
    SCOPED_TRACE(allocation);
    expectNothingStored();
  }
}

class ShortMemoryWriterTest : public ShortMemoryTest {};

TEST_P(ShortMemoryWriterTest, IsReportedWhenTheFileIsOpenButNotStored) {
  int reported = 0;
  for (int allocation = 1; strikes(allocation, Shortage::OneAllocation); ++allocation) {
    if (lastText() != kNotStored) continue;
    EXPECT_THAT(log.records(), ElementsAre(Logged(3, GetParam().loggedAs, kNotStored)));
    ++reported;
  }
  EXPECT_GT(reported, 0);
}

INSTANTIATE_TEST_SUITE_P(Writers, ShortMemoryWriterTest, ValuesIn(writers()), nameOf<Operation>);
INSTANTIATE_TEST_SUITE_P(Writers, ShortMemoryTest, ValuesIn(writers()), nameOf<Operation>);
INSTANTIATE_TEST_SUITE_P(Readers, ShortMemoryTest, ValuesIn(readers()), nameOf<Operation>);

}  // namespace
}  // namespace camcfg::tests
