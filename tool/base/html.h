#ifndef CAMCFG_TOOL_BASE_HTML_H
#define CAMCFG_TOOL_BASE_HTML_H

#include <string>
#include <string_view>

#include "base/concat.h"

namespace camcfg::tool {

/// A text as HTML and SVG have it, within elements and within double quotes. It stays a text, whatever is
/// in it: control characters, and those that turn the direction of a line, are written out as
/// "\x1b" and "\u202e", bytes that are not UTF-8 become U+FFFD.
std::string htmlText(std::string_view text);

/// Appends texts and numbers as they are: what is to stay a text goes through htmlText.
template <typename... Parts>
[[gnu::always_inline]] inline void write(std::string& to, const Parts&... parts) {
  const TextPart all[] = {TextPart(parts)...};
  append(to, all, sizeof...(parts));
}

/// About how many pixels wide a text of this size is, rather more than less: no font is known here.
int widthOf(std::string_view text, int size);

/// The attributes of an SVG text that keep it within so many pixels; none if it is narrower.
std::string within(int width, std::string_view text, int size);

/// The beginning of a text, with an ellipsis where it is longer.
/// @param most  characters, the ellipsis included
std::string cutTo(std::string_view text, std::size_t most);

}  // namespace camcfg::tool

#endif
