#include "media/live_document.h"

using camcfg::kLiveMedia;

tinyxml2::XMLDocument* g_LM_xmlDoc = nullptr;

tinyxml2::XMLElement* CFG_LM_Open(const char* pcSection, tagBU_BOOL enReadOnly) {
  return kLiveMedia.open(pcSection, enReadOnly);
}

int CFG_LM_CloseRead() {
  kLiveMedia.closeRead();
  return 0;
}

int CFG_LM_CloseWrite() {
  static_cast<void>(kLiveMedia.closeWrite());
  return 0;
}
