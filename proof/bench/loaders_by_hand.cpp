#include "bench/loaders_by_hand.h"

#include <cstring>
#include <utility>

#include "camcfg/store.h"

namespace camcfg::bench {
namespace {

using Element = tinyxml2::XMLElement;

std::string text(const Element& element, const char* name) {
  const char* value = element.Attribute(name);
  return value == nullptr ? "" : value;
}

bool hasValue(const Element& element, const char* name, const char* value) {
  const char* found = element.Attribute(name);
  return found != nullptr && std::strcmp(found, value) == 0;
}

template <typename Visit>
void eachChild(const Element* parent, Visit visit) {
  for (const Element* child = parent->FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    visit(*child);
}

template <typename Visit>
void eachEntry(const char* section, Visit visit) {
  tinyxml2::XMLDocument document;
  document.LoadFile(CFG_FILE_MPP);
  eachChild(document.FirstChildElement()->FirstChildElement(section), visit);
}

}  // namespace

void loadByHand(std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>& sources) {
  sources.clear();
  eachEntry("StreamSource", [&](const Element& entry) {
    auto source = std::make_shared<tag_CFG_STREAM_SOURCE_VENC_T>();
    source->s32Id = entry.IntAttribute("Id");
    source->strName = text(entry, "Name");
    source->s32Enabled = entry.IntAttribute("Enabled", 1);
    source->s32ChnId = entry.IntAttribute("ChnId");
    sources.push_back(std::move(source));
  });
}

void loadByHand(std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>& caches) {
  constexpr int kKilobyte = 1024;
  caches.clear();
  eachEntry("StreamCache", [&](const Element& entry) {
    auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
    cache->s32Id = entry.IntAttribute("Id");
    cache->strName = text(entry, "Name");
    cache->s32BufSize = entry.IntAttribute("BufferSizeKB");
    cache->s32BufUnit = kKilobyte;
    eachChild(&entry, [&](const Element& allowed) {
      const int id = allowed.IntAttribute("Id");
      cache->s32AllowedMask |= 1 << id;
      if (allowed.IntAttribute("Default") != 0) cache->s32EnabledSrc = id;
    });
    caches.push_back(std::move(cache));
  });
}

void loadByHand(std::list<tag_CFG_WEBSOCKET_SESSION_T>& sessions) {
  sessions.clear();
  eachEntry("WEBSOCKET", [&](const Element& entry) {
    sessions.emplace_back();
    sessions.back().s32Id = entry.IntAttribute("Id");
    sessions.back().strName = text(entry, "Name");
  });
}

void loadByHand(std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>>& sessions) {
  sessions.clear();
  eachEntry("RTSP", [&](const Element& entry) {
    auto session = std::make_shared<tag_CFG_RTSP_SESSION_T>();
    session->strName = text(entry, "Name");
    eachChild(&entry, [&](const Element& channel) {
      session->lstSubSession.emplace_back();
      session->lstSubSession.back().s32Id = channel.IntAttribute("Id");
      session->lstSubSession.back().strName = text(channel, "Name");
    });
    sessions.push_back(std::move(session));
  });
}

void loadByHand(std::list<tag_CFG_RTMP_SESSION_T>& sessions) {
  sessions.clear();
  eachEntry("RTMP", [&](const Element& entry) {
    tag_CFG_RTMP_SESSION_T& session = sessions.emplace_back();
    session.s32Id = entry.IntAttribute("Id");
    session.bEnable = hasValue(entry, "Enable", "true") ? 1 : 0;
    session.strUrl = text(entry, "url");
    session.strUsername = text(entry, "username");
    session.strPassword = text(entry, "password");
    eachChild(&entry, [&](const Element& channel) {
      const int id = channel.IntAttribute("Id");
      if (hasValue(channel, "Type", "Video"))
        session.s32VideoId = id;
      else if (hasValue(channel, "Type", "Audio"))
        session.s32AudioId = id;
    });
  });
}

void loadByHand(std::list<tag_CFG_NDI_SESSION_T>& sessions) {
  sessions.clear();
  eachEntry("NDI", [&](const Element& entry) {
    tag_CFG_NDI_SESSION_T& session = sessions.emplace_back();
    session.s32Id = entry.IntAttribute("Id");
    session.bEnable = hasValue(entry, "Enable", "true") ? 1 : 0;
    session.bDiscoveryServerEnable = hasValue(entry, "DiscoveryServerEnable", "true") ? 1 : 0;
    session.strDiscoveryServer = text(entry, "DiscoveryServer");
    session.strGroupName = text(entry, "GroupName");
    session.strMainStreamName = text(entry, "MainStreamName");
    session.bMulticastEnable = hasValue(entry, "MulticastEnable", "true") ? 1 : 0;
    session.strMulticastIp = text(entry, "MulticastIp");
    session.strMulticastNetmask = text(entry, "MulticastNetmask");
    session.s32MulticastTTL = entry.IntAttribute("MulticastTTL");
    eachChild(&entry, [&](const Element& channel) {
      const int id = channel.IntAttribute("Id");
      if (hasValue(channel, "Type", "MainVideo"))
        session.s32MainVideoId = id;
      else if (hasValue(channel, "Type", "SubVideo"))
        session.s32SubVideoId = id;
      else if (hasValue(channel, "Type", "Audio"))
        session.s32AudioId = id;
    });
  });
}

void loadByHand(std::list<tag_CFG_SRT_INSTANCE_T>& instances) {
  instances.clear();
  eachEntry("SRT", [&](const Element& entry) {
    tag_CFG_SRT_INSTANCE_T& instance = instances.emplace_back();
    instance.s32Id = entry.IntAttribute("Id");
    instance.s32Mode = hasValue(entry, "Mode", "Listener") ? 1 : 0;
    instance.strHostname = text(entry, "Hostname");
    instance.s32Port = entry.IntAttribute("Port");
    instance.s32AesMode = entry.IntAttribute("AesMode");
    instance.strPassword = text(entry, "Password");
    instance.s32Latency = entry.IntAttribute("Latency");
    eachChild(&entry, [&](const Element& child) {
      tag_CFG_SRT_STREAM_T& stream = instance.lstStream.emplace_back();
      stream.strId = text(child, "Id");
      stream.s32Default = child.IntAttribute("Default");
      eachChild(&child, [&](const Element& channel) {
        stream.lstChannel.push_back(channel.IntAttribute("Id"));
      });
    });
  });
}

}  // namespace camcfg::bench
