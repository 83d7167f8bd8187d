#include "lint/lint.h"

#include <camcfg/types.h>

#include <algorithm>

#include "base/host.h"
#include "base/markup.h"
#include "device/files.h"
#include "lint/item.h"
#include "settings/network.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

bool isOneOf(const XMLElement& element, std::initializer_list<std::string_view> names) {
  return isAmong(names, std::string_view(element.Name()));
}

// Whether a child, whose name begins like this, has one of two attributes.
bool anyChildHas(const XMLElement& top, const char* attribute, const char* other,
                 std::string_view name = "") {
  const Elements children = childrenOf(top);
  return std::any_of(children.begin(), children.end(), [&](const XMLElement* child) {
    return beginsWith(child->Name(), name) && (has(*child, attribute) || has(*child, other));
  });
}

// "Stream" may be a section of parameters, too.
bool isMedia(const XMLElement& top) {
  return isOneOf(top, {"LiveMediaService"}) ||
         (isOneOf(top, {"Stream"}) && !anyChildHas(top, "Cur", "Def"));
}

bool isPresets(const XMLElement& top) {
  return isOneOf(top, {"PresetCfg"}) || anyChildHas(top, "Id", "Description", "preset");
}

bool isParameters(const XMLElement& top) {
  return isOneOf(top, {"System", settings::kNetworkSection}) || anyChildHas(top, "Cur", "Cur");
}

bool isLanguage(const XMLElement& top) {
  return anyChildHas(top, "Val", "Val");
}

// What a document configures, by what is in it.
FileKind kindOf(const XMLDocument& document) {
  const Elements tops = childrenOf(document);
  const auto anyIs = [&](bool (*isIt)(const XMLElement& top)) {
    return std::any_of(tops.begin(), tops.end(), [&](const XMLElement* top) { return isIt(*top); });
  };
  if (anyIs(isMedia)) return FileKind::Media;
  if (anyIs(isPresets)) return FileKind::Presets;
  if (anyIs(isParameters)) return FileKind::Parameters;
  return anyIs(isLanguage) ? FileKind::Language : FileKind::Unknown;
}

// The library reads some files as such whatever is in them.
FileKind kindOfDeviceFile(const Source& source) {
  if (source.name == CFG_FILE_BUSINESS) return FileKind::Parameters;
  if (source.name == CFG_FILE_PRESET) return FileKind::Presets;
  if (source.name == CFG_FILE_MPP) return FileKind::Media;
  return source.isWhole() ? kindOf(*source.document) : FileKind::Unknown;
}

// The library reports neither the line nor the reason why it does not load a file.
Source deviceSource(const std::string& path, const device::Copy& copy) {
  Source source;
  source.name = path;
  source.fault = copy.fault;
  source.document = copy.document.get();
  if (copy.loads() || copy.state == device::State::Damaged) {
    std::optional<std::string> bytes = readFile(path);
    source.isRead = bytes.has_value();
    if (bytes) source.bytes = std::move(*bytes);
  }
  if (source.isRead && !copy.loads()) source.parsed = device::parsed(source.bytes);
  return source;
}

}  // namespace

bool isWebPage(const Source& source) {
  if (source.isWhole()) return isSameWord(source.document->FirstChildElement()->Name(), "html");
  std::string_view text = source.bytes;
  text.remove_prefix(lengthToMark(text));
  while (!text.empty() && isMarkupSpace(text.front())) text.remove_prefix(1);
  constexpr std::string_view kBeginnings[] = {"<!doctype html", "<html>", "<html "};
  return std::any_of(std::begin(kBeginnings), std::end(kBeginnings), [&](std::string_view each) {
    return isSameWord(text.substr(0, each.size()), each);
  });
}

std::vector<Source> sourcesOf(const std::vector<HostFile>& files) {
  std::vector<Source> sources;
  for (const HostFile& file : files) {
    Source source;
    source.name = file.path;
    source.fault = file.fault;
    source.isRead = file.fault.empty();
    source.bytes = file.contents;
    if (source.isRead) source.parsed = device::parsed(source.bytes);
    if (source.isRead && !source.parsed->Error()) source.document = source.parsed.get();
    if (source.isWhole()) source.kind = kindOf(*source.document);
    sources.push_back(std::move(source));
  }
  return sources;
}

std::vector<Source> sourcesOf(const std::vector<device::Contents>& files) {
  std::vector<Source> sources;
  for (const device::Contents& file : files) {
    Source source;
    source.name = file.path;
    source.isRead = source.isOfDevice = true;
    source.bytes = file.bytes;
    source.parsed = device::parsed(source.bytes);
    if (!source.parsed->Error()) source.document = source.parsed.get();
    source.kind = kindOfDeviceFile(source);
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
    source.isOfDevice = true;
    sources.push_back(std::move(source));
  }
  for (const std::string& name : device::filesIn(CFG_DIR_LANGUAGE)) {
    if (!device::isXmlName(name)) continue;
    const std::string path = CFG_DIR_LANGUAGE + name;
    device::Copy copy = device::loadCopy(path);
    Source source = deviceSource(path, copy);
    source.kind = FileKind::Language;
    source.isOfDevice = true;
    if (copy.loads()) source.parsed = std::move(copy.document);
    sources.push_back(std::move(source));
  }
  return sources;
}

}  // namespace camcfg::tool::lint
