#include <cstring>

#include "camcfg/network.h"

namespace {

struct InterfaceName {
  char inFile[6];
  char inSystem[6];
};
using Form = const char (InterfaceName::*)[6];

constexpr InterfaceName kNames[] = {{"Eth0", "eth0"}, {"Eth1", "eth1"}, {"Wlan0", "wlan0"}};

const char* translate(const char* name, Form from, Form to) {
  if (name == nullptr) return "";
  for (const InterfaceName& entry : kNames)
    if (std::strcmp(entry.*from, name) == 0) return entry.*to;
  return "";
}

}  // namespace

const char* CFG_NETWORK_IntfXmlStr2EthName(const char* pcName) {
  return translate(pcName, &InterfaceName::inFile, &InterfaceName::inSystem);
}

const char* CFG_NETWORK_IntfEthName2XmlStr(const char* pcName) {
  return translate(pcName, &InterfaceName::inSystem, &InterfaceName::inFile);
}
