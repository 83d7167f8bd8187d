#ifndef CAMCFG_TOOL_BASE_UTF8_H
#define CAMCFG_TOOL_BASE_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace camcfg::tool::utf8 {

/// What stands for bytes that are not UTF-8.
inline constexpr std::string_view kReplacement = "\xef\xbf\xbd";

/// Bytes that belong together: a character, or as much of one as is there before a byte that does
/// not continue it.
struct Sequence {
  std::size_t length;
  bool isValid;
};

/// The bytes from a place of a text on.
Sequence sequenceAt(std::string_view text, std::size_t at);

/// Whether a byte continues a character.
inline bool continues(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

/// A text with what is not UTF-8 replaced by U+FFFD.
std::string repaired(std::string_view text);

}  // namespace camcfg::tool::utf8

#endif
