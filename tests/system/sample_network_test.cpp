#include <set>

#include "camcfg/network.h"
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
  EXPECT_THAT(cards, SizeIs(CFG_NETWORK_CARDS_MAX));
  for (const auto* card : cards) EXPECT_LT(nameOf(card).size(), std::size_t{CFG_NETWORK_NAME_SIZE});
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
      EXPECT_LT(value.size(), std::size_t{CFG_NETWORK_TEXT_SIZE}) << setting.name;
      if (setting.words.empty()) continue;
      EXPECT_THAT(setting.words, testing::Contains(value)) << setting.name;
    }
  }
}

using Words = std::map<std::string, std::string>;

Words wordsOf(tinyxml2::XMLElement* card, const char* attribute) {
  Words words;
  for (const auto* element : childrenOf(card))
    words[element->Name()] = textOf(element, attribute).value();
  return words;
}

// The words that a record represents.
Words wordsOf(const tagNETWORK_CFG_S& cfg) {
  const auto onOff = [](tagBU_BOOL flag) { return flag == BU_TRUE ? "On" : "Off"; };
  return {{"Enable", onOff(cfg.enEnable)},
          {"Autoneg", onOff(cfg.enAutoneg)},
          {"Duplex", cfg.enDuplex == LINK_DUPLEX_FULL ? "Full" : "Half"},
          {"Speed", std::to_string(cfg.enSpeed) + "M"},
          {"MTU", std::to_string(cfg.s32MTU)},
          {"Intf", CFG_NETWORK_IntfEthName2XmlStr(cfg.acIntf)},
          {"IpMode", cfg.enIpMode == IP_MODE_STATIC ? "StaticIp" : "DhcpIp"},
          {"IpAddr", cfg.acIpAddr},
          {"NetMask", cfg.acNetMask},
          {"GateWay", cfg.acGateWay},
          {"DnsMode", cfg.enDnsMode == DNS_MODE_MANUAL ? "ManualMode" : "AutoMode"},
          {"Dns1", cfg.acDns1},
          {"Dns2", cfg.acDns2},
          {"DnsSearch", cfg.acDnsSearch},
          {"DhcpDns1", cfg.acDhcpDns1},
          {"DhcpDns2", cfg.acDhcpDns2}};
}

class SampleNetworkOnDevice : public SampleDeviceAfterStartUp {
 protected:
  SampleDocument document{"/app/resource/defcfg/business_param.xml", files};
  tinyxml2::XMLElement* network = document.element("NetWork");
  const std::vector<tinyxml2::XMLElement*> cards = childrenOf(network);
};

TEST_F(SampleNetworkOnDevice, ReportsTheHostName) {
  char name[CFG_NETWORK_TEXT_SIZE];
  CFG_NETWORK_GetHostname(name, sizeof name);
  EXPECT_EQ(name, textOf(network, "Hostname"));
}

TEST_F(SampleNetworkOnDevice, ListsEveryCardWithAnInterface) {
  tagNETWORK_CARDS_S list{};
  EXPECT_EQ(CFG_NETWORK_GetCards(&list), 0);
  ASSERT_THAT(cards, SizeIs(list.s32Count));
  for (int i = 0; i < list.s32Count; ++i) {
    EXPECT_EQ(list.acCard[i], nameOf(cards[i]));
    EXPECT_EQ(CFG_NETWORK_IntfEthName2XmlStr(list.acIntf[i]), wordsOf(cards[i], "Cur")["Intf"]);
  }
}

TEST_F(SampleNetworkOnDevice, AnswersForEveryCardWithAllItsSettings) {
  for (auto* card : cards) {
    tagNETWORK_CFG_S current{};
    tagNETWORK_CFG_S defaults{};
    EXPECT_EQ(CFG_NETWORK_GetCardIntf(text(card->Name()), &current), 0);
    EXPECT_EQ(wordsOf(current), wordsOf(card, "Cur"));
    CFG_NETWORK_GetAllParamDef(text(card->Name()), &defaults);
    EXPECT_EQ(wordsOf(defaults), wordsOf(card, "Def"));
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SampleNetworkOnDevice, SettingsStoredAsTheyWereReadKeepTheBytesOfTheFile) {
  for (auto* card : cards) {
    tagNETWORK_CFG_S current{};
    CFG_NETWORK_GetAllParamCur(text(card->Name()), &current);
    CFG_NETWORK_SetAllParam(text(card->Name()), current);
    EXPECT_EQ(device.read(CFG_FILE_BUSINESS), files.at("/app/resource/defcfg/business_param.xml"));
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
