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

// In the order in which they are written.
constexpr char kNames[][9] = {"Id", "Mode", "Hostname", "Port", "AesMode", "Password", "Latency"};
enum Name { kId, kMode, kHostname, kPort, kAesMode, kPassword, kLatency };
constexpr char kStreamNames[][8] = {"Id", "Default"};
constexpr char kChannelNames[][3] = {"Id"};

// A listener's host name is not looked at.
bool readMode(const Attributes& attributes, const char* mode, Instance& instance) {
  instance.s32Mode = isWord(mode, kListener) ? 1 : 0;
  if (instance.s32Mode != 0) return true;
  if (isWord(mode, kCaller))
    return kLiveMedia.requireText(attributes, kHostname, kPath, &instance.strHostname);
  // Deliberate: the message speaks of skipping the instance, but the whole load fails.
  // [srt-bad-mode]
  kLiveMedia.print(kWarning, "Bad srt mode = %s, only allow {Listener, Caller}, skip instance.\n",
                   mode);
  return false;
}

bool readStream(const XMLElement& element, Stream& stream) {
  const Attributes attributes(element, kStreamNames);
  if (!kLiveMedia.requireText(attributes, 0, "<SRT><Instance><Stream>", &stream.strId))
    return false;
  attributes.readInt(1, stream.s32Default);
  for (const XMLElement* entry = firstEntry(element, kChannel); entry != nullptr;
       entry = nextEntry(*entry, kChannel)) {
    const Attributes channel(*entry, kChannelNames);
    std::int32_t id = -1;
    if (!kLiveMedia.requireInt(channel, 0, "<SRT><Instance><Stream><Channel>", &id)) return false;
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
  const Attributes attributes(element, kNames);
  if (!kLiveMedia.requireInt(attributes, kId, kPath, &instance.s32Id)) return false;
  const char* mode = kLiveMedia.requireText(attributes, kMode, kPath);
  if (mode == nullptr || !kLiveMedia.requireInt(attributes, kPort, kPath, &instance.s32Port) ||
      !readMode(attributes, mode, instance))
    return false;
  attributes.readInt(kAesMode, instance.s32AesMode);
  attributes.readText(kPassword, instance.strPassword);
  attributes.readInt(kLatency, instance.s32Latency);
  return readStreams(element, instance);
}

void writeChannel(EntryWriter& stream, std::int32_t id) {
  stream.open(kChannel);
  stream.setInt(kChannelNames[0], id);
  stream.close();
}

void writeStream(EntryWriter& instance, const Stream& stream) {
  instance.open(kStreams.name());
  instance.setText(kStreamNames[0], stream.strId);
  instance.setInt(kStreamNames[1], stream.s32Default);
  for (const int id : stream.lstChannel) writeChannel(instance, id);
  instance.close();
}

void writeInstance(EntryWriter& section, const Instance& instance) {
  section.open(kRules.entries.name());
  section.setInt(kNames[kId], instance.s32Id);
  section.setText(kNames[kMode], instance.s32Mode != 0 ? kListener : kCaller);
  if (!instance.strHostname.empty()) section.setText(kNames[kHostname], instance.strHostname);
  section.setInt(kNames[kPort], instance.s32Port);
  if (instance.s32AesMode > 0) section.setInt(kNames[kAesMode], instance.s32AesMode);
  if (!instance.strPassword.empty()) section.setText(kNames[kPassword], instance.strPassword);
  section.setInt(kNames[kLatency], instance.s32Latency);
  for (const Stream& stream : instance.lstStream) writeStream(section, stream);
  section.close();
}

constexpr Section<Instance> kSrt = {kLiveMedia, kRules, readEach<readInstance>, writeInstance};

}  // namespace

int CFG_LM_LoadSrtConfig(std::list<Instance>& instances) {
  return load<kSrt>(instances);
}

int CFG_LM_DumpSrtConfig(const std::list<Instance>& instances) {
  return dump<kSrt>(instances);
}
