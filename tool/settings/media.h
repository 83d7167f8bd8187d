#ifndef CAMCFG_TOOL_SETTINGS_MEDIA_H
#define CAMCFG_TOOL_SETTINGS_MEDIA_H

#include <vector>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// Source ids that fit a cache's whitelist.
constexpr Range kSourceIds{0, 29};

/// A unit that the size of a stream cache is given in.
struct SizeUnit {
  const char* attribute;
  const char* name;
  int bytes;
};

/// The smallest first.
constexpr SizeUnit kCacheSizeUnits[] = {
    {"BufferSizeB", "B", 1}, {"BufferSizeKB", "KB", 1 << 10}, {"BufferSizeMB", "MB", 1 << 20}};

// The sections of "/cfg0/mpp_cfg.xml", as the library loads them.
const Table& streamSources();
const Table& streamCaches();
const Table& websocket();
const Table& rtsp();
const Table& rtmp();
const Table& ndi();
const Table& srt();

/// Those of the live media services.
const std::vector<const Table*>& liveTables();

/// All of them, in the order of a document.
const std::vector<const Table*>& mediaTables();

}  // namespace camcfg::tool::settings

#endif
