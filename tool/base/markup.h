#ifndef CAMCFG_TOOL_BASE_MARKUP_H
#define CAMCFG_TOOL_BASE_MARKUP_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace camcfg::tool {

/// Where a text is that was not found.
constexpr std::size_t kNowhere = std::string_view::npos;

// All of these are parts of the bytes that were read, which must outlive them.

/// An attribute of a tag.
struct MarkupAttribute {
  std::string_view all;  ///< from its name to the quote that ends its value
  std::string_view name;
  std::string_view value;  ///< as written, without the quotes
};

/// One tag, or what is between two of them.
struct Markup {
  enum class Kind { Text, Start, Empty, End, Comment, CData, Declaration, Other };

  Kind kind = Kind::Text;
  std::string_view all;   ///< with all that delimits it
  std::string_view name;  ///< of a tag
  std::vector<MarkupAttribute> attributes{};

  bool isElement() const { return kind == Kind::Start || kind == Kind::Empty; }
};

/// What a document consists of, in its order and without a gap: "Other" is "<!...>", text may be white
/// space. Ends where the library ends reading: at a zero byte, or at what is no markup.
/// @param bytes  of a document that the library loads; else the result says nothing
std::vector<Markup> markupIn(std::string_view bytes);

/// Whether a byte may be in the name of an element or attribute, at its beginning or later.
bool isInName(char c);

/// What comes before a part of the bytes.
inline std::size_t offsetOf(std::string_view part, std::string_view bytes) {
  return static_cast<std::size_t>(part.data() - bytes.data());
}

/// Which of them is a space to the library: in tags, and around text.
inline bool isMarkupSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// How much of the bytes is a byte order mark, or white space before one.
std::size_t lengthToMark(std::string_view bytes);

constexpr std::string_view kMarkBytes = "\xef\xbb\xbf";

}  // namespace camcfg::tool

#endif
