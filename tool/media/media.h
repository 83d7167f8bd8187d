#ifndef CAMCFG_TOOL_MEDIA_MEDIA_H
#define CAMCFG_TOOL_MEDIA_MEDIA_H

#include <camcfg/stream.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "device/files.h"
#include "settings/media.h"

namespace camcfg::tool::media {

using StreamSource = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;
using StreamCache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

/// A section in a document of the media file.
/// @throws Refusal if it is not there
tinyxml2::XMLElement* requireSection(tinyxml2::XMLDocument& document, const settings::Table& table);

/// The elements of a section that become entries, in document order.
std::vector<tinyxml2::XMLElement*> entriesOf(tinyxml2::XMLElement* section,
                                             const settings::Table& table);

/// "/cfg0/mpp_cfg.xml:LINE"
std::string mediaPlace(const tinyxml2::XMLNode* node);

// Each of these loads a section through the library and leaves no document open, whatever becomes of
// it. They throw a Refusal with the status of unusable files; over a faulty entry it names the line
// and what the library says of it.

/// The entries, as documents have them.
Json loadEntries(const settings::Table& table);

std::list<StreamSource> loadStreamSources();
std::list<StreamCache> loadStreamCaches();

/// Entries with their secrets masked, or as they are.
Json shownEntries(const settings::Table& table, bool showSecrets);

}  // namespace camcfg::tool::media

#endif
