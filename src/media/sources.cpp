#include <utility>

#include "media/section.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Source = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;

constexpr Rules kRules = {"StreamSource",
                          {{"VENC", "AI", "AENC"}, Others::Skipped, "<StreamSource>"},
                          Success::Silent,
                          AfterFault::Closed};
constexpr char kAnySource[] = "<Stream><StreamSource><*>";

template <typename Record>
Source make() {
  return std::make_shared<Record>();
}

// In the order in which they are written, of which an entry has one of three.
constexpr char kNames[][8] = {"Id", "Name", "ChnId", "AiId", "AencId", "Enabled"};
enum Name { kId, kName, kChnId, kAiId, kAencId, kEnabled };

struct Kind {
  std::int32_t type;
  Name channel;  // the attribute of s32ChnId
  char path[32];
  Source (*make)();
};

// In the order of the entries' names.
constexpr Kind kKinds[] = {
    {CFG_STREAM_SOURCE_VENC, kChnId, "<Stream><StreamSource><VENC>",
     make<tag_CFG_STREAM_SOURCE_VENC_T>},
    {CFG_STREAM_SOURCE_AI, kAiId, "<Stream><StreamSource><AI>", make<tag_CFG_STREAM_SOURCE_AI_T>},
    {CFG_STREAM_SOURCE_AENC, kAencId, "<Stream><StreamSource><AENC>",
     make<tag_CFG_STREAM_SOURCE_AENC_T>},
};

const char* nameOf(const Kind& kind) {
  return kRules.entries.names[&kind - kKinds];
}

const Kind* kindOfElement(const XMLElement& element) {
  for (const Kind& kind : kKinds)
    if (isWord(element.Name(), nameOf(kind))) return &kind;
  return nullptr;
}

const Kind* kindOfRecord(const Source& source) {
  for (const Kind& kind : kKinds)
    if (source != nullptr && source->s32Type == kind.type) return &kind;
  return nullptr;
}

bool readName(const Attributes& attributes, const std::list<Source>& before, std::string& name) {
  // Deliberate: an element without "Name" takes its predecessor's. [source-name-carried]
  if (before.empty() || attributes.text(kName) != nullptr)
    return kStream.requireText(attributes, kName, kAnySource, &name);
  name = before.back()->strName;
  return true;
}

bool readSource(const XMLElement& element, std::list<Source>& sources) {
  const Kind& kind = *kindOfElement(element);
  const Attributes attributes(element, kNames);
  Source source = kind.make();
  if (!kStream.requireInt(attributes, kind.channel, kind.path, &source->s32ChnId) ||
      !kStream.requireInt(attributes, kId, kAnySource, &source->s32Id) ||
      !readName(attributes, sources, source->strName))
    return false;
  source->s32Enabled = 1;
  attributes.readInt(kEnabled, source->s32Enabled);
  sources.push_back(std::move(source));
  return true;
}

void writeSource(EntryWriter& section, const Source& source) {
  const Kind* kind = kindOfRecord(source);
  if (kind == nullptr) return;
  section.open(nameOf(*kind));
  section.setInt(kNames[kId], source->s32Id);
  section.setText(kNames[kName], source->strName);
  section.setInt(kNames[kind->channel], source->s32ChnId);
  if (source->s32Enabled == 0) section.setInt(kNames[kEnabled], 0);
  section.close();
}

constexpr Section<Source> kSources = {kStream, kRules, readSource, writeSource};

}  // namespace

int CFG_MPP_LoadStreamSourceConfig(std::list<Source>& sources) {
  return load<kSources>(sources);
}

int CFG_MPP_DumpStreamSourceConfig(const std::list<Source>& sources) {
  return dump<kSources>(sources);
}
