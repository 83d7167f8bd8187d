#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "base/concat.h"
#include "base/json.h"
#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

void addEscaped(char c, std::string& text) {
  constexpr std::string_view kLetters = "\b\f\n\r\t\"\\";
  constexpr std::string_view kNames = "bfnrt\"\\";
  const std::size_t found = kLetters.find(c);
  text += '\\';
  if (found != std::string_view::npos)
    text += kNames[found];
  else
    text.append("u00").append(hexadecimal(static_cast<unsigned char>(c)));
}

void addText(const std::string& value, std::string& text) {
  text += '"';
  for (std::size_t at = 0; at < value.size();) {
    const char c = value[at];
    const Sequence sequence = sequenceAt(value, at);
    if (!sequence.isValid)
      text += kReplacement;
    else if (static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\')
      addEscaped(c, text);
    else
      text.append(value, at, sequence.length);
    at += sequence.length;
  }
  text += '"';
}

// The fewest digits that give the same number again, never looking like an integer.
std::string realText(double value) {
  constexpr double kLeastPlain = 1e-4;
  constexpr double kMostPlain = 1e15;
  if (!std::isfinite(value)) return "null";
  const double size = std::fabs(value);
  const bool isPlain = size == 0 || (size >= kLeastPlain && size < kMostPlain);
  std::array<char, 32> buffer{};
  const char* end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                    isPlain ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  const std::string text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  return isPlain && text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string scalarText(const Json& value) {
  if (value.is_null()) return "null";
  if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
  if (!value.is_number_integer()) return realText(value.get<double>());
  return value.is_unsigned() ? std::to_string(value.get<std::uint64_t>())
                             : std::to_string(value.get<std::int64_t>());
}

void breakLine(int width, std::string& text) {
  if (width >= 0) text.append(1, '\n').append(static_cast<std::size_t>(width), ' ');
}

// `width` is that of the line's indentation; below 0 if all is on one line.
void addValue(const Json& value, int indent, int width, std::string& text) {
  if (value.is_string()) return addText(value.text(), text);
  if (!value.is_structured()) {
    text += scalarText(value);
    return;
  }
  const int inner = indent < 0 ? -1 : width + indent;
  text += value.is_object() ? '{' : '[';
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (i > 0) text += ',';
    breakLine(inner, text);
    if (value.is_object()) {
      addText(value.names()[i], text);
      text += indent < 0 ? ":" : ": ";
    }
    addValue(value.at(i), indent, inner, text);
  }
  if (!value.empty()) breakLine(width, text);
  text += value.is_object() ? '}' : ']';
}

// A packed value is a letter for its kind, the number of its bytes or elements, and these.
std::string packedHead(char kind, std::size_t size) {
  return concat(kind, size, ":");
}

std::string packedBytes(char kind, const std::string& bytes) {
  return packedHead(kind, bytes.size()) + bytes;
}

// Takes a packed value off the beginning of some bytes.
Json takeValue(std::string_view& bytes) {
  const std::size_t colon = bytes.find(':');
  const auto count = decimal(bytes.substr(std::min<std::size_t>(bytes.size(), 1), colon - 1));
  if (colon == std::string_view::npos || !count || *count < 0)
    throw std::runtime_error("packed value cut short");
  const char kind = bytes.front();
  const auto size = static_cast<std::size_t>(*count);
  bytes.remove_prefix(colon + 1);
  if (kind == 'a' || kind == 'o') {
    Json value = kind == 'a' ? Json::array() : Json::object();
    for (std::size_t i = 0; i < size; ++i) {
      if (kind == 'a') {
        value.push_back(takeValue(bytes));
        continue;
      }
      const std::string name = takeValue(bytes).text();
      value[name] = takeValue(bytes);
    }
    return value;
  }
  if (size > bytes.size()) throw std::runtime_error("packed value cut short");
  const std::string text(bytes.substr(0, size));
  bytes.remove_prefix(size);
  return kind == 't' ? Json(text) : readJson(text).value;
}

}  // namespace

std::string Json::dump(int indent) const {
  std::string text;
  addValue(*this, indent, indent < 0 ? -1 : 0, text);
  return text;
}

std::string packed(const Json& value) {
  if (value.is_string()) return packedBytes('t', value.text());
  if (!value.is_structured()) return packedBytes('s', value.dump());
  std::string bytes = packedHead(value.is_array() ? 'a' : 'o', value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value.is_object()) bytes += packedBytes('t', value.names()[i]);
    bytes += packed(value.at(i));
  }
  return bytes;
}

Json unpacked(const std::string& bytes) {
  std::string_view rest = bytes;
  return takeValue(rest);
}

}  // namespace camcfg::tool
