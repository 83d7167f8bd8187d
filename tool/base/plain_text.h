#ifndef CAMCFG_TOOL_BASE_PLAIN_TEXT_H
#define CAMCFG_TOOL_BASE_PLAIN_TEXT_H

#include <strings.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/utf8.h"

namespace camcfg::tool {

inline bool beginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// Whether two texts are the same except for upper and lower case.
inline bool isSameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

inline std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// The text between single quotes.
inline std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

/// The beginning of a text that has at most so many bytes and ends between two characters.
inline std::string_view firstBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && utf8::continues(text[most])) --most;
  return text.substr(0, most);
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

/// An attribute's text; empty if it is missing.
inline std::string textOf(const tinyxml2::XMLElement& element, const char* attribute) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? "" : text;
}

/// A document, or a part of one, as the library writes it.
inline std::string written(const tinyxml2::XMLNode& node) {
  tinyxml2::XMLPrinter printer;
  node.Accept(&printer);
  return printer.CStr();
}

// Places of a document as messages name them: "live.srt[1].port".

/// A text for a message, cut if it is long.
inline std::string shortened(const std::string& text) {
  constexpr std::size_t kLongest = 120;
  return text.size() <= kLongest ? text : std::string(firstBytes(text, kLongest)) + "...";
}

/// "PLACE.NAME", and "PLACE["NAME"]" for a name that is no plain word.
inline std::string memberPlace(const std::string& place, const std::string& name) {
  const bool isWord = !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '_' || c == '-';
  });
  if (!isWord) return place + "[\"" + shortened(name) + "\"]";
  return place + (place.empty() ? "" : ".") + shortened(name);
}

/// "PLACE[INDEX]"
inline std::string elementPlace(const std::string& place, std::size_t index) {
  return place + "[" + std::to_string(index) + "]";
}

}  // namespace camcfg::tool

#endif
