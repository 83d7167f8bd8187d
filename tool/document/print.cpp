#include "document/print.h"

#include <algorithm>

namespace camcfg::tool::document {
namespace {

constexpr std::size_t kWidth = 120;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kRecordIndent = 3 * kIndent;  // {"live": {"srt": [RECORD

// What stands before a value: the name of an object's member.
std::string nameAt(const Json& value, std::size_t index) {
  return value.is_object() ? Json(value.names()[index]).dump() + ": " : "";
}

std::string onOneLine(const Json& value) {
  if (!value.is_structured() || value.empty()) return value.dump();
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i)
    text += (text.empty() ? "" : ", ") + nameAt(value, i) + onOneLine(value.at(i));
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
  for (std::size_t i = 0; i < value.size(); ++i) {
    const std::string name = nameAt(value, i);
    text.append(text.empty() ? "\n" : ",\n").append(margin).append(name);
    text += block(value.at(i), margin.size(), margin.size() + name.size());
  }
  const std::string end = "\n" + std::string(indent, ' ');
  return value.is_object() ? "{" + text + end + "}" : "[" + text + end + "]";
}

}  // namespace

std::string printJson(const Json& value) {
  return block(value, 0, 0) + "\n";
}

}  // namespace camcfg::tool::document
