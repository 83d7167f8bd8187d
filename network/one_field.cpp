#include "camcfg/network.h"
#include "support/text.h"

namespace {

using Record = tagNETWORK_CFG_S;

template <typename Value>
void assign(Value& field, Value value) {
  field = value;
}

template <std::size_t Size>
void assign(char (&field)[Size], const char* text) {
  camcfg::copyText(field, text == nullptr ? "" : text);
}

template <typename Field, typename Value>
void setOneField(const char* parameter, char* card, Field Record::*field, Value value) {
  Record record{};
  assign(record.*field, value);
  cfgNetworkSetSingleParam(const_cast<char*>(parameter), card, record);
}

}  // namespace

void CFG_NETWORK_SetNetMode(char* pcCard, tagBU_BOOL enEnable) {
  setOneField("Enable", pcCard, &Record::enEnable, enEnable);
}

void CFG_NETWORK_SetLinkAutoneg(char* pcCard, tagBU_BOOL enAutoneg) {
  setOneField("Autoneg", pcCard, &Record::enAutoneg, enAutoneg);
}

void CFG_NETWORK_SetLinkDuplex(char* pcCard, tagDUPLEX_E enDuplex) {
  setOneField("Duplex", pcCard, &Record::enDuplex, enDuplex);
}

void CFG_NETWORK_SetLinkSpeed(char* pcCard, tagLINK_SPEED_E enSpeed) {
  setOneField("Speed", pcCard, &Record::enSpeed, enSpeed);
}

void CFG_NETWORK_SetLinkMTU(char* pcCard, int s32MTU) {
  setOneField("MTU", pcCard, &Record::s32MTU, s32MTU);
}

void CFG_NETWORK_SetIpMode(char* pcCard, tagIP_MODE_E enIpMode) {
  setOneField("IpMode", pcCard, &Record::enIpMode, enIpMode);
}

void CFG_NETWORK_SetIpAddr(char* pcCard, char* pcIpAddr) {
  setOneField("IpAddr", pcCard, &Record::acIpAddr, pcIpAddr);
}

void CFG_NETWORK_SetNetMask(char* pcCard, char* pcNetMask) {
  setOneField("NetMask", pcCard, &Record::acNetMask, pcNetMask);
}

void CFG_NETWORK_SetGateWay(char* pcCard, char* pcGateWay) {
  setOneField("GateWay", pcCard, &Record::acGateWay, pcGateWay);
}

void CFG_NETWORK_SetDnsMode(char* pcCard, tagDNS_MODE_E enDnsMode) {
  setOneField("DnsMode", pcCard, &Record::enDnsMode, enDnsMode);
}

void CFG_NETWORK_SetDns1(char* pcCard, char* pcDns1) {
  setOneField("Dns1", pcCard, &Record::acDns1, pcDns1);
}

void CFG_NETWORK_SetDns2(char* pcCard, char* pcDns2) {
  setOneField("Dns2", pcCard, &Record::acDns2, pcDns2);
}

void CFG_NETWORK_SetDnsSearch(char* pcCard, char* pcDnsSearch) {
  setOneField("DnsSearch", pcCard, &Record::acDnsSearch, pcDnsSearch);
}

void CFG_NETWORK_CacheDnsFromDhcp(char* pcCard, char* pcDns1, char* pcDns2) {
  Record record{};
  assign(record.acDhcpDns1, pcDns1);
  assign(record.acDhcpDns2, pcDns2);
  // Deliberate: two saves, the first complete before the second begins. A card without "DhcpDns2"
  // still gets the first server, and another writer may come between. [dhcp-dns-two-saves]
  for (const char* parameter : {"DhcpDns1", "DhcpDns2"})
    cfgNetworkSetSingleParam(const_cast<char*>(parameter), pcCard, record);
}
