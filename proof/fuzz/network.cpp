#include <camcfg/network.h>

#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

void requireTerminated(const tagNETWORK_CFG_S& settings) {
  require(isTerminated(settings.acIntf) && isTerminated(settings.acIpAddr) &&
              isTerminated(settings.acNetMask) && isTerminated(settings.acGateWay) &&
              isTerminated(settings.acDns1) && isTerminated(settings.acDns2) &&
              isTerminated(settings.acDnsSearch) && isTerminated(settings.acDhcpDns1) &&
              isTerminated(settings.acDhcpDns2),
          "the fields of a card's settings have their terminators");
}

void readCard(char* card, char* attribute) {
  const auto settings = std::make_unique<tagNETWORK_CFG_S>();
  CFG_NETWORK_GetAllParamDef(card, settings.get());
  requireTerminated(*settings);
  cfgNetworkGetParam(attribute, card, settings.get());
  requireTerminated(*settings);
  CFG_NETWORK_GetCardIntf(card, settings.get());
  requireTerminated(*settings);
  CFG_NETWORK_GetAllParamCur(card, settings.get());
  requireTerminated(*settings);
  // What was read can be written.
  CFG_NETWORK_SetAllParam(card, *settings);
}

void listCards() {
  tagNETWORK_CARDS_S cards{};
  CFG_NETWORK_GetCards(&cards);
  require(cards.s32Count >= 0 && cards.s32Count <= CFG_NETWORK_CARDS_MAX, "the list has room");
  for (int i = 0; i < cards.s32Count; ++i) {
    require(isTerminated(cards.acCard[i]) && isTerminated(cards.acIntf[i]),
            "the names of cards have their terminators");
    require(CFG_NETWORK_IntfEthName2XmlStr(cards.acIntf[i]) != nullptr, "a name is translated");
  }
}

void setFields(char* card, char* text, int number) {
  CFG_NETWORK_SetNetMode(card, tagBU_BOOL(number));
  CFG_NETWORK_SetLinkAutoneg(card, tagBU_BOOL(number));
  CFG_NETWORK_SetLinkDuplex(card, tagDUPLEX_E(number));
  CFG_NETWORK_SetLinkSpeed(card, tagLINK_SPEED_E(number));
  CFG_NETWORK_SetLinkMTU(card, number);
  CFG_NETWORK_SetIpMode(card, tagIP_MODE_E(number));
  CFG_NETWORK_SetDnsMode(card, tagDNS_MODE_E(number));
  for (const auto set : {CFG_NETWORK_SetIpAddr, CFG_NETWORK_SetNetMask, CFG_NETWORK_SetGateWay,
                         CFG_NETWORK_SetDns1, CFG_NETWORK_SetDns2, CFG_NETWORK_SetDnsSearch})
    set(card, text);
  CFG_NETWORK_CacheDnsFromDhcp(card, text, text);
}

// The buffer is touched only where there is a section of the network.
void setHostname(std::string name) {
  std::vector<char> read(name.size() + 1, '\x7f');
  CFG_NETWORK_SetHostname(name.data());
  CFG_NETWORK_GetHostname(read.data(), static_cast<int>(read.size()));
  const bool untouched = read.back() == '\x7f';
  require(untouched || read.data() == asReadBack(name), "the host name is read as it was set");
}

}  // namespace

// A card, a text, a number, a parameter, an attribute; the parameter file.
void network(const Input& input) {
  writeFile(CFG_FILE_BUSINESS, input.part(1));
  std::string card = input.line(0);
  std::string text = input.line(1);
  std::string parameter = input.line(3);
  std::string attribute = input.line(4);
  listCards();
  setFields(card.data(), text.data(), input.number(2));
  tagNETWORK_CFG_S settings{};
  settings.s32MTU = input.number(2);
  // Not terminated if it fills the field.
  std::memcpy(settings.acIpAddr, text.data(), std::min(text.size(), sizeof settings.acIpAddr));
  cfgNetworkSetSingleParam(parameter.data(), card.data(), settings);
  readCard(card.data(), attribute.data());
  setHostname(text);
  CFG_NETWORK_IntfXmlStr2EthName(text.c_str());
}

}  // namespace camcfg::fuzz
