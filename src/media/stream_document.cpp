#include "media/stream_document.h"

using camcfg::kStream;

tinyxml2::XMLDocument* g_STREAM_xmlDoc = nullptr;

tinyxml2::XMLElement* CFG_MPP_Open(const char* pcSection, tagBU_BOOL enReadOnly) {
  return kStream.open(pcSection, enReadOnly);
}

int CFG_MPP_CloseRead() {
  kStream.closeRead();
  return 0;
}

int CFG_MPP_CloseWrite() {
  static_cast<void>(kStream.closeWrite());
  return 0;
}
