#include "livemedia/channels.h"
#include "livemedia/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Instance = tag_CFG_SRT_INSTANCE_T;
using Stream = tag_CFG_SRT_STREAM_T;

constexpr char kInstance[] = "Instance";
constexpr char kStreamElement[] = "Stream";
constexpr char kPath[] = "<SRT><Instance>";
constexpr char kListener[] = "Listener";
constexpr char kCaller[] = "Caller";

// A listener's host name is not looked at.
bool readMode(const XMLElement& element, const std::string& mode, Instance& instance) {
  instance.s32Mode = isWord(mode.c_str(), kListener) ? 1 : 0;
  if (instance.s32Mode != 0) return true;
  if (isWord(mode.c_str(), kCaller))
    return kLiveMedia.requireText(element, "Hostname", kPath, &instance.strHostname);
  // Deliberate: the message speaks of skipping the instance, but the whole load fails.
  // [srt-bad-mode]
  kLiveMedia.print(kWarning, "Bad srt mode = %s, only allow {Listener, Caller}, skip instance.\n",
                   mode.c_str());
  return false;
}

bool readChannel(const XMLElement& element, Stream& stream) {
  std::int32_t id = -1;
  if (!kLiveMedia.requireInt(element, "Id", "<SRT><Instance><Stream><Channel>", &id)) return false;
  stream.lstChannel.push_back(id);
  return true;
}

bool readStream(const XMLElement& element, Stream& stream) {
  if (!kLiveMedia.requireText(element, "Id", "<SRT><Instance><Stream>", &stream.strId))
    return false;
  stream.s32Default = element.IntAttribute("Default", stream.s32Default);
  return readEntries(
      element, kChannel, [&](const XMLElement& channel) { return readChannel(channel, stream); },
      skipQuietly);
}

bool readInstance(const XMLElement& element, Instance& instance) {
  std::string mode;
  if (!kLiveMedia.requireInt(element, "Id", kPath, &instance.s32Id) ||
      !kLiveMedia.requireText(element, "Mode", kPath, &mode) ||
      !kLiveMedia.requireInt(element, "Port", kPath, &instance.s32Port) ||
      !readMode(element, mode, instance))
    return false;
  instance.s32AesMode = element.IntAttribute("AesMode", instance.s32AesMode);
  instance.strPassword = textOr(element, "Password", "");
  instance.s32Latency = element.IntAttribute("Latency", instance.s32Latency);

  const auto appendStream = [&instance](const XMLElement& stream) {
    instance.lstStream.emplace_back();
    return readStream(stream, instance.lstStream.back());
  };
  return readEntries(element, kStreamElement, appendStream, warnUnsupported(kPath));
}

void writeStream(XMLElement& parent, const Stream& stream) {
  XMLElement& element = append(parent, kStreamElement);
  setText(element, "Id", stream.strId);
  element.SetAttribute("Default", stream.s32Default);
  for (const int id : stream.lstChannel) append(element, kChannel).SetAttribute("Id", id);
}

void writeInstance(XMLElement& section, const Instance& instance) {
  XMLElement& element = append(section, kInstance);
  element.SetAttribute("Id", instance.s32Id);
  element.SetAttribute("Mode", instance.s32Mode != 0 ? kListener : kCaller);
  if (!instance.strHostname.empty()) setText(element, "Hostname", instance.strHostname);
  element.SetAttribute("Port", instance.s32Port);
  if (instance.s32AesMode > 0) element.SetAttribute("AesMode", instance.s32AesMode);
  if (!instance.strPassword.empty()) setText(element, "Password", instance.strPassword);
  element.SetAttribute("Latency", instance.s32Latency);
  for (const Stream& stream : instance.lstStream) writeStream(element, stream);
}

constexpr Section<Instance> kSrt = {"SRT", kInstance, "<SRT>", readInstance, writeInstance};

}  // namespace

int CFG_LM_LoadSrtConfig(std::list<Instance>& instances) {
  return load(kSrt, instances);
}

int CFG_LM_DumpSrtConfig(const std::list<Instance>& instances) {
  return dump(kSrt, instances);
}
