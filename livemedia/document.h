#ifndef CAMCFG_LIVEMEDIA_DOCUMENT_H
#define CAMCFG_LIVEMEDIA_DOCUMENT_H

#include "camcfg/livemedia.h"
#include "support/media_document.h"

namespace camcfg {

inline constexpr MediaDocument kLiveMedia(g_LM_xmlDoc, "LiveMediaService", "LiveMedia", CFG_LM_ERR);

}  // namespace camcfg

#endif
