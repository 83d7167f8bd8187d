#include "camcfg/network.h"
#include "network/parameters.h"

namespace {

using Record = tagNETWORK_CFG_S;

void setText(Record& record, const char* parameter, const char* text) {
  camcfg::setParameter(record, parameter, text == nullptr ? "" : text);
}

void setOneField(const char* parameter, char* card, const Record& record) {
  cfgNetworkSetSingleParam(const_cast<char*>(parameter), card, record);
}

void setOneField(const char* parameter, char* card, std::int32_t value) {
  Record record{};
  camcfg::setParameter(record, parameter, value);
  setOneField(parameter, card, record);
}

void setOneField(const char* parameter, char* card, const char* text) {
  Record record{};
  setText(record, parameter, text);
  setOneField(parameter, card, record);
}

}  // namespace

void CFG_NETWORK_SetNetMode(char* pcCard, tagBU_BOOL enEnable) {
  setOneField("Enable", pcCard, enEnable);
}

void CFG_NETWORK_SetLinkAutoneg(char* pcCard, tagBU_BOOL enAutoneg) {
  setOneField("Autoneg", pcCard, enAutoneg);
}

void CFG_NETWORK_SetLinkDuplex(char* pcCard, tagDUPLEX_E enDuplex) {
  setOneField("Duplex", pcCard, enDuplex);
}

void CFG_NETWORK_SetLinkSpeed(char* pcCard, tagLINK_SPEED_E enSpeed) {
  setOneField("Speed", pcCard, enSpeed);
}

void CFG_NETWORK_SetLinkMTU(char* pcCard, int s32MTU) {
  setOneField("MTU", pcCard, s32MTU);
}

void CFG_NETWORK_SetIpMode(char* pcCard, tagIP_MODE_E enIpMode) {
  setOneField("IpMode", pcCard, enIpMode);
}

void CFG_NETWORK_SetIpAddr(char* pcCard, char* pcIpAddr) {
  setOneField("IpAddr", pcCard, pcIpAddr);
}

void CFG_NETWORK_SetNetMask(char* pcCard, char* pcNetMask) {
  setOneField("NetMask", pcCard, pcNetMask);
}

void CFG_NETWORK_SetGateWay(char* pcCard, char* pcGateWay) {
  setOneField("GateWay", pcCard, pcGateWay);
}

void CFG_NETWORK_SetDnsMode(char* pcCard, tagDNS_MODE_E enDnsMode) {
  setOneField("DnsMode", pcCard, enDnsMode);
}

void CFG_NETWORK_SetDns1(char* pcCard, char* pcDns1) {
  setOneField("Dns1", pcCard, pcDns1);
}

void CFG_NETWORK_SetDns2(char* pcCard, char* pcDns2) {
  setOneField("Dns2", pcCard, pcDns2);
}

void CFG_NETWORK_SetDnsSearch(char* pcCard, char* pcDnsSearch) {
  setOneField("DnsSearch", pcCard, pcDnsSearch);
}

void CFG_NETWORK_CacheDnsFromDhcp(char* pcCard, char* pcDns1, char* pcDns2) {
  Record record{};
  setText(record, "DhcpDns1", pcDns1);
  setText(record, "DhcpDns2", pcDns2);
  // Deliberate: two saves, the first complete before the second begins. A card without "DhcpDns2"
  // still gets the first server, and another writer may come between. [dhcp-dns-two-saves]
  setOneField("DhcpDns1", pcCard, record);
  setOneField("DhcpDns2", pcCard, record);
}
