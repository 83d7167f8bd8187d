#include <string>

#include "network/network_test.h"
#include "support/scarce_memory.h"

namespace camcfg::tests {
namespace {

using Cards = tagNETWORK_CARDS_S;
using Settings = tagNETWORK_CFG_S;

// The cards list and card lookup share their bad inputs; what they log is seen in section_test.
constexpr const char* kUnusable[] = {"<NetWork><Lan></NetWork>", "<!-- empty -->\n", "<System/>\n"};

class CardsTest : public NetworkTest {
 protected:
  Cards listed() {
    auto cards = patterned<Cards>();
    EXPECT_EQ(CFG_NETWORK_GetCards(&cards), 0);
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
    return cards;
  }
};

std::string cards(const std::string& elements) {
  return "<NetWork>" + elements + "</NetWork>\n";
}

TEST_F(CardsTest, CardsAreListedInTheOrderOfTheFileWithTheirInterfaces) {
  store(kFactory);
  EXPECT_EQ(listed(), (Cards{{"Lan", "Wifi"}, {"eth1", "wlan0"}, 2}));
  expectNotSaved();
}

TEST_F(CardsTest, AFourthCardIsNotListed) {
  store(cards(R"(<C><Intf Cur="Wlan0"/></C><B><Intf Cur="Eth1"/></B><A><Intf Cur="Eth0"/></A>)"
              R"(<D><Intf Cur="Eth1"/></D><E/>)"));
  struct {
    Cards cards;
    char after[64];
  } memory{patterned<Cards>(), {}};
  std::memset(memory.after, '#', sizeof memory.after);

  EXPECT_EQ(CFG_NETWORK_GetCards(&memory.cards), 0);
  EXPECT_EQ(memory.cards, (Cards{{"C", "B", "A"}, {"wlan0", "eth1", "eth0"}, 3}));
  EXPECT_EQ(std::string(memory.after, sizeof memory.after), std::string(64, '#'));
}

TEST_F(CardsTest, ASectionWithoutCardsIsAnEmptyList) {
  store("<NetWork Hostname=\"camera-7\"/>\n");
  EXPECT_EQ(listed(), Cards{});
}

TEST_F(CardsTest, CommentsAndTextAreNoCards) {
  store(cards("<!-- Old -->text<Lan/><!-- Older -->"));
  EXPECT_EQ(listed(), (Cards{{"Lan"}, {}, 1}));
}

TEST_F(CardsTest, ACardWithoutAKnownInterfaceIsListedWithAnEmptyOne) {
  store(
      cards(R"(<NoElement/><NoCur><Intf Def="Eth0"/></NoCur><NoWord><Intf Cur="Eth2"/></NoWord>)"));
  EXPECT_EQ(listed(), (Cards{{"NoElement", "NoCur", "NoWord"}, {}, 3}));
}

TEST_F(CardsTest, TheListTakesTheInterfaceFromTheElementOfExactlyThisName) {
  store(cards(
      R"(<Lan><IntfOld Cur="Eth0"/><Intf Cur="Eth1"/></Lan><Wifi><IntfX Cur="Eth0"/></Wifi>)"));
  EXPECT_EQ(listed(), (Cards{{"Lan", "Wifi"}, {"eth1"}, 2}));
}

TEST_F(CardsTest, ALongCardNameIsCutInTheList) {
  store(cards(R"(<Fifteen12345678/><Sixteen123456789/><VeryMuchLongerThanSixteen/>)"));
  EXPECT_EQ(listed(), (Cards{{"Fifteen12345678", "Sixteen12345678", "VeryMuchLongerT"}, {}, 3}));
}

TEST_F(CardsTest, ListingIntoNullFailsWithoutOpeningTheFile) {
  EXPECT_EQ(CFG_NETWORK_GetCards(nullptr), -1);
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_NETWORK_GetCards", "pcCard is NULL\n")));
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

TEST_F(CardsTest, AFailedListingIsZeroed) {
  auto found = patterned<Cards>();
  EXPECT_EQ(CFG_NETWORK_GetCards(&found), -1);
  EXPECT_EQ(found, Cards{});
  for (const char* contents : kUnusable) {
    store(contents);
    found = patterned<Cards>();
    EXPECT_EQ(CFG_NETWORK_GetCards(&found), -1) << contents;
    EXPECT_EQ(found, Cards{}) << contents;
  }
}

class CardIntfTest : public NetworkTest {
 protected:
  // The settings of a card that must be found.
  Settings found(const char* card) {
    auto settings = patterned<Settings>();
    EXPECT_EQ(CFG_NETWORK_GetCardIntf(text(card), &settings), 0);
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
    return settings;
  }

  // A card must not be found, and nothing but the interface of the record may be written.
  void expectFailure(const char* card) {
    auto untouched = patterned<Settings>();
    std::memset(untouched.acIntf, 0, sizeof untouched.acIntf);
    auto settings = patterned<Settings>();
    EXPECT_EQ(CFG_NETWORK_GetCardIntf(text(card), &settings), -1);
    EXPECT_EQ(settings, untouched);
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
  }
};

TEST_F(CardIntfTest, ACardWithAKnownInterfaceIsReadWhole) {
  store(kFactory);
  EXPECT_EQ(found("Lan"), factoryCurrent());
  expectNotSaved();
}

TEST_F(CardIntfTest, TheCardIsFoundByTheBeginningOfItsName) {
  store(kFactory);
  Settings wifi{};
  setField(wifi.acIntf, "wlan0");
  EXPECT_EQ(found("Wi"), wifi);
  EXPECT_EQ(found(""), factoryCurrent());
}

TEST_F(CardIntfTest, AMissingCardIsReportedByItsName) {
  store(kFactory);
  expectFailure("Lan2");
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_NETWORK_GetCardIntf",
                                                "Network Lan2 node doesn't exist\n")));
}

TEST_F(CardIntfTest, ACardWithoutAnInterfaceElementIsReportedByTheNameAskedFor) {
  store(lan({"<Enable Cur=\"On\"/>"}));
  expectFailure("La");
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_NETWORK_GetCardIntf",
                                                "Network La intf node doesn't exist\n")));
}

TEST_F(CardIntfTest, AnUnknownInterfaceFailsWithoutAMessage) {
  for (const char* element : {"<Intf Cur=\"Eth2\"/>", "<Intf Cur=\"eth0\"/>", "<Intf Cur=\"\"/>",
                              "<Intf Def=\"Eth0\"/>"}) {
    SCOPED_TRACE(element);
    store(lan({element, "<Enable Cur=\"On\"/>"}));
    expectFailure("Lan");
    EXPECT_THAT(log.records(), IsEmpty());
  }
}

TEST_F(CardIntfTest, TheInterfaceIsLookedForByTheBeginningOfItsNameButReadByTheWhole) {
  store(lan({"<IntfOld Cur=\"Eth0\"/>", "<Enable Cur=\"On\"/>"}));
  Settings settings{};
  settings.enEnable = BU_TRUE;
  EXPECT_EQ(found("Lan"), settings);
}

TEST_F(CardIntfTest, AnEarlierElementWhoseNameBeginsLikeTheInterfacesDecides) {
  store(lan({"<IntfOld Cur=\"None\"/>", "<Intf Cur=\"Eth0\"/>"}));
  expectFailure("Lan");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CardIntfTest, TheCardIsReadAgainAndAFailureOfThatIsNotLookedAt) {
  store(kFactory);
  makeLockRecord();
  int reread = 0;
  bool struck = true;
  for (int allocation = 1; struck; ++allocation) {
    log.clear();
    auto settings = patterned<Settings>();
    int result = 0;
    {
      const ScarceMemory memory(allocation, Shortage::OneAllocation);
      result = CFG_NETWORK_GetCardIntf(text("Lan"), &settings);
      struck = memory.struck();
    }
    if (!struck || log.records().back().function() != "cfgNetworkGetParam") continue;
    EXPECT_EQ(result, 0);
    EXPECT_EQ(settings, Settings{});
    ++reread;
  }
  EXPECT_GT(reread, 0);
}

TEST_F(CardIntfTest, ANullArgumentFailsWithoutOpeningTheFileOrTouchingTheRecord) {
  auto settings = patterned<Settings>();
  EXPECT_EQ(CFG_NETWORK_GetCardIntf(nullptr, &settings), -1);
  EXPECT_EQ(settings, patterned<Settings>());
  EXPECT_EQ(CFG_NETWORK_GetCardIntf(text("Lan"), nullptr), -1);
  const auto reported = Logged(3, "CFG_NETWORK_GetCardIntf", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(reported, reported));
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

TEST_F(CardIntfTest, AnUnusableFileClearsOnlyTheInterface) {
  expectFailure("Lan");
  for (const char* contents : kUnusable) {
    SCOPED_TRACE(contents);
    store(contents);
    expectFailure("Lan");
  }
}

}  // namespace
}  // namespace camcfg::tests
