#include <cstring>

#include "base/text.h"
#include "base/xml_edit.h"
#include "camcfg/network.h"
#include "network/section.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

void CFG_NETWORK_GetHostname(char* pcBuf, int s32Len) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  const XMLElement* network = findNetwork(document.get(), __func__);
  if (network == nullptr || pcBuf == nullptr || s32Len <= 0) return;
  // Deliberate: a name of s32Len or more characters fills the buffer and leaves it without a
  // terminator. Callers hand in one byte more than the longest name they accept.
  // [hostname-unterminated]
  const auto size = static_cast<std::size_t>(s32Len);
  std::memset(pcBuf, 0, size);
  copyCharacters(pcBuf, size, textOrEmpty(*network, "Hostname"));
}

void CFG_NETWORK_SetHostname(char* pcName) {
  if (pcName == nullptr) return;
  WriteDocument document(CFG_FILE_BUSINESS);
  XMLElement* network = findNetwork(document.get(), __func__);
  if (network == nullptr) return;
  const bool changed = setAttribute(*network, "Hostname", pcName);
  saveOrReport(document, changed, __func__);
}
