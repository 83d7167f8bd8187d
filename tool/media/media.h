#ifndef CAMCFG_TOOL_MEDIA_MEDIA_H
#define CAMCFG_TOOL_MEDIA_MEDIA_H

#include <camcfg/stream.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "device/section.h"
#include "settings/media.h"
#include "settings/table.h"

namespace camcfg::tool::media {

using StreamCache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

/// The sections of the media file, for export and import.
std::vector<device::Section> sections();

/// A section in a document of the media file; null if it is missing.
const tinyxml2::XMLElement* sectionIn(const tinyxml2::XMLDocument& document,
                                      const settings::Table& table);

/// Why there is no such section.
std::string whyMissing(const tinyxml2::XMLDocument& document, const settings::Table& table);

/// The section.
/// @throws Refusal if it is missing
tinyxml2::XMLElement& requireSection(tinyxml2::XMLDocument& document, const settings::Table& table);

/// The elements inside one that a loader takes for entries, in document order: those of these names,
/// in upper or lower case.
std::vector<const tinyxml2::XMLElement*> entriesOf(const tinyxml2::XMLElement& parent,
                                                   const std::vector<const char*>& names);

/// The form that loaders know an element by; null for one that they pass over.
const settings::ElementForm* formOf(const tinyxml2::XMLElement& element,
                                    const std::vector<settings::ElementForm>& forms);

/// "/cfg0/mpp_cfg.xml:LINE"
std::string mediaPlace(const tinyxml2::XMLNode& node);

// Each of these loads a section through the library and leaves no document open, whatever becomes of
// it. They throw a Refusal with the status of unusable files; over a faulty entry it names the line
// and what the library says of it.

/// The entries, as documents have them.
Json loadEntries(const settings::Table& table);

std::list<StreamCache> loadStreamCaches();

/// What saving a section of the device whole loses, as a remark; none if it is nothing: comments,
/// texts, and elements and attributes that are not written, each with its line. The section's own
/// attributes stay.
std::vector<std::string> lossNotes(const settings::Table& table);

/// Entries with their secrets masked, or as they are.
Json shownEntries(const settings::Table& table, bool showSecrets);

}  // namespace camcfg::tool::media

#endif
