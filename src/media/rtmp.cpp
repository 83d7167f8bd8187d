#include "media/channels.h"
#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Session = tag_CFG_RTMP_SESSION_T;

// Deliberate: faults of a target, and elements that are no target, are reported under the RTSP
// section's name, as device logs have always shown them. [rtmp-named-rtsp]
constexpr char kTargetPath[] = "<RTSP><MediaGroup>";
constexpr Entries kTargets = {{"Target"}, Others::Ignored, "<RTSP>"};

// Deliberate: the dumper ends as a reader does, so nothing is saved and the file's lock stays held
// although the call reports success. Callers that know this release it. [rtmp-not-saved]
constexpr Rules kRules = {"RTMP", kTargets, Success::Printed, AfterFault::StaysOpen,
                          Ending::DiscardAndStayLocked};

constexpr ChannelSlot<Session> kSlots[] = {{"Video", &Session::s32VideoId},
                                           {"Audio", &Session::s32AudioId}};

// In the order in which they are written.
constexpr char kNames[][9] = {"Id", "Enable", "url", "username", "password"};
enum Name { kId, kEnable, kUrl, kUsername, kPassword };

bool readTarget(const XMLElement& element, Session& session) {
  const Attributes attributes(element, kNames);
  if (!kLiveMedia.requireInt(attributes, kId, kTargetPath, &session.s32Id) ||
      !kLiveMedia.requireText(attributes, kUrl, kTargetPath, &session.strUrl))
    return false;
  attributes.readText(kUsername, session.strUsername);
  attributes.readText(kPassword, session.strPassword);
  session.bEnable = 1;
  attributes.readSwitch(kEnable, session.bEnable);

  for (const XMLElement* entry = firstEntry(element, kChannel); entry != nullptr;
       entry = nextEntry(*entry, kChannel)) {
    TypedChannel channel;
    if (!readTypedChannel(*entry, "<RTMP><Target><Channel>", channel)) return false;
    if (const auto* slot = findSlot(kSlots, channel.type))
      fillSlot(session.*slot->id, channel.id, slot->type, "RTMP", session.s32Id);
  }
  return true;
}

void writeTarget(EntryWriter& section, const Session& session) {
  section.open(kRules.entries.name());
  section.setInt(kNames[kId], session.s32Id);
  section.setSwitch(kNames[kEnable], session.bEnable);
  section.setText(kNames[kUrl], session.strUrl);
  section.setText(kNames[kUsername], session.strUsername);
  section.setText(kNames[kPassword], session.strPassword);
  writeTypedChannels(section, session, kSlots);
  section.close();
}

constexpr Section<Session> kRtmp = {kLiveMedia, kRules, readEach<readTarget>, writeTarget};

}  // namespace

int CFG_LM_LoadRtmpConfig(std::list<Session>& sessions) {
  return load<kRtmp>(sessions);
}

int CFG_LM_DumpRtmpConfig(const std::list<Session>& sessions) {
  return dump<kRtmp>(sessions);
}
