#include "exchange/print.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

constexpr std::size_t kWidth = 120;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kRecordIndent = 3 * kIndent;  // {"live": {"srt": [RECORD

std::string scalar(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string nameOf(const std::string& key) {
  return scalar(Json(key)) + ": ";
}

std::string onOneLine(const Json& value) {
  if (!value.is_structured() || value.empty()) return scalar(value);
  std::string text;
  for (const auto& [key, member] : value.items())
    text += (text.empty() ? "" : ", ") + (value.is_object() ? nameOf(key) : "") + onOneLine(member);
  return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

bool holdsScalarsOnly(const Json& value) {
  return std::none_of(value.begin(), value.end(),
                      [](const Json& member) { return member.is_structured(); });
}

// Down to the records of a list, every one has a line of its own.
bool maybeOnOneLine(const Json& value, std::size_t indent) {
  return indent >= kRecordIndent || (indent > 0 && holdsScalarsOnly(value));
}

std::string block(const Json& value, std::size_t indent, std::size_t taken) {
  std::string line = onOneLine(value);
  const bool nested = value.is_structured() && !value.empty();
  if (!nested || (maybeOnOneLine(value, indent) && taken + line.size() < kWidth)) return line;
  const std::string margin(indent + kIndent, ' ');
  std::string text;
  for (const auto& [key, member] : value.items()) {
    const std::string name = value.is_object() ? nameOf(key) : "";
    text.append(text.empty() ? "\n" : ",\n").append(margin).append(name);
    text += block(member, margin.size(), margin.size() + name.size());
  }
  const std::string end = "\n" + std::string(indent, ' ');
  return value.is_object() ? "{" + text + end + "}" : "[" + text + end + "]";
}

}  // namespace

std::string printJson(const Json& value) {
  return block(value, 0, 0) + "\n";
}

}  // namespace camcfg::tool
