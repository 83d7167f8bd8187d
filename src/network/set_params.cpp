#include "base/log.h"
#include "camcfg/network.h"
#include "network/parameters.h"
#include "network/section.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

void cfgNetworkSetAllParam(char* pcCard, tagNETWORK_CFG_S stCfg) {
  if (pcCard == nullptr) {
    logError(here(), "pcCard is NULL\n");
    return;
  }
  WriteDocument document(CFG_FILE_BUSINESS);
  XMLElement* network = findNetwork(document.get(), __func__);
  XMLElement* card = findNode(network, pcCard, __func__);
  if (card == nullptr) return;
  bool changed = true;
  for (XMLElement* element = card->FirstChildElement(); changed && element != nullptr;
       element = element->NextSiblingElement())
    changed = writeParameter(*element, stCfg);
  // Deliberate: saved even if no element was written. [network-saved-unchanged]
  saveOrReport(document, changed, __func__);
}

void cfgNetworkSetSingleParam(char* pcParam, char* pcCard, tagNETWORK_CFG_S stCfg) {
  if (pcParam == nullptr || pcCard == nullptr) {
    logError(here(), "pcCard is NULL\n");
    return;
  }
  WriteDocument document(CFG_FILE_BUSINESS);
  XMLElement* network = findNetwork(document.get(), __func__);
  XMLElement* card = findNode(network, pcCard, __func__);
  XMLElement* element = findNode(card, pcParam, __func__);
  if (element == nullptr) return;
  // Deliberate: the name found decides what is written, not the name asked for. The file
  // is saved even if that is nothing. [network-found-name]
  saveOrReport(document, writeParameter(*element, stCfg), __func__);
}

void CFG_NETWORK_SetAllParam(char* pcCard, tagNETWORK_CFG_S stCfg) {
  cfgNetworkSetAllParam(pcCard, stCfg);
}
