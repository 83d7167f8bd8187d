#ifndef CAMCFG_MEDIA_STREAM_DOCUMENT_H
#define CAMCFG_MEDIA_STREAM_DOCUMENT_H

#include "camcfg/stream.h"
#include "media/media_document.h"

namespace camcfg {

inline constexpr MediaDocument kStream(g_STREAM_xmlDoc, "Stream", "MppStream", CFG_MPP_ERR);

/// Ends a load because of a fault that was reported.
/// @return always false
inline bool reject() {
  kStream.closeRead();
  return false;
}

}  // namespace camcfg

#endif
