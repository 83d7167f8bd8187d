#ifndef CAMCFG_MEDIA_WHITELIST_H
#define CAMCFG_MEDIA_WHITELIST_H

#include "camcfg/stream.h"
#include "media/entry_writer.h"

namespace camcfg {

/// Name of a cache's element for a source that it may carry.
inline constexpr char kAllowedSource[] = "AllowedStreamSource";

/// Reads the sources that a cache may carry, and which one it carries, into its record. `cache`
/// already has its number.
/// @return false when there is none or a number is -1; reported
bool readWhitelist(const tinyxml2::XMLElement& element, tag_CFG_STREAM_CACHE_T& cache);

/// Writes an entry for each source that a cache may carry; the one that it carries is given the
/// attribute `mark` = 1.
void writeWhitelist(EntryWriter& parent, const tag_CFG_STREAM_CACHE_T& cache, const char* mark);

}  // namespace camcfg

#endif
