#ifndef CAMCFG_TOOL_MEDIA_READABLE_H
#define CAMCFG_TOOL_MEDIA_READABLE_H

#include <functional>

#include "media/media.h"

namespace camcfg::tool::media {

// Over one entry that does not load, the library loads nothing of its section.

/// Reads the media file; if some of it does not load, a copy of the file without that.
/// @param read   called on the device, or on a copy of it in a process of its own
/// @param table  whose entries it reads; null: those of all sections
/// @throws Refusal if the file cannot be loaded at all
device::Readable asFarAsReadable(const std::function<Json()>& read,
                                 const settings::Table* table = nullptr);

/// Makes sure that the media file has an element for a section: the library needs one to write into.
/// @return false if that failed
bool ensureSection(const settings::Table& table);

}  // namespace camcfg::tool::media

#endif
