#include "lint/source.h"

#include <camcfg/types.h>
#include <fcntl.h>

#include <algorithm>

#include "base/descriptor.h"
#include "device/files.h"
#include "lint/elements.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

template <typename Matches>
bool anyChild(const XMLElement& parent, Matches matches) {
  const Elements children = childrenOf(parent);
  return std::any_of(children.begin(), children.end(),
                     [&](const XMLElement* child) { return matches(*child); });
}

bool isNamed(const XMLElement& element, std::string_view name) {
  return element.Name() == name;
}

// "Stream" may be a section of parameters, too.
bool isMedia(const XMLElement& top) {
  return isNamed(top, "LiveMediaService") ||
         (isNamed(top, "Stream") && !anyChild(top, [](const XMLElement& child) {
            return has(child, "Cur") || has(child, "Def");
          }));
}

bool isPresets(const XMLElement& top) {
  return isNamed(top, "PresetCfg") || anyChild(top, [](const XMLElement& child) {
           return beginsWith(child.Name(), "preset") &&
                  (has(child, "Id") || has(child, "Description"));
         });
}

bool isParameters(const XMLElement& top) {
  return isNamed(top, "System") || isNamed(top, "NetWork") ||
         anyChild(top, [](const XMLElement& child) { return has(child, "Cur"); });
}

bool isLanguage(const XMLElement& top) {
  return anyChild(top, [](const XMLElement& child) { return has(child, "Val"); });
}

struct Recognised {
  Kind kind;
  bool (*isIt)(const XMLElement& top);
};

constexpr Recognised kKinds[] = {{Kind::Media, isMedia},
                                 {Kind::Presets, isPresets},
                                 {Kind::Parameters, isParameters},
                                 {Kind::Language, isLanguage}};

// What a document configures, by what is in it.
Kind kindOf(const XMLDocument& document) {
  const Elements tops = childrenOf(document);
  for (const Recognised& known : kKinds)
    if (std::any_of(tops.begin(), tops.end(),
                    [&](const XMLElement* top) { return known.isIt(*top); }))
      return known.kind;
  return Kind::Unknown;
}

struct KnownFile {
  const char* path;
  Kind kind;
};

// What the library reads as such whatever is in it.
constexpr KnownFile kKnownFiles[] = {{CFG_FILE_BUSINESS, Kind::Parameters},
                                     {CFG_FILE_PRESET, Kind::Presets},
                                     {CFG_FILE_MPP, Kind::Media}};

// With the library's options.
device::Document parse(const std::string& bytes) {
  auto document = std::make_unique<XMLDocument>(true, tinyxml2::PRESERVE_WHITESPACE);
  document->Parse(bytes.data(), bytes.size());
  return document;
}

Kind kindOfDeviceFile(const Source& source) {
  for (const KnownFile& known : kKnownFiles)
    if (source.name == known.path) return known.kind;
  return source.isWhole() ? kindOf(*source.document) : Kind::Unknown;
}

// The library reports neither the line nor the reason why it does not load a file.
Source deviceSource(const std::string& path, const device::Copy& copy) {
  Source source;
  source.name = path;
  source.fault = copy.fault;
  source.document = copy.document.get();
  if (copy.loads() || copy.state == device::State::Damaged) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    source.isRead = file && readAll(file.get(), source.bytes);
  }
  if (source.isRead && !copy.loads()) source.parsed = parse(source.bytes);
  return source;
}

}  // namespace

std::vector<Source> sourcesOf(const std::vector<HostFile>& files) {
  std::vector<Source> sources;
  for (const HostFile& file : files) {
    Source source;
    source.name = file.path;
    source.fault = file.fault;
    source.isRead = file.fault.empty();
    source.bytes = file.contents;
    if (source.isRead) source.parsed = parse(source.bytes);
    if (source.isRead && !source.parsed->Error()) source.document = source.parsed.get();
    if (source.isWhole()) source.kind = kindOf(*source.document);
    sources.push_back(std::move(source));
  }
  return sources;
}

std::vector<Source> sourcesOf(const device::FileSet& set) {
  std::vector<Source> sources;
  for (const device::ConfigFile& file : set.files) {
    Source source = deviceSource(file.path(device::Place::Main), file.main);
    source.kind = kindOfDeviceFile(source);
    source.copies = &file;
    sources.push_back(std::move(source));
  }
  for (const std::string& name : device::filesIn(CFG_DIR_LANGUAGE)) {
    if (!device::isXmlName(name)) continue;
    const std::string path = CFG_DIR_LANGUAGE + name;
    device::Copy copy = device::loadCopy(path);
    Source source = deviceSource(path, copy);
    source.kind = Kind::Language;
    if (copy.loads()) source.parsed = std::move(copy.document);
    sources.push_back(std::move(source));
  }
  return sources;
}

}  // namespace camcfg::tool::lint
