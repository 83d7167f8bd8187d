#include "base/log.h"
#include "camcfg/network.h"
#include "network/parameters.h"
#include "network/section.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

// Deliberate: the record is zeroed even where cfgNetworkGetParam would leave it alone.
// [network-zeroed-first]
void zeroAndGet(const char* attribute, char* card, tagNETWORK_CFG_S* record) {
  if (record != nullptr) *record = {};
  cfgNetworkGetParam(const_cast<char*>(attribute), card, record);
}

}  // namespace

void cfgNetworkGetParam(char* pcAttr, char* pcCard, tagNETWORK_CFG_S* pstCfg) {
  if (pcAttr == nullptr || pcCard == nullptr || pstCfg == nullptr) {
    logError(here(), "pcCard is NULL\n");
    return;
  }
  *pstCfg = {};
  const ReadDocument document(CFG_FILE_BUSINESS);
  XMLElement* network = findNetwork(document.get(), __func__);
  const XMLElement* card = findNode(network, pcCard, __func__);
  if (card == nullptr) return;
  for (const XMLElement* element = card->FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    readParameter(*pstCfg, *element, pcAttr);
}

void CFG_NETWORK_GetAllParamCur(char* pcCard, tagNETWORK_CFG_S* pstCfg) {
  zeroAndGet("Cur", pcCard, pstCfg);
}

void CFG_NETWORK_GetAllParamDef(char* pcCard, tagNETWORK_CFG_S* pstCfg) {
  zeroAndGet("Def", pcCard, pstCfg);
}
