#ifndef CAMCFG_MEDIA_LIVE_DOCUMENT_H
#define CAMCFG_MEDIA_LIVE_DOCUMENT_H

#include "camcfg/livemedia.h"
#include "media/media_document.h"

namespace camcfg {

inline constexpr MediaDocument kLiveMedia(g_LM_xmlDoc, "LiveMediaService", "LiveMedia", CFG_LM_ERR);

}  // namespace camcfg

#endif
