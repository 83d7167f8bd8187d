#ifndef CAMCFG_TESTS_NETWORK_NETWORK_TEST_H
#define CAMCFG_TESTS_NETWORK_NETWORK_TEST_H

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "camcfg/network.h"
#include "support/device_test.h"
#include "support/quick_saves.h"

inline bool operator==(const tagNETWORK_CFG_S& left, const tagNETWORK_CFG_S& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

inline bool operator==(const tagNETWORK_CARDS_S& left, const tagNETWORK_CARDS_S& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

inline void PrintTo(const tagNETWORK_CFG_S& cfg, std::ostream* out) {
  const auto quoted = [out](const char* name, const auto& field) {
    *out << ' ' << name << ' ' << testing::PrintToString(std::string(field, sizeof field));
  };
  *out << "enable " << static_cast<int>(cfg.enEnable) << " ip " << static_cast<int>(cfg.enIpMode)
       << " dns " << static_cast<int>(cfg.enDnsMode) << " autoneg "
       << static_cast<int>(cfg.enAutoneg) << " speed " << static_cast<int>(cfg.enSpeed)
       << " duplex " << static_cast<int>(cfg.enDuplex) << " mtu " << cfg.s32MTU;
  quoted("intf", cfg.acIntf);
  quoted("address", cfg.acIpAddr);
  quoted("mask", cfg.acNetMask);
  quoted("gateway", cfg.acGateWay);
  quoted("dns1", cfg.acDns1);
  quoted("dns2", cfg.acDns2);
  quoted("search", cfg.acDnsSearch);
  quoted("dhcp1", cfg.acDhcpDns1);
  quoted("dhcp2", cfg.acDhcpDns2);
}

inline void PrintTo(const tagNETWORK_CARDS_S& cards, std::ostream* out) {
  *out << "count " << cards.s32Count;
  for (const auto* table : {cards.acCard, cards.acIntf})
    for (int i = 0; i < CFG_NETWORK_CARDS_MAX; ++i)
      *out << ' ' << testing::PrintToString(std::string(table[i], sizeof table[i]));
}

namespace camcfg::tests {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kBackup[] = "/cfg1/business_param.xml";

/// A section with two cards between other sections, laid out as the library saves it.
constexpr char kFactory[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- What the device is delivered with. -->
<System>
    <Rtsp Cur="554" Def="554" Min="1" Max="65535"/>
</System>

<NetWork Hostname="camera-7">
    <Lan>
        <Enable Cur="On" Def="Off" OptTxt="On|Off"/>
        <Intf Cur="Eth1" Def="Eth0"/>
        <Autoneg Cur="Off" Def="On"/>
        <Duplex Cur="Full" Def="Half"/>
        <Speed Cur="100M" Def="1000M"/>
        <MTU Cur="1492" Def="1500" Min="576" Max="9000"/>
        <IpMode Cur="StaticIp" Def="DhcpIp"/>
        <IpAddr Cur="192.168.1.20" Def="10.0.0.2"/>
        <NetMask Cur="255.255.255.0" Def="255.0.0.0"/>
        <GateWay Cur="192.168.1.1" Def="10.0.0.1"/>
        <DnsMode Cur="ManualMode" Def="AutoMode"/>
        <Dns1 Cur="192.168.1.53" Def="10.0.0.53"/>
        <Dns2 Cur="192.168.1.54" Def="10.0.0.54"/>
        <DnsSearch Cur="studio.example" Def="example"/>
        <DhcpDns1 Cur="192.168.9.1" Def="10.9.0.1"/>
        <DhcpDns2 Cur="192.168.9.2" Def="10.9.0.2"/>
    </Lan>
    <Wifi>
        <Enable Cur="Off" Def="Off"/>
        <Intf Cur="Wlan0" Def="Wlan0"/>
    </Wifi>
</NetWork>

<Video Cur="1"/>
)";

/// The current values of the card "Lan" in kFactory.
inline tagNETWORK_CFG_S factoryCurrent() {
  return {BU_TRUE,         "eth1",           IP_MODE_STATIC,   "192.168.1.20",
          "255.255.255.0", "192.168.1.1",    DNS_MODE_MANUAL,  "192.168.1.53",
          "192.168.1.54",  "studio.example", "192.168.9.1",    "192.168.9.2",
          BU_FALSE,        LINK_SPEED_100M,  LINK_DUPLEX_FULL, 1492};
}

/// The factory values of the card "Lan" in kFactory.
inline tagNETWORK_CFG_S factoryDefault() {
  return {BU_FALSE,      "eth0",           IP_MODE_DHCP,     "10.0.0.2", "255.0.0.0", "10.0.0.1",
          DNS_MODE_AUTO, "10.0.0.53",      "10.0.0.54",      "example",  "10.9.0.1",  "10.9.0.2",
          BU_TRUE,       LINK_SPEED_1000M, LINK_DUPLEX_HALF, 1500};
}

/// A record, or list, each byte of which is one that no call writes.
template <typename Record>
Record patterned() {
  Record record;
  std::memset(static_cast<void*>(&record), 0x5a, sizeof record);
  return record;
}

/// Sets a text field, the rest of it to zero.
template <std::size_t Size>
void setField(char (&field)[Size], const std::string& text) {
  std::memset(field, 0, Size);
  text.copy(field, Size - 1);
}

/// A section whose only card "Lan" has these elements.
inline std::string lan(const std::vector<std::string>& elements) {
  if (elements.empty()) return "<NetWork>\n    <Lan/>\n</NetWork>\n";
  std::string xml = "<NetWork>\n    <Lan>\n";
  for (const std::string& element : elements) xml += "        " + element + "\n";
  return xml + "    </Lan>\n</NetWork>\n";
}

/// A text with one part of it, which must be there, replaced.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// Names a parameterised test by its parameter's own name.
template <typename Case>
std::string nameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

class NetworkTest : private QuickSaves, public DeviceTest {
 protected:
  void store(const std::string& contents) {
    stored_ = contents;
    device.write(CFG_FILE_BUSINESS, contents);
  }

  /// Makes the record of the file's lock, so that its state can be seen whatever fails.
  static void makeLockRecord() {
    cfgLockFile(CFG_FILE_BUSINESS);
    cfgUnlockFile(CFG_FILE_BUSINESS);
  }

  /// Both copies hold this text, and the file is unlocked.
  void expectSaved(const std::string& contents) const {
    EXPECT_EQ(device.read(CFG_FILE_BUSINESS), contents);
    ASSERT_TRUE(device.exists(kBackup));
    EXPECT_EQ(device.read(kBackup), contents);
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
  }

  /// The file holds what was stored, no backup was made, and the file is unlocked.
  void expectNotSaved() const {
    EXPECT_EQ(device.read(CFG_FILE_BUSINESS), stored_);
    EXPECT_FALSE(device.exists(kBackup));
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
  }

 private:
  std::string stored_;
};

}  // namespace camcfg::tests

#endif
