#include <set>

#include "camcfg/store.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

struct Setting {
  const char* name;
  std::vector<std::string> words;  ///< none: any text that fits
};

// In the order in which a setter recognises the elements.
const std::vector<Setting>& settings() {
  static const std::vector<Setting> all = {
      {"Enable", {"On", "Off"}},
      {"Autoneg", {"On", "Off"}},
      {"Duplex", {"Half", "Full"}},
      {"Speed", {"10M", "100M", "1000M"}},
      {"MTU", {"1500"}},
      {"Intf", {"Eth0", "Eth1", "Wlan0"}},
      {"IpMode", {"DhcpIp", "StaticIp"}},
      {"IpAddr", {}},
      {"NetMask", {}},
      {"GateWay", {}},
      {"DnsMode", {"AutoMode", "ManualMode"}},
      {"Dns1", {}},
      {"Dns2", {}},
      {"DnsSearch", {}},
      {"DhcpDns1", {}},
      {"DhcpDns2", {}},
  };
  return all;
}

constexpr std::size_t kTextSize = 32;  ///< of a text field of a card's record
constexpr std::size_t kNameSize = 16;  ///< of a card's name in the list of cards
constexpr std::size_t kCards = 3;

class SampleNetworkTest : public testing::Test {
 protected:
  SampleDocument document{"/app/resource/defcfg/business_param.xml"};
  tinyxml2::XMLElement* network = CFG_GetBrotherElementByName(document.root(), "NetWork");
  const std::vector<tinyxml2::XMLElement*> cards = childrenOf(network);
};

TEST_F(SampleNetworkTest, HasAHostName) {
  EXPECT_THAT(textOf(network, "Hostname"), testing::Optional(testing::Not(IsEmpty())));
}

TEST_F(SampleNetworkTest, HasCardsThatTheListOfCardsHoldsWhole) {
  EXPECT_THAT(cards, SizeIs(kCards));
  for (const auto* card : cards) EXPECT_LT(nameOf(card).size(), kNameSize);
}

TEST_F(SampleNetworkTest, CardsAreFoundByTheirNames) {
  for (auto* card : cards)
    EXPECT_EQ(CFG_GetElementByName(network, card->Name()), card) << nameOf(card);
}

TEST_F(SampleNetworkTest, CardsDriveDifferentInterfaces) {
  std::set<std::string> interfaces;
  for (auto* card : cards)
    interfaces.insert(textOf(CFG_GetElementByName(card, "Intf"), "Cur").value());
  EXPECT_THAT(interfaces, SizeIs(cards.size()));
}

TEST_F(SampleNetworkTest, EveryCardHasEverySettingInTheOrderOfTheSetters) {
  for (auto* card : cards) {
    const auto elements = childrenOf(card);
    ASSERT_THAT(elements, SizeIs(settings().size())) << nameOf(card);
    for (std::size_t i = 0; i < elements.size(); ++i) {
      EXPECT_EQ(nameOf(elements[i]), settings()[i].name);
      EXPECT_EQ(CFG_GetElementByName(card, settings()[i].name), elements[i]);
    }
  }
}

TEST_F(SampleNetworkTest, EverySettingStartsAtItsDefault) {
  for (auto* card : cards)
    for (const auto* element : childrenOf(card))
      EXPECT_EQ(textOf(element, "Cur"), textOf(element, "Def")) << nameOf(element);
}

TEST_F(SampleNetworkTest, EverySettingHoldsAWordOfItsOwnOrATextThatFits) {
  for (auto* card : cards) {
    for (const Setting& setting : settings()) {
      const std::string value = textOf(CFG_GetElementByName(card, setting.name), "Cur").value();
      EXPECT_LT(value.size(), kTextSize) << setting.name;
      if (setting.words.empty()) continue;
      EXPECT_THAT(setting.words, testing::Contains(value)) << setting.name;
    }
  }
}

}  // namespace
}  // namespace camcfg::tests
