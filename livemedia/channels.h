#ifndef CAMCFG_LIVEMEDIA_CHANNELS_H
#define CAMCFG_LIVEMEDIA_CHANNELS_H

#include <cstddef>
#include <string>

#include "livemedia/document.h"
#include "support/media_entries.h"

namespace camcfg {

/// Name of a channel's element in every section.
inline constexpr char kChannel[] = "Channel";

/// Reads a channel of "Id" and "Name", or reports what is missing at `path`.
template <typename NamedChannel>
bool readNamedChannel(const tinyxml2::XMLElement& element, const char* path,
                      NamedChannel& channel) {
  return kLiveMedia.requireInt(element, "Id", path, &channel.s32Id) &&
         kLiveMedia.requireText(element, "Name", path, &channel.strName);
}

template <typename NamedChannel>
void writeNamedChannel(tinyxml2::XMLElement& parent, const NamedChannel& channel) {
  tinyxml2::XMLElement& element = append(parent, kChannel);
  element.SetAttribute("Id", channel.s32Id);
  setText(element, "Name", channel.strName);
}

/// A channel of "Id" and "Type".
struct TypedChannel {
  std::int32_t id;
  std::string type;
};

inline bool readTypedChannel(const tinyxml2::XMLElement& element, const char* path,
                             TypedChannel& channel) {
  return kLiveMedia.requireInt(element, "Id", path, &channel.id) &&
         kLiveMedia.requireText(element, "Type", path, &channel.type);
}

/// The place in a session for the channel of one type; -1 while there is none.
template <typename Session>
struct ChannelSlot {
  const char* type;
  std::int32_t Session::*id;
};

/// The slot for a type, in upper or lower case; null when there is none.
template <typename Session, std::size_t Count>
const ChannelSlot<Session>* findSlot(const ChannelSlot<Session> (&slots)[Count],
                                     const std::string& type) {
  for (const ChannelSlot<Session>& slot : slots)
    if (isWord(type.c_str(), slot.type)) return &slot;
  return nullptr;
}

/// Fills a session's slot. The first channel stays; a later one is reported under the name `type`.
template <typename Session>
void fillSlot(Session& session, const ChannelSlot<Session>& slot, std::int32_t id, const char* type,
              const char* service) {
  std::int32_t& kept = session.*slot.id;
  if (kept == -1)
    kept = id;
  else
    kLiveMedia.print(kWarning, "%s has been set for %s[%d] as %d, ignore %d\n", type, service,
                     session.s32Id, kept, id);
}

/// Appends a channel for each slot that is filled, in their order.
template <typename Session, std::size_t Count>
void writeTypedChannels(tinyxml2::XMLElement& parent, const Session& session,
                        const ChannelSlot<Session> (&slots)[Count]) {
  for (const ChannelSlot<Session>& slot : slots) {
    if (session.*slot.id == -1) continue;
    tinyxml2::XMLElement& element = append(parent, kChannel);
    element.SetAttribute("Id", session.*slot.id);
    element.SetAttribute("Type", slot.type);
  }
}

}  // namespace camcfg

#endif
