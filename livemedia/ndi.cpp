#include "livemedia/channels.h"
#include "livemedia/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Session = tag_CFG_NDI_SESSION_T;

constexpr char kInstance[] = "Instance";

// Deliberate: the instance is called a session here, as device logs have always shown it.
// [ndi-called-session]
constexpr char kChannelPath[] = "<NDI><Session><Channel>";

constexpr ChannelSlot<Session> kSlots[] = {{"MainVideo", &Session::s32MainVideoId},
                                           {"SubVideo", &Session::s32SubVideoId},
                                           {"Audio", &Session::s32AudioId}};

bool readInstance(const XMLElement& element, Session& session) {
  session.s32Id = element.IntAttribute("Id", session.s32Id);
  session.bEnable = isTrue(textOr(element, "Enable", "false"));
  session.bDiscoveryServerEnable = isTrue(textOr(element, "DiscoveryServerEnable", "false"));
  session.strDiscoveryServer = textOr(element, "DiscoveryServer", "");
  session.strGroupName = textOr(element, "GroupName", "");
  session.strMainStreamName = textOr(element, "MainStreamName", "");
  session.bMulticastEnable = isTrue(textOr(element, "MulticastEnable", "false"));
  session.strMulticastIp = textOr(element, "MulticastIp", session.strMulticastIp.c_str());
  session.strMulticastNetmask =
      textOr(element, "MulticastNetmask", session.strMulticastNetmask.c_str());
  session.s32MulticastTTL = element.IntAttribute("MulticastTTL", session.s32MulticastTTL);

  const auto readChannel = [&session](const XMLElement& entry) {
    TypedChannel channel;
    if (!readTypedChannel(entry, kChannelPath, channel)) return false;
    const char* type = channel.type.c_str();
    if (const auto* slot = findSlot(kSlots, channel.type))
      fillSlot(session, *slot, channel.id, type, "NDI");
    else
      kLiveMedia.print(kWarning, "Un-support Type %s for <NDI><Instance><Channel>, ignored.\n",
                       type);
    return true;
  };
  return readEntries(element, kChannel, readChannel, skipQuietly);
}

void writeInstance(XMLElement& section, const Session& session) {
  XMLElement& instance = append(section, kInstance);
  instance.SetAttribute("Id", session.s32Id);
  instance.SetAttribute("Enable", trueOrFalse(session.bEnable));
  // Deliberate: not the name that the loader reads, so the switch is off when the file is loaded
  // again. [ndi-discovery-name]
  instance.SetAttribute("bDiscoveryServerEnable", trueOrFalse(session.bDiscoveryServerEnable));
  setText(instance, "DiscoveryServer", session.strDiscoveryServer);
  setText(instance, "GroupName", session.strGroupName);
  setText(instance, "MainStreamName", session.strMainStreamName);
  instance.SetAttribute("MulticastEnable", trueOrFalse(session.bMulticastEnable));
  setText(instance, "MulticastIp", session.strMulticastIp);
  setText(instance, "MulticastNetmask", session.strMulticastNetmask);
  instance.SetAttribute("MulticastTTL", session.s32MulticastTTL);
  writeTypedChannels(instance, session, kSlots);
}

constexpr Section<Session> kNdi = {"NDI", kInstance, "<NDI>", readInstance, writeInstance};

}  // namespace

int CFG_LM_LoadNdiConfig(std::list<Session>& sessions) {
  return load(kNdi, sessions);
}

int CFG_LM_DumpNdiConfig(const std::list<Session>& sessions) {
  return dump(kNdi, sessions);
}
