#ifndef CAMCFG_BENCH_LOADERS_BY_HAND_H
#define CAMCFG_BENCH_LOADERS_BY_HAND_H

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"

namespace camcfg::bench {

/// What an application's developer writes with tinyxml2 to load a section: each attribute is looked
/// up by its name, each record is a new one. Nothing is checked, printed or locked.
void loadByHand(std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>& sources);
void loadByHand(std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>& caches);
void loadByHand(std::list<tag_CFG_WEBSOCKET_SESSION_T>& sessions);
void loadByHand(std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>>& sessions);
void loadByHand(std::list<tag_CFG_RTMP_SESSION_T>& sessions);
void loadByHand(std::list<tag_CFG_NDI_SESSION_T>& sessions);
void loadByHand(std::list<tag_CFG_SRT_INSTANCE_T>& instances);

}  // namespace camcfg::bench

#endif
