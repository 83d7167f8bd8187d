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

// In the order in which they are written.
constexpr char kNames[][22] = {"Id",
                               "Enable",
                               "DiscoveryServerEnable",
                               "DiscoveryServer",
                               "GroupName",
                               "MainStreamName",
                               "MulticastEnable",
                               "MulticastIp",
                               "MulticastNetmask",
                               "MulticastTTL"};
enum Name {
  kId,
  kEnable,
  kDiscoveryServerEnable,
  kDiscoveryServer,
  kGroupName,
  kMainStreamName,
  kMulticastEnable,
  kMulticastIp,
  kMulticastNetmask,
  kMulticastTtl
};

bool readInstance(const XMLElement& element, Session& session) {
  const Attributes attributes(element, kNames);
  attributes.readInt(kId, session.s32Id);
  attributes.readSwitch(kEnable, session.bEnable);
  attributes.readSwitch(kDiscoveryServerEnable, session.bDiscoveryServerEnable);
  attributes.readText(kDiscoveryServer, session.strDiscoveryServer);
  attributes.readText(kGroupName, session.strGroupName);
  attributes.readText(kMainStreamName, session.strMainStreamName);
  attributes.readSwitch(kMulticastEnable, session.bMulticastEnable);
  attributes.readText(kMulticastIp, session.strMulticastIp);
  attributes.readText(kMulticastNetmask, session.strMulticastNetmask);
  attributes.readInt(kMulticastTtl, session.s32MulticastTTL);

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

void writeInstance(EntryWriter& section, const Session& session) {
  section.open(kRules.entries.name());
  section.setInt(kNames[kId], session.s32Id);
  section.setSwitch(kNames[kEnable], session.bEnable);
  // Deliberate: not the name that the loader reads, so the switch is off when the file is loaded
  // again. [ndi-discovery-name]
  section.setSwitch("bDiscoveryServerEnable", session.bDiscoveryServerEnable);
  section.setText(kNames[kDiscoveryServer], session.strDiscoveryServer);
  section.setText(kNames[kGroupName], session.strGroupName);
  section.setText(kNames[kMainStreamName], session.strMainStreamName);
  section.setSwitch(kNames[kMulticastEnable], session.bMulticastEnable);
  section.setText(kNames[kMulticastIp], session.strMulticastIp);
  section.setText(kNames[kMulticastNetmask], session.strMulticastNetmask);
  section.setInt(kNames[kMulticastTtl], session.s32MulticastTTL);
  writeTypedChannels(section, session, kSlots);
  section.close();
}

constexpr Section<Session> kNdi = {kLiveMedia, kRules, readEach<readInstance>, writeInstance};

}  // namespace

int CFG_LM_LoadNdiConfig(std::list<Session>& sessions) {
  return load<kNdi>(sessions);
}

int CFG_LM_DumpNdiConfig(const std::list<Session>& sessions) {
  return dump<kNdi>(sessions);
}
