#ifndef CAMCFG_TOOL_MEDIA_WIRING_PICTURE_H
#define CAMCFG_TOOL_MEDIA_WIRING_PICTURE_H

#include <string>

#include "media/wiring.h"

namespace camcfg::tool::media {

/// The wiring as a graph in the DOT language: sources, caches and sessions from left to right. An
/// edge is solid where a source is carried or a cache sent, dashed where a source may be carried.
/// Whatever is disabled is grey, whatever does not fit together red.
std::string pictureOf(const Wiring& wiring);

/// A text within the quotes of the DOT language, shown as it is: control characters as "\n" or
/// "\x1b", bytes that are not UTF-8 as U+FFFD.
std::string dotText(const std::string& text);

}  // namespace camcfg::tool::media

#endif
