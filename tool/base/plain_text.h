#ifndef CAMCFG_TOOL_BASE_PLAIN_TEXT_H
#define CAMCFG_TOOL_BASE_PLAIN_TEXT_H

#include <strings.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/text_ref.h"

namespace camcfg::tool {

/// The digits of a hexadecimal number.
constexpr std::string_view kHexDigits = "0123456789abcdef";

inline bool beginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// Whether two texts are the same except for upper and lower case.
inline bool isSameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

/// Whether there is nothing to see in a text.
inline bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The two digits of a byte.
std::string hexadecimal(unsigned char byte);

/// Whether any byte is beyond ASCII.
bool hasHighBytes(std::string_view text);

/// The text between single quotes.
inline std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

/// Texts or numbers in a row: "1, 2, 3".
template <typename Range>
std::string joined(const Range& range, std::string_view between = ", ") {
  std::string text;
  bool isFirst = true;
  for (const auto& element : range) {
    if (!isFirst) text += between;
    isFirst = false;
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(element)>>)
      text += std::to_string(element);
    else
      text += element;
  }
  return text;
}

template <typename Range, typename Value>
bool isAmong(const Range& range, const Value& value) {
  return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

/// What is between separators, at least one text, each of which may be empty: "a", "" of "a,".
std::vector<std::string> parts(const std::string& text, char separator);

/// An attribute's text; empty if it is missing.
inline std::string textOf(const tinyxml2::XMLElement& element, const char* attribute) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? "" : text;
}

/// What is between blanks, spaces or ends of lines.
std::vector<std::string> wordsIn(const std::string& text);

/// A document, or a part of one, as the library writes it.
std::string written(const tinyxml2::XMLNode& node);

/// The number that a text is from end to end: digits, with a "-" before them if it is negative. One
/// that does not fit is the nearest that does.
std::optional<long long> decimal(std::string_view text);

/// The same, if it fits into 32 bits, which is what files and the library hold.
std::optional<std::int32_t> decimal32(std::string_view text);

/// "2026-11-21T11:15:13Z", of seconds since 1970; empty if that is out of the calendar's reach.
std::string utcText(std::int64_t seconds);

// UTF-8.

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

/// The code point of a character of two or three bytes.
char32_t codePointOf(std::string_view character);

/// A text with its capital letters made small ones: Latin, Greek, Cyrillic and Armenian. The C library
/// knows them by its locales only, of which a device has none.
std::string inLowerCase(std::string_view text);

/// A text with what is not UTF-8 replaced by U+FFFD.
std::string asUtf8(std::string_view text);

/// A text as a part of a url: all but letters, digits and this punctuation is "%20".
std::string inUrl(std::string_view text, std::string_view punctuation);

/// How many characters a text has.
std::size_t characters(std::string_view text);

/// The beginning of a text that has at most so many bytes and ends between two characters.
std::string_view firstBytes(std::string_view text, std::size_t most);

// What messages say.

/// The text with its control characters written as "\n", "\t", "\x1b" or "\u009b": it stays on its
/// line and cannot steer a terminal.
std::string printable(const std::string& text);

/// The text with its endless words cut, so that a line about one can still be read.
std::string withShortWords(const std::string& text);

/// A text for a message, cut if it is long.
std::string shortened(const std::string& text);

/// A place of a document, "live.srt[1].port": "PLACE.NAME", and "PLACE["NAME"]" for a name that is
/// no plain word.
std::string memberPlace(TextRef place, TextRef member);

/// "PLACE[INDEX]"
std::string elementPlace(const std::string& place, std::size_t index);

/// The word that comes nearest to what was written; empty if none comes near.
std::string nearestWord(const std::string& written, const std::vector<std::string>& words);

/// "; did you mean 'WORD'?" with that word; empty if none comes near.
std::string didYouMean(const std::string& written, const std::vector<std::string>& words);

/// "there is no section 'WORD'", with the nearest that there is.
std::string noSection(const std::string& written, const std::vector<std::string>& sections);

}  // namespace camcfg::tool

#endif
