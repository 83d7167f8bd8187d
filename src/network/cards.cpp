#include <cstddef>
#include <cstring>

#include "base/log.h"
#include "base/text.h"
#include "camcfg/network.h"
#include "network/section.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

static_assert(offsetof(tagNETWORK_CARDS_S, acCard) == 0);
static_assert(offsetof(tagNETWORK_CARDS_S, acIntf) == 48);
static_assert(offsetof(tagNETWORK_CARDS_S, s32Count) == 96);
static_assert(sizeof(tagNETWORK_CARDS_S) == 100);

namespace {

const char* interfaceOf(const XMLElement& element) {
  return CFG_NETWORK_IntfXmlStr2EthName(textOrEmpty(element, "Cur"));
}

void append(tagNETWORK_CARDS_S& cards, const XMLElement& card) {
  copyText(cards.acCard[cards.s32Count], card.Value());
  const XMLElement* element = card.FirstChildElement("Intf");
  if (element != nullptr) copyText(cards.acIntf[cards.s32Count], interfaceOf(*element));
  ++cards.s32Count;
}

// Deliberate: the element is found by the beginning of its name, unlike everywhere else where an
// interface is read. [intf-by-beginning]
const XMLElement* findInterface(XMLElement* card, const char* cardName, const char* function) {
  if (card == nullptr) return nullptr;
  const XMLElement* element = CFG_GetElementByName(card, "Intf");
  if (element == nullptr)
    logError(here(function), "Network %s intf node doesn't exist\n", cardName);
  return element;
}

}  // namespace

int CFG_NETWORK_GetCards(tagNETWORK_CARDS_S* pstCards) {
  if (pstCards == nullptr) {
    logError(here(), "pcCard is NULL\n");
    return -1;
  }
  *pstCards = {};
  const ReadDocument document(CFG_FILE_BUSINESS);
  const XMLElement* network = findListedNetwork(document.get(), __func__);
  if (network == nullptr) return -1;
  for (const XMLElement* card = network->FirstChildElement();
       card != nullptr && pstCards->s32Count < CFG_NETWORK_CARDS_MAX;
       card = card->NextSiblingElement())
    append(*pstCards, *card);
  return 0;
}

int CFG_NETWORK_GetCardIntf(char* pcCard, tagNETWORK_CFG_S* pstCfg) {
  if (pcCard == nullptr || pstCfg == nullptr) {
    logError(here(), "pcCard is NULL\n");
    return -1;
  }
  std::memset(pstCfg->acIntf, 0, sizeof pstCfg->acIntf);
  const ReadDocument document(CFG_FILE_BUSINESS);
  XMLElement* network = findListedNetwork(document.get(), __func__);
  XMLElement* card = findNode(network, pcCard, __func__);
  const XMLElement* element = findInterface(card, pcCard, __func__);
  if (element == nullptr) return -1;

  const char* interface = interfaceOf(*element);
  if (interface[0] == '\0') return -1;
  // Deliberate: the file is read again, and a failure of that shows only in the log.
  // [card-read-twice]
  char current[] = "Cur";
  cfgNetworkGetParam(current, pcCard, pstCfg);
  return 0;
}
