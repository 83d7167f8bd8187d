#include "media/channels.h"
#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Session = tag_CFG_NDI_SESSION_T;

constexpr Rules kRules = {"NDI", {{"Instance"}, Others::Ignored, "<NDI>"}};

// Deliberate: the instance is called a session here, as device logs have always shown it.
// [ndi-called-session]
constexpr char kChannelPath[] = "<NDI><Session><Channel>";

constexpr ChannelSlot<Session> kSlots[] = {{"MainVideo", &Session::s32MainVideoId},
                                           {"SubVideo", &Session::s32SubVideoId},
                                           {"Audio", &Session::s32AudioId}};

bool readInstance(const XMLElement& element, Session& session) {
  readInt(element, "Id", session.s32Id);
  readSwitch(element, "Enable", session.bEnable);
  readSwitch(element, "DiscoveryServerEnable", session.bDiscoveryServerEnable);
  readText(element, "DiscoveryServer", session.strDiscoveryServer);
  readText(element, "GroupName", session.strGroupName);
  readText(element, "MainStreamName", session.strMainStreamName);
  readSwitch(element, "MulticastEnable", session.bMulticastEnable);
  readText(element, "MulticastIp", session.strMulticastIp);
  readText(element, "MulticastNetmask", session.strMulticastNetmask);
  readInt(element, "MulticastTTL", session.s32MulticastTTL);

  for (const XMLElement* entry = firstEntry(element, kChannel); entry != nullptr;
       entry = nextEntry(*entry, kChannel)) {
    TypedChannel channel;
    if (!readTypedChannel(*entry, kChannelPath, channel)) return false;
    if (const auto* slot = findSlot(kSlots, channel.type))
      fillSlot(session.*slot->id, channel.id, channel.type, "NDI", session.s32Id);
    else
      kLiveMedia.print(kWarning, "Un-support Type %s for <NDI><Instance><Channel>, ignored.\n",
                       channel.type);
  }
  return true;
}

void writeInstance(XMLElement& section, const Session& session) {
  XMLElement& instance = append(section, kRules.entries.name());
  setInt(instance, "Id", session.s32Id);
  setSwitch(instance, "Enable", session.bEnable);
  // Deliberate: not the name that the loader reads, so the switch is off when the file is loaded
  // again. [ndi-discovery-name]
  setSwitch(instance, "bDiscoveryServerEnable", session.bDiscoveryServerEnable);
  setText(instance, "DiscoveryServer", session.strDiscoveryServer);
  setText(instance, "GroupName", session.strGroupName);
  setText(instance, "MainStreamName", session.strMainStreamName);
  setSwitch(instance, "MulticastEnable", session.bMulticastEnable);
  setText(instance, "MulticastIp", session.strMulticastIp);
  setText(instance, "MulticastNetmask", session.strMulticastNetmask);
  setInt(instance, "MulticastTTL", session.s32MulticastTTL);
  writeTypedChannels(instance, session, kSlots);
}

constexpr Section<Session> kNdi = {kLiveMedia, kRules, readEach<readInstance>, writeInstance};

}  // namespace

int CFG_LM_LoadNdiConfig(std::list<Session>& sessions) {
  return load<kNdi>(sessions);
}

int CFG_LM_DumpNdiConfig(const std::list<Session>& sessions) {
  return dump<kNdi>(sessions);
}
