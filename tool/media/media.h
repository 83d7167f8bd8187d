#ifndef CAMCFG_TOOL_MEDIA_MEDIA_H
#define CAMCFG_TOOL_MEDIA_MEDIA_H

#include <camcfg/livemedia.h>
#include <camcfg/stream.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "device/copy.h"

namespace camcfg::tool::media {

using StreamSource = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;
using StreamCache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;
using RtspSession = std::shared_ptr<tag_CFG_RTSP_SESSION_T>;

/// A section of "/cfg0/mpp_cfg.xml" that the library loads as a list of records.
struct MediaSection {
  const char* top;                   ///< element at the top of the file
  const char* name;                  ///< element of the section
  std::vector<const char*> entries;  ///< elements that become records, in upper or lower case
  int (*closeRead)();                ///< drops the document that a failed load leaves open
};

extern const MediaSection kStreamSources;
extern const MediaSection kStreamCaches;
extern const MediaSection kWebsocketSessions;
extern const MediaSection kRtspSessions;
extern const MediaSection kRtmpTargets;
extern const MediaSection kNdiInstances;
extern const MediaSection kSrtInstances;

/// A section in a document of the file.
/// @throws Refusal if it is not there
tinyxml2::XMLElement* requireSection(tinyxml2::XMLDocument& document, const MediaSection& section);

/// The elements of a section that become records, in document order.
std::vector<tinyxml2::XMLElement*> entriesOf(tinyxml2::XMLElement* element,
                                             const MediaSection& section);

/// "/cfg0/mpp_cfg.xml:LINE"
std::string mediaPlace(const tinyxml2::XMLNode* node);

// Each of these loads a section through the library and leaves no document open, whatever becomes of
// it. They throw a Refusal with the status of unusable files; over a faulty entry it names the line
// and what the library says of it.
std::list<StreamSource> loadStreamSources();
std::list<StreamCache> loadStreamCaches();
std::list<tag_CFG_WEBSOCKET_SESSION_T> loadWebsocketSessions();
std::list<RtspSession> loadRtspSessions();
std::list<tag_CFG_RTMP_SESSION_T> loadRtmpTargets();
std::list<tag_CFG_NDI_SESSION_T> loadNdiInstances();
std::list<tag_CFG_SRT_INSTANCE_T> loadSrtInstances();

}  // namespace camcfg::tool::media

#endif
