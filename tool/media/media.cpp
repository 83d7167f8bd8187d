#include "media/media.h"

#include <strings.h>

#include <algorithm>

#include "base/library_log.h"
#include "base/refusal.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLElement;

constexpr char kStream[] = "Stream";
constexpr char kLiveMedia[] = "LiveMediaService";

// The loader has kept the records in front of the faulty entry.
std::string placeOfEntry(XMLElement* element, const MediaSection& section, std::size_t index) {
  const std::vector<XMLElement*> entries = entriesOf(element, section);
  return mediaPlace(index < entries.size() ? entries[index] : element);
}

template <typename Record>
std::list<Record> load(const MediaSection& section, int (*loader)(std::list<Record>&)) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  XMLElement* element = requireSection(*document, section);
  std::list<Record> records;
  forgetComplaint();
  if (heard([&] { return loader(records); }) == 0) return records;
  section.closeRead();
  const std::string complaint = lastComplaint();
  throw Refusal(Status::Unusable, placeOfEntry(element, section, records.size()) + ": " +
                                      (complaint.empty() ? "out of memory" : complaint));
}

}  // namespace

const MediaSection kStreamSources{
    kStream, "StreamSource", {"VENC", "AI", "AENC"}, CFG_MPP_CloseRead};
const MediaSection kStreamCaches{kStream, "StreamCache", {"Cache"}, CFG_MPP_CloseRead};
const MediaSection kWebsocketSessions{kLiveMedia, "WEBSOCKET", {"Channel"}, CFG_LM_CloseRead};
const MediaSection kRtspSessions{kLiveMedia, "RTSP", {"MediaGroup"}, CFG_LM_CloseRead};
const MediaSection kRtmpTargets{kLiveMedia, "RTMP", {"Target"}, CFG_LM_CloseRead};
const MediaSection kNdiInstances{kLiveMedia, "NDI", {"Instance"}, CFG_LM_CloseRead};
const MediaSection kSrtInstances{kLiveMedia, "SRT", {"Instance"}, CFG_LM_CloseRead};

XMLElement* requireSection(tinyxml2::XMLDocument& document, const MediaSection& section) {
  XMLElement* top = document.FirstChildElement(section.top);
  XMLElement* element = top == nullptr ? nullptr : top->FirstChildElement(section.name);
  if (element != nullptr) return element;
  const std::string path = std::string("<") + section.top + ">";
  throw Refusal(Status::Unusable,
                std::string(CFG_FILE_MPP) + " has no " + path +
                    (top == nullptr ? "" : "<" + std::string(section.name) + ">"));
}

std::vector<XMLElement*> entriesOf(XMLElement* element, const MediaSection& section) {
  std::vector<XMLElement*> entries;
  for (XMLElement* child = element->FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    if (std::any_of(section.entries.begin(), section.entries.end(),
                    [&](const char* name) { return strcasecmp(child->Name(), name) == 0; }))
      entries.push_back(child);
  return entries;
}

std::string mediaPlace(const tinyxml2::XMLNode* node) {
  return std::string(CFG_FILE_MPP) + ":" + std::to_string(node->GetLineNum());
}

std::list<StreamSource> loadStreamSources() {
  return load(kStreamSources, CFG_MPP_LoadStreamSourceConfig);
}

std::list<StreamCache> loadStreamCaches() {
  return load(kStreamCaches, CFG_MPP_LoadStreamCacheConfig);
}

std::list<tag_CFG_WEBSOCKET_SESSION_T> loadWebsocketSessions() {
  return load(kWebsocketSessions, CFG_LM_LoadWebsocketConfig);
}

std::list<RtspSession> loadRtspSessions() {
  return load(kRtspSessions, CFG_LM_LoadRtspConfig);
}

std::list<tag_CFG_RTMP_SESSION_T> loadRtmpTargets() {
  return load(kRtmpTargets, CFG_LM_LoadRtmpConfig);
}

std::list<tag_CFG_NDI_SESSION_T> loadNdiInstances() {
  return load(kNdiInstances, CFG_LM_LoadNdiConfig);
}

std::list<tag_CFG_SRT_INSTANCE_T> loadSrtInstances() {
  return load(kSrtInstances, CFG_LM_LoadSrtConfig);
}

}  // namespace camcfg::tool::media
