#ifndef CAMCFG_TOOL_MEDIA_CACHE_LOSSES_H
#define CAMCFG_TOOL_MEDIA_CACHE_LOSSES_H

#include <string>
#include <vector>

#include "media/stream_cache.h"

namespace camcfg::tool::media {

/// Makes sure that the library, when it saves all caches whole, writes what it loaded: a source id
/// that does not fit the whitelist would come back as another one.
/// @throws Refusal
void requireDumpable(const std::vector<CacheEntry>& caches);

/// What becomes different by saving all caches whole, a remark each.
/// @param caches   as they are in the file
/// @param changed  the cache whose "Default" is changed on purpose
std::vector<std::string> dumpNotes(const std::vector<CacheEntry>& caches, int changed);

}  // namespace camcfg::tool::media

#endif
