#ifndef CAMCFG_TOOL_MEDIA_LIVE_ELEMENTS_H
#define CAMCFG_TOOL_MEDIA_LIVE_ELEMENTS_H

#include <camcfg/livemedia.h>

#include "media/record_section.h"

namespace camcfg::tool::media {

/// One member of an entry as it goes into a file.
struct EntryPart {
  const char* attribute;
  const char* channel;
  Json value;  ///< null: there is none
};

/// Replaces a section of the live media services, opened and saved as a document. Each entry
/// becomes an element of the section's first name.
/// @return false if the section could not be opened
bool rewriteSection(const MediaSection& section,
                    const std::vector<std::vector<EntryPart>>& entries);

/// Replaces a section by records whose members tell what they are in a file. For the records that
/// the library does not save as it loads them.
template <typename Record>
bool storeElements(const MediaSection& section, const settings::Members<Record>& members,
                   const std::list<Record>& records) {
  std::vector<std::vector<EntryPart>> entries;
  for (const Record& record : records) {
    entries.emplace_back();
    for (const settings::Member<Record>& member : members)
      entries.back().push_back({member.attribute, member.channel, member.write(record)});
  }
  return rewriteSection(section, entries);
}

/// Adds the channels of an entry that loading ignores: of another Type, or the second of one.
void addIgnoredChannels(const tinyxml2::XMLElement& entry, std::vector<std::string> types,
                        Losses& losses);

/// What such a section loses when it is rewritten.
template <typename Record>
Losses elementLosses(const std::string& name, const MediaSection& section,
                     const settings::Members<Record>& members) {
  ElementForm form{section.entries.front(), {}, {{"Channel", {"Id", "Type"}, {}}}};
  std::vector<std::string> types;
  for (const settings::Member<Record>& member : members) {
    if (member.attribute != nullptr) form.attributes.push_back(member.attribute);
    if (member.channel != nullptr) types.emplace_back(member.channel);
  }
  return lossNotes(name, section, {form}, [&](const tinyxml2::XMLElement& entry, Losses& losses) {
    addIgnoredChannels(entry, types, losses);
  });
}

}  // namespace camcfg::tool::media

#endif
