#include "media/live_elements.h"

#include <strings.h>

#include <algorithm>

#include "base/library_log.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLElement;

std::string fileText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

void addEntry(XMLElement* section, const char* name, const std::vector<EntryPart>& parts) {
  XMLElement* entry = section->InsertNewChildElement(name);
  for (const EntryPart& part : parts) {
    if (part.value.is_null()) continue;
    const std::string text = fileText(part.value);
    if (part.attribute != nullptr) entry->SetAttribute(part.attribute, text.c_str());
    if (part.channel == nullptr) continue;
    XMLElement* channel = entry->InsertNewChildElement("Channel");
    channel->SetAttribute("Id", text.c_str());
    channel->SetAttribute("Type", part.channel);
  }
}

}  // namespace

bool rewriteSection(const MediaSection& section,
                    const std::vector<std::vector<EntryPart>>& entries) {
  return heard([&] {
           XMLElement* element = CFG_LM_Open(section.name, BU_FALSE);
           if (element == nullptr) return CFG_LM_ERR;
           element->DeleteChildren();
           for (const auto& entry : entries) addEntry(element, section.entries.front(), entry);
           return CFG_LM_CloseWrite();
         }) == 0;
}

void addIgnoredChannels(const XMLElement& entry, std::vector<std::string> types, Losses& losses) {
  for (const XMLElement* channel = entry.FirstChildElement(); channel != nullptr;
       channel = channel->NextSiblingElement()) {
    const char* type = channel->Attribute("Type");
    if (strcasecmp(channel->Name(), "Channel") != 0 || type == nullptr) continue;
    const auto expected = std::find_if(types.begin(), types.end(), [&](const std::string& known) {
      return strcasecmp(known.c_str(), type) == 0;
    });
    if (expected == types.end())
      losses.push_back("the channel of Type \"" + std::string(type) + "\" at line " +
                       std::to_string(channel->GetLineNum()));
    else
      types.erase(expected);
  }
}

}  // namespace camcfg::tool::media
