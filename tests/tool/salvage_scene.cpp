#include "tool/salvage_scene.h"

#include <tinyxml2.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace camcfg::tests {
namespace {

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

constexpr std::pair<const char*, const char*> kLists[] = {
    {"/PresetCfg", "presets"},
    {"/Stream/StreamSource", "stream.sources"},
    {"/Stream/StreamCache", "stream.caches"},
    {"/LiveMediaService/WEBSOCKET", "live.websocket"},
    {"/LiveMediaService/RTSP", "live.rtsp"},
    {"/LiveMediaService/RTMP", "live.rtmp"},
    {"/LiveMediaService/NDI", "live.ndi"},
    {"/LiveMediaService/SRT", "live.srt"},
};

bool has(const XMLElement& element, const char* attribute) {
  return element.FindAttribute(attribute) != nullptr;
}

std::string textOf(const XMLElement& element) {
  tinyxml2::XMLPrinter printer(nullptr, true);
  element.Accept(&printer);
  return printer.CStr();
}

void read(const XMLNode& parent, const std::string& path, Values& values) {
  for (const auto* element = parent.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement()) {
    for (const auto& [place, list] : kLists)
      if (path == place) {
        const char* key = element->Attribute(has(*element, "Id") ? "Id" : "Name");
        values[std::string(list) + "[" + (key == nullptr ? "" : key) + "]"] = textOf(*element);
      }
    const std::string place = path + "/" + element->Name();
    if (has(*element, "Cur"))
      values[place.substr(1)] = element->Attribute("Cur");
    else
      for (const auto* each = element->FirstAttribute(); each != nullptr; each = each->Next())
        if (place.rfind("/NetWork", 0) == 0 || place.rfind("/System", 0) == 0)
          values[place.substr(1) + "/" + each->Name()] = each->Value();
    read(*element, place, values);
  }
}

void append(XMLElement& element, const char* attribute, const std::string& text) {
  if (has(element, attribute))
    element.SetAttribute(attribute, (element.Attribute(attribute) + text).c_str());
}

// The option of a list that is so many after the present one.
std::string otherOption(const std::string& options, const std::string& present, int distance) {
  std::vector<std::string> all;
  std::size_t now = 0;
  for (std::size_t start = 0; start <= options.size();) {
    const std::size_t end = std::min(options.find(',', start), options.size());
    if (options.substr(start, end - start) == present) now = all.size();
    all.push_back(options.substr(start, end - start));
    start = end + 1;
  }
  return all[(now + static_cast<std::size_t>(distance)) % all.size()];
}

void mark(XMLElement& element, int number) {
  const std::string text = std::to_string(number);
  const bool isAddress =
      has(element, "Cur") && std::strstr(element.Attribute("Cur"), "192.168.") != nullptr;
  if (has(element, "OptTxt"))
    element.SetAttribute(
        "Cur", otherOption(element.Attribute("OptTxt"), element.Attribute("Cur"), number).c_str());
  if (has(element, "Step"))
    element.SetAttribute(
        "Cur", std::min(element.IntAttribute("Max"),
                        element.IntAttribute("Min") + number * element.IntAttribute("Step")));
  if (isAddress)
    element.SetAttribute("Cur",
                         (text + "0" + std::string(element.Attribute("Cur")).substr(3)).c_str());
  for (const char* name : {"DeviceName", "Hostname", "Description", "MainStreamName", "url"})
    append(element, name, text);
  if (std::strcmp(element.Name(), "MediaGroup") != 0) append(element, "Name", text);
  for (const char* name : {"PanPos", "Port", "Latency"})
    if (has(element, name)) element.SetAttribute(name, element.IntAttribute(name) + number);
}

void markAll(XMLNode& parent, int number) {
  for (auto* element = parent.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement()) {
    mark(*element, number);
    markAll(*element, number);
  }
}

// What is at a place of a copy; empty if nothing is.
std::string at(const Values& values, const std::string& place) {
  const auto found = values.find(place);
  return found == values.end() ? "" : found->second;
}

}  // namespace

Values valuesOf(const std::string& text) {
  tinyxml2::XMLDocument document;
  Values values;
  if (document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS) read(document, "", values);
  return values;
}

std::string marked(const std::string& factory, int mark) {
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  document.Parse(factory.data(), factory.size());
  markAll(document, mark);
  if (XMLElement* presets = document.FirstChildElement("PresetCfg")) {
    presets->DeleteChild(presets->LastChildElement());
    XMLElement* added = presets->FirstChildElement()->DeepClone(&document)->ToElement();
    added->SetAttribute("Id", 20 + mark);
    presets->InsertEndChild(added);
  }
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
}

std::string cut(const std::string& text, std::size_t size) {
  return text.substr(0, size);
}

std::string zeroed(std::string text, std::size_t block, std::size_t size) {
  const std::size_t start = block * size;
  const std::size_t length = std::min(size, text.size() - start);
  return text.replace(start, length, length, '\0');
}

std::string repeated(std::string text, std::size_t block, std::size_t size) {
  if (block == 0) return text;
  const std::size_t start = block * size;
  const std::size_t length = std::min(size, text.size() - start);
  return text.replace(start, length, text.substr(start - size, length));
}

std::string flipped(std::string text, std::mt19937& random) {
  char& byte = text[random() % text.size()];
  byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << random() % 8));
  return text;
}

std::size_t SalvageScene::broughtBack(const Values& result) const {
  std::size_t number = 0;
  for (const auto& [place, value] : inMain)
    if (at(result, place) == value && result.count(place) != 0) ++number;
  return number;
}

std::size_t SalvageScene::invented(const Values& result) const {
  std::size_t number = 0;
  for (const auto& [place, value] : result) {
    bool isKnown = false;
    for (const Values* copy : {&inMain, &inBackup, &inFactory}) {
      const auto found = copy->find(place);
      isKnown = isKnown || (found != copy->end() && found->second == value);
    }
    if (!isKnown) ++number;
  }
  return number;
}

std::string SalvageScene::faultOf(const tool::device::SalvagedFile& salvaged) const {
  const Values result = valuesOf(salvaged.bytes);
  if (result.size() != salvaged.settings.size())
    return "the report has " + std::to_string(salvaged.settings.size()) + " settings, the file " +
           std::to_string(result.size());
  for (const tool::Json& setting : salvaged.settings) {
    const std::string place = setting.at("place").text();
    const std::string source = setting.at("source").text();
    const Values& copy = source == "factory" ? inFactory : source == "backup" ? inBackup : inMain;
    if (result.count(place) == 0 || copy.count(place) == 0 || at(result, place) != at(copy, place))
      return std::string(place)
          .append(" from ")
          .append(source)
          .append(" is '")
          .append(at(result, place))
          .append("', there it was '")
          .append(at(copy, place))
          .append("'");
    if (source == "disputed" && at(inBackup, place) == at(inMain, place))
      return place + " is no matter of dispute";
  }
  return "";
}

}  // namespace camcfg::tests
