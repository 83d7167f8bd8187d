#include <array>
#include <charconv>
#include <cmath>

#include "base/json.h"
#include "base/utf8.h"

namespace camcfg::tool {
namespace {

void addEscaped(unsigned char c, std::string& text) {
  constexpr std::string_view kLetters = "\b\f\n\r\t\"\\";
  constexpr std::string_view kNames = "bfnrt\"\\";
  constexpr char kDigits[] = "0123456789abcdef";
  const std::size_t found = kLetters.find(static_cast<char>(c));
  text += '\\';
  if (found != std::string_view::npos)
    text += kNames[found];
  else
    text.append("u00").append(1, kDigits[c >> 4]).append(1, kDigits[c & 15]);
}

void addText(const std::string& value, std::string& text) {
  text += '"';
  for (std::size_t at = 0; at < value.size();) {
    const auto c = static_cast<unsigned char>(value[at]);
    const utf8::Sequence sequence = utf8::sequenceAt(value, at);
    if (!sequence.isValid)
      text += utf8::kReplacement;
    else if (c < 0x20 || c == '"' || c == '\\')
      addEscaped(c, text);
    else
      text.append(value, at, sequence.length);
    at += sequence.length;
  }
  text += '"';
}

// The fewest digits that give the same number again, never looking like an integer.
std::string realText(double value) {
  if (!std::isfinite(value)) return "null";
  constexpr int kLongestPlain = 15;
  constexpr int kSmallestPlain = -4;
  std::array<char, 32> buffer{};
  const auto* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                        std::fabs(value), std::chars_format::scientific)
                              .ptr;
  const std::string scientific(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t exponentAt = scientific.find('e');
  std::string digits = scientific.substr(0, exponentAt);
  if (digits.size() > 1) digits.erase(1, 1);
  const int exponent = std::stoi(scientific.substr(exponentAt + 1));
  const int point = exponent + 1;
  const int count = static_cast<int>(digits.size());
  const std::string sign = std::signbit(value) ? "-" : "";
  if (point > kLongestPlain || point <= kSmallestPlain) return sign + scientific;
  if (point <= 0) return sign + "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
  if (count <= point)
    return sign + digits + std::string(static_cast<std::size_t>(point - count), '0') + ".0";
  return sign + digits.insert(static_cast<std::size_t>(point), 1, '.');
}

class Writer {
 public:
  explicit Writer(int indent) : indent_(indent) {}

  void add(const Json& value, int depth) {
    if (value.is_string())
      addText(value.text(), text_);
    else if (value.is_structured())
      addStructured(value, depth);
    else
      text_ += scalar(value);
  }

  std::string take() { return std::move(text_); }

 private:
  static std::string scalar(const Json& value) {
    if (value.is_null()) return "null";
    if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
    if (!value.is_number_integer()) return realText(value.get<double>());
    return value.is_unsigned() ? std::to_string(value.get<std::uint64_t>())
                               : std::to_string(value.get<std::int64_t>());
  }

  void breakLine(int depth) {
    if (indent_ < 0) return;
    text_ += '\n';
    text_.append(static_cast<std::size_t>(indent_) * static_cast<std::size_t>(depth), ' ');
  }

  void addStructured(const Json& value, int depth) {
    text_ += value.is_object() ? '{' : '[';
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (i > 0) text_ += ',';
      breakLine(depth + 1);
      if (value.is_object()) {
        addText(value.names()[i], text_);
        text_ += indent_ < 0 ? ":" : ": ";
      }
      add(value.at(i), depth + 1);
    }
    if (!value.empty()) breakLine(depth);
    text_ += value.is_object() ? '}' : ']';
  }

  int indent_;
  std::string text_;
};

}  // namespace

std::string Json::dump(int indent) const {
  Writer writer(indent);
  writer.add(*this, 0);
  return writer.take();
}

}  // namespace camcfg::tool
