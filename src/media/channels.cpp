#include "media/channels.h"

namespace camcfg {

using tinyxml2::XMLElement;

namespace {

constexpr char kNamed[][5] = {"Id", "Name"};
constexpr char kTyped[][5] = {"Id", "Type"};

}  // namespace

bool readNamedChannel(const XMLElement& element, const char* path, std::int32_t& id,
                      std::string& name) {
  const Attributes attributes(element, kNamed);
  return kLiveMedia.requireInt(attributes, 0, path, &id) &&
         kLiveMedia.requireText(attributes, 1, path, &name);
}

void writeNamedChannel(EntryWriter& parent, std::int32_t id, const std::string& name) {
  parent.open(kChannel);
  parent.setInt(kNamed[0], id);
  parent.setText(kNamed[1], name);
  parent.close();
}

bool readTypedChannel(const XMLElement& element, const char* path, TypedChannel& channel) {
  const Attributes attributes(element, kTyped);
  if (!kLiveMedia.requireInt(attributes, 0, path, &channel.id)) return false;
  channel.type = kLiveMedia.requireText(attributes, 1, path);
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

void writeTypedChannel(EntryWriter& parent, std::int32_t id, const char* type) {
  if (id == -1) return;
  parent.open(kChannel);
  parent.setInt(kTyped[0], id);
  parent.setText(kTyped[1], type);
  parent.close();
}

}  // namespace camcfg
