#ifndef CAMCFG_TOOL_MEDIA_STREAM_CHANGE_H
#define CAMCFG_TOOL_MEDIA_STREAM_CHANGE_H

#include <string>
#include <vector>

#include "base/outcome.h"

namespace camcfg::tool::media {

// Changes of one stream cache, each with its ids as they were written. They return what was changed
// and throw a Refusal: the files are unusable or cannot be written, there is no such cache, the
// library would change another one, or the source is not permitted. No lock is left held.

/// Marks an allowed source with "Enable" and no other one, in place.
Outcome selectSource(const std::string& cacheId, const std::string& sourceId);

/// Marks an allowed source with "Default" and no other one. The library saves all caches whole for
/// this; what is lost by it is listed in the answer's notes.
/// @param rehearse  report what would be changed and lost, and change nothing
Outcome makeDefaultSource(const std::string& cacheId, const std::string& sourceId, bool rehearse);

/// Replaces the sources that a cache allows. The one that was marked "Enable", or else the one that
/// the loader took, is marked "Enable" if it is still allowed; no one is marked "Default" any more.
Outcome allowSources(const std::string& cacheId, const std::vector<std::string>& sourceIds);

}  // namespace camcfg::tool::media

#endif
