#include "media/channels.h"

namespace camcfg {

using tinyxml2::XMLElement;

bool readNamedChannel(const XMLElement& element, const char* path, std::int32_t& id,
                      std::string& name) {
  return kLiveMedia.requireInt(element, "Id", path, &id) &&
         kLiveMedia.requireText(element, "Name", path, &name);
}

void writeNamedChannel(XMLElement& parent, std::int32_t id, const std::string& name) {
  XMLElement& element = append(parent, kChannel);
  setInt(element, "Id", id);
  setText(element, "Name", name);
}

bool readTypedChannel(const XMLElement& element, const char* path, TypedChannel& channel) {
  if (!kLiveMedia.requireInt(element, "Id", path, &channel.id)) return false;
  channel.type = kLiveMedia.requireText(element, "Type", path);
  return channel.type != nullptr;
}

void fillSlot(std::int32_t& kept, std::int32_t id, const char* type, const char* service,
              std::int32_t sessionId) {
  if (kept == -1)
    kept = id;
  else
    kLiveMedia.print(kWarning, "%s has been set for %s[%d] as %d, ignore %d\n", type, service,
                     sessionId, kept, id);
}

void writeTypedChannel(XMLElement& parent, std::int32_t id, const char* type) {
  if (id == -1) return;
  XMLElement& element = append(parent, kChannel);
  setInt(element, "Id", id);
  element.SetAttribute("Type", type);
}

}  // namespace camcfg
