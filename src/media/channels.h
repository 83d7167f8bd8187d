#ifndef CAMCFG_MEDIA_CHANNELS_H
#define CAMCFG_MEDIA_CHANNELS_H

#include <cstddef>
#include <string>

#include "media/document.h"
#include "media/entries.h"
#include "media/entry_writer.h"

namespace camcfg {

/// Name of a channel's element in every section.
inline constexpr char kChannel[] = "Channel";

/// Reads a channel of "Id" and "Name", or reports what is missing at `path`.
bool readNamedChannel(const tinyxml2::XMLElement& element, const char* path, std::int32_t& id,
                      std::string& name);

void writeNamedChannel(EntryWriter& parent, std::int32_t id, const std::string& name);

/// A channel of "Id" and "Type".
struct TypedChannel {
  std::int32_t id;
  const char* type;
};

bool readTypedChannel(const tinyxml2::XMLElement& element, const char* path, TypedChannel& channel);

/// The place in a session for the channel of one type; -1 while there is none.
template <typename Session>
struct ChannelSlot {
  char type[10];
  std::int32_t Session::*id;
};

/// The slot for a type, in upper or lower case; null when there is none.
template <typename Session, std::size_t Count>
const ChannelSlot<Session>* findSlot(const ChannelSlot<Session> (&slots)[Count], const char* type) {
  for (const ChannelSlot<Session>& slot : slots)
    if (isWord(type, slot.type)) return &slot;
  return nullptr;
}

/// Fills the slot `kept` of a session. The first channel stays; a later one is reported under the
/// name `type`.
void fillSlot(std::int32_t& kept, std::int32_t id, const char* type, const char* service,
              std::int32_t sessionId);

/// Writes a channel, unless the slot holds none.
void writeTypedChannel(EntryWriter& parent, std::int32_t id, const char* type);

/// Writes a channel for each slot that is filled, in their order.
template <typename Session, std::size_t Count>
void writeTypedChannels(EntryWriter& parent, const Session& session,
                        const ChannelSlot<Session> (&slots)[Count]) {
  for (const ChannelSlot<Session>& slot : slots)
    writeTypedChannel(parent, session.*slot.id, slot.type);
}

}  // namespace camcfg

#endif
