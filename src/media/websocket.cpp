#include "media/channels.h"
#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Session = tag_CFG_WEBSOCKET_SESSION_T;

// Deliberate: the list is emptied even if the file cannot be opened, unlike those of the other
// loaders. [websocket-emptied-first]
constexpr Rules kRules = {"WEBSOCKET",      {{"Channel"}, Others::Ignored, "<WEBSOCKET>"},
                          Success::Printed, AfterFault::StaysOpen,
                          Ending::Save,     Emptied::BeforeOpening};

bool readSession(const XMLElement& element, Session& session) {
  return readNamedChannel(element, "<WEBSOCKET><Channel>", session.s32Id, session.strName);
}

void writeSession(EntryWriter& section, const Session& session) {
  writeNamedChannel(section, session.s32Id, session.strName);
}

constexpr Section<Session> kWebsocket = {kLiveMedia, kRules, readEach<readSession>, writeSession};

}  // namespace

int CFG_LM_LoadWebsocketConfig(std::list<Session>& sessions) {
  return load<kWebsocket>(sessions);
}

int CFG_LM_DumpWebsocketConfig(const std::list<Session>& sessions) {
  return dump<kWebsocket>(sessions);
}
