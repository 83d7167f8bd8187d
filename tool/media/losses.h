#ifndef CAMCFG_TOOL_MEDIA_LOSSES_H
#define CAMCFG_TOOL_MEDIA_LOSSES_H

#include <tinyxml2.h>

#include <string>
#include <vector>

#include "settings/setting.h"

namespace camcfg::tool::media {

using Losses = std::vector<std::string>;

/// What is lost of a section when it is saved whole: comments, texts, and elements and
/// attributes that are not written, each with its line: "the comment at line 7". The section's own
/// attributes stay.
Losses lossesOf(const tinyxml2::XMLElement& section, const settings::Table& table);

/// What saving a section of the device whole loses, as a remark; none if it is nothing.
Losses lossNotes(const settings::Table& table);

}  // namespace camcfg::tool::media

#endif
