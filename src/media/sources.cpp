#include <new>
#include <utility>

#include "media/media_entries.h"
#include "media/stream_document.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Source = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;

constexpr char kAnySource[] = "<Stream><StreamSource><*>";

template <typename Record>
Source make() {
  return std::make_shared<Record>();
}

struct Kind {
  std::int32_t type;
  char element[5];
  char channel[7];  // the attribute of s32ChnId
  char path[32];
  Source (*make)();
};

constexpr Kind kKinds[] = {
    {CFG_STREAM_SOURCE_VENC, "VENC", "ChnId", "<Stream><StreamSource><VENC>",
     make<tag_CFG_STREAM_SOURCE_VENC_T>},
    {CFG_STREAM_SOURCE_AI, "AI", "AiId", "<Stream><StreamSource><AI>",
     make<tag_CFG_STREAM_SOURCE_AI_T>},
    {CFG_STREAM_SOURCE_AENC, "AENC", "AencId", "<Stream><StreamSource><AENC>",
     make<tag_CFG_STREAM_SOURCE_AENC_T>},
};

const Kind* kindOfElement(const XMLElement& element) {
  for (const Kind& kind : kKinds)
    if (isWord(element.Name(), kind.element)) return &kind;
  return nullptr;
}

const Kind* kindOfRecord(const Source& source) {
  for (const Kind& kind : kKinds)
    if (source != nullptr && source->s32Type == kind.type) return &kind;
  return nullptr;
}

// Reads one element. `name` is that of the source before it and becomes its own.
bool readSource(const XMLElement& element, const Kind& kind, const char** name,
                tag_CFG_STREAM_SOURCE_T& source) {
  if (!kStream.requireInt(element, kind.channel, kind.path, &source.s32ChnId) ||
      !kStream.requireInt(element, "Id", kAnySource, &source.s32Id))
    return reject();
  if (const char* own = element.Attribute("Name")) *name = own;
  if (*name == nullptr) {
    kStream.reportMissing("Name", kAnySource);
    return reject();
  }
  source.strName = *name;
  source.s32Enabled = 1;
  readInt(element, "Enabled", source.s32Enabled);
  return true;
}

void writeSource(XMLElement& section, const Kind& kind, const tag_CFG_STREAM_SOURCE_T& source) {
  XMLElement& element = append(section, kind.element);
  setInt(element, "Id", source.s32Id);
  setText(element, "Name", source.strName);
  setInt(element, kind.channel, source.s32ChnId);
  if (source.s32Enabled == 0) setInt(element, "Enabled", 0);
}

}  // namespace

int CFG_MPP_LoadStreamSourceConfig(std::list<Source>& sources) try {
  const XMLElement* section = kStream.open("StreamSource", BU_TRUE);
  if (section == nullptr) return CFG_MPP_ERR;
  sources.clear();
  // Deliberate: not reset between elements, so one without "Name" takes its predecessor's.
  // [source-name-carried]
  const char* name = nullptr;
  for (const XMLElement* element = section->FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement()) {
    const Kind* kind = kindOfElement(*element);
    if (kind == nullptr) {
      kStream.print(kWarning, "Un-Support node <%s> by <StreamSource>, Skip.\n", element->Name());
      continue;
    }
    Source source = kind->make();
    if (!readSource(*element, *kind, &name, *source)) return CFG_MPP_ERR;
    sources.push_back(std::move(source));
  }
  kStream.closeRead();
  return 0;
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_TRUE);
}

int CFG_MPP_DumpStreamSourceConfig(const std::list<Source>& sources) try {
  XMLElement* section = kStream.open("StreamSource", BU_FALSE);
  if (section == nullptr) return CFG_MPP_ERR;
  section->DeleteChildren();
  for (const Source& source : sources)
    if (const Kind* kind = kindOfRecord(source)) writeSource(*section, *kind, *source);
  return kStream.closeWrite();
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_FALSE);
}
