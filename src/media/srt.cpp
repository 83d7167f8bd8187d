#include "media/channels.h"
#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Instance = tag_CFG_SRT_INSTANCE_T;
using Stream = tag_CFG_SRT_STREAM_T;

constexpr Rules kRules = {"SRT", {{"Instance"}, Others::Ignored, "<SRT>"}};
constexpr Entries kStreams = {{"Stream"}, Others::Ignored, "<SRT><Instance>"};
constexpr char kPath[] = "<SRT><Instance>";
constexpr char kListener[] = "Listener";
constexpr char kCaller[] = "Caller";

// A listener's host name is not looked at.
bool readMode(const XMLElement& element, const char* mode, Instance& instance) {
  instance.s32Mode = isWord(mode, kListener) ? 1 : 0;
  if (instance.s32Mode != 0) return true;
  if (isWord(mode, kCaller))
    return kLiveMedia.requireText(element, "Hostname", kPath, &instance.strHostname);
  // Deliberate: the message speaks of skipping the instance, but the whole load fails.
  // [srt-bad-mode]
  kLiveMedia.print(kWarning, "Bad srt mode = %s, only allow {Listener, Caller}, skip instance.\n",
                   mode);
  return false;
}

bool readStream(const XMLElement& element, Stream& stream) {
  if (!kLiveMedia.requireText(element, "Id", "<SRT><Instance><Stream>", &stream.strId))
    return false;
  readInt(element, "Default", stream.s32Default);
  for (const XMLElement* entry = firstEntry(element, kChannel); entry != nullptr;
       entry = nextEntry(*entry, kChannel)) {
    std::int32_t id = -1;
    if (!kLiveMedia.requireInt(*entry, "Id", "<SRT><Instance><Stream><Channel>", &id)) return false;
    stream.lstChannel.push_back(id);
  }
  return true;
}

bool readStreams(const XMLElement& element, Instance& instance) {
  const XMLElement* entry = element.FirstChildElement();
  while ((entry = entryFrom(kLiveMedia, entry, kStreams)) != nullptr) {
    instance.lstStream.emplace_back();
    if (!readStream(*entry, instance.lstStream.back())) return false;
    entry = entry->NextSiblingElement();
  }
  return true;
}

bool readInstance(const XMLElement& element, Instance& instance) {
  if (!kLiveMedia.requireInt(element, "Id", kPath, &instance.s32Id)) return false;
  const char* mode = kLiveMedia.requireText(element, "Mode", kPath);
  if (mode == nullptr || !kLiveMedia.requireInt(element, "Port", kPath, &instance.s32Port) ||
      !readMode(element, mode, instance))
    return false;
  readInt(element, "AesMode", instance.s32AesMode);
  readText(element, "Password", instance.strPassword);
  readInt(element, "Latency", instance.s32Latency);
  return readStreams(element, instance);
}

void writeStream(XMLElement& parent, const Stream& stream) {
  XMLElement& element = append(parent, kStreams.name());
  setText(element, "Id", stream.strId);
  setInt(element, "Default", stream.s32Default);
  for (const int id : stream.lstChannel) setInt(append(element, kChannel), "Id", id);
}

void writeInstance(XMLElement& section, const Instance& instance) {
  XMLElement& element = append(section, kRules.entries.name());
  setInt(element, "Id", instance.s32Id);
  element.SetAttribute("Mode", instance.s32Mode != 0 ? kListener : kCaller);
  if (!instance.strHostname.empty()) setText(element, "Hostname", instance.strHostname);
  setInt(element, "Port", instance.s32Port);
  if (instance.s32AesMode > 0) setInt(element, "AesMode", instance.s32AesMode);
  if (!instance.strPassword.empty()) setText(element, "Password", instance.strPassword);
  setInt(element, "Latency", instance.s32Latency);
  for (const Stream& stream : instance.lstStream) writeStream(element, stream);
}

constexpr Section<Instance> kSrt = {kLiveMedia, kRules, readEach<readInstance>, writeInstance};

}  // namespace

int CFG_LM_LoadSrtConfig(std::list<Instance>& instances) {
  return load<kSrt>(instances);
}

int CFG_LM_DumpSrtConfig(const std::list<Instance>& instances) {
  return dump<kSrt>(instances);
}
