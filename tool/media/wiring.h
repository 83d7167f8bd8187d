#ifndef CAMCFG_TOOL_MEDIA_WIRING_H
#define CAMCFG_TOOL_MEDIA_WIRING_H

#include <string>
#include <vector>

#include "media/stream_cache.h"

namespace camcfg::tool::media {

/// A channel of a session: a stream cache, by its id, in a role.
struct WiredChannel {
  int cacheId;
  std::string role;  ///< "video"
};

/// What a live media service sends under one name.
struct WiredSession {
  std::string service;  ///< "RTSP"
  std::string name;
  bool enabled = true;
  std::vector<WiredChannel> channels;
};

/// The media wiring as configured: sources, the caches that may carry them, and the services that
/// send what the caches carry.
struct Wiring {
  std::vector<StreamSource> sources;
  std::vector<CacheEntry> caches;
  std::vector<WiredSession> sessions;  ///< those of one service side by side

  const tag_CFG_STREAM_SOURCE_T* source(int id) const;
  bool hasCache(int id) const;
};

/// @throws Refusal if any of the sections is unusable
Wiring readWiring();

/// What does not fit together, a line each: a cache that carries a source that there is none of or
/// that is disabled, marks that differ, a session's channel that is no cache.
std::vector<std::string> findingsIn(const Wiring& wiring);

/// The wiring as an answer shows it.
Json jsonOf(const Wiring& wiring);

}  // namespace camcfg::tool::media

#endif
