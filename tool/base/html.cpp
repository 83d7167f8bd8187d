#include "base/html.h"

#include <cstring>

#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

constexpr char kEllipsis[] = "\xe2\x80\xa6";

// Marks and embeddings of direction, isolates, and separators of lines and paragraphs: they would
// change how the text around them is laid out.
bool isSteering(std::string_view character) {
  if (character.size() != 2 && character.size() != 3) return false;
  const char32_t code = codePointOf(character);
  return code == 0x61c || (code >= 0x200b && code <= 0x200f) ||
         (code >= 0x2028 && code <= 0x202e) || (code >= 0x2060 && code <= 0x206f) ||
         code == 0xfeff || (code >= 0xfff9 && code <= 0xfffb);
}

std::string writtenOut(char32_t character) {
  std::string digits;
  for (int shift = 12; shift >= 0; shift -= 4) digits += kHexDigits[(character >> shift) & 0xf];
  return "\\u" + digits;
}

void append(std::string_view character, std::string& result) {
  if (character == "&") {
    result += "&amp;";
  } else if (character == "<") {
    result += "&lt;";
  } else if (character == ">") {
    result += "&gt;";
  } else if (character == "\"") {
    result += "&quot;";
  } else if (isSteering(character)) {
    result += writtenOut(codePointOf(character));
  } else {
    result += character;
  }
}

}  // namespace

std::string htmlText(std::string_view text) {
  std::string result;
  const std::string plain = printable(asUtf8(text));
  for (std::size_t at = 0; at < plain.size();) {
    const Sequence sequence = sequenceAt(plain, at);
    append(std::string_view(plain).substr(at, sequence.length), result);
    at += sequence.length;
  }
  return result;
}

int widthOf(std::string_view text, int size) {
  int hundredths = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80)
      hundredths += byte >= 0xc0 ? 100 : 0;  // once for each character
    else if (std::strchr("WMm@%w", c) != nullptr)
      hundredths += 95;
    else if (std::strchr("iljtf.,:;!|'()[]/ ", c) != nullptr)
      hundredths += 33;
    else
      hundredths += byte >= 'A' && byte <= 'Z' ? 74 : 57;
  }
  return hundredths * size / 100;
}

std::string within(int width, std::string_view text, int size) {
  std::string attributes;
  if (widthOf(text, size) > width)
    write(attributes, " textLength=\"", width, "\" lengthAdjust=\"spacingAndGlyphs\"");
  return attributes;
}

std::string cutTo(std::string_view text, std::size_t most) {
  std::size_t at = 0;
  std::size_t shown = 0;
  std::size_t end = 0;
  while (at < text.size() && shown <= most) {
    if (shown + 1 == most) end = at;
    at += sequenceAt(text, at).length;
    ++shown;
  }
  if (shown <= most) return std::string(text);
  return std::string(text.substr(0, end)) + kEllipsis;
}

}  // namespace camcfg::tool
