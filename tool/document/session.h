#ifndef CAMCFG_TOOL_DOCUMENT_SESSION_H
#define CAMCFG_TOOL_DOCUMENT_SESSION_H

#include <string>

#include "device/explanation.h"

namespace camcfg::tool::document {

/// What is known of a stream source or cache, or of a session of a live media service.
/// @param kind  "source", "cache", "websocket", "rtsp", "rtmp", "ndi" or "srt"
/// @param id    its id; an RTSP session's name
/// @throws Refusal  an unknown kind; no copy has such a session
device::Explanation explainSession(const std::string& kind, const std::string& id,
                                   bool showSecrets);

}  // namespace camcfg::tool::document

#endif
