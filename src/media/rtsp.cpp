#include "media/channels.h"
#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Session = std::shared_ptr<tag_CFG_RTSP_SESSION_T>;

constexpr Rules kRules = {"RTSP", {{"MediaGroup"}, Others::Ignored, "<RTSP>"}};

constexpr char kNames[][5] = {"Name"};

bool readGroup(const XMLElement& element, Session& session) {
  session = std::make_shared<tag_CFG_RTSP_SESSION_T>();
  const Attributes attributes(element, kNames);
  if (!kLiveMedia.requireText(attributes, 0, "<RTSP><MediaGroup>", &session->strName)) return false;
  for (const XMLElement* entry = firstEntry(element, kChannel); entry != nullptr;
       entry = nextEntry(*entry, kChannel)) {
    session->lstSubSession.emplace_back();
    tag_CFG_RTSP_SUBSESSION_T& channel = session->lstSubSession.back();
    if (!readNamedChannel(*entry, "<RTSP><MediaGroup><Channel>", channel.s32Id, channel.strName))
      return false;
  }
  return true;
}

void writeGroup(EntryWriter& section, const Session& session) {
  if (session == nullptr) return;
  section.open(kRules.entries.name());
  section.setText(kNames[0], session->strName);
  for (const tag_CFG_RTSP_SUBSESSION_T& channel : session->lstSubSession)
    writeNamedChannel(section, channel.s32Id, channel.strName);
  section.close();
}

constexpr Section<Session> kRtsp = {kLiveMedia, kRules, readEach<readGroup>, writeGroup};

}  // namespace

int CFG_LM_LoadRtspConfig(std::list<Session>& sessions) {
  return load<kRtsp>(sessions);
}

int CFG_LM_DumpRtspConfig(const std::list<Session>& sessions) {
  return dump<kRtsp>(sessions);
}
