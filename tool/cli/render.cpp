#include "base/concat.h"
#include "cli/answer.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "base/plain_text.h"
#include "cli/terminal.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kDelete = '\x7f';
constexpr char kLead = '\xc2';  // before U+0080 to U+00bf in UTF-8

// Whether U+0080 to U+009f is there, which some terminals take for the beginning of a command.
bool isControl(const std::string& text, std::size_t at) {
  return text[at] == kLead && at + 1 < text.size() && (text[at + 1] & 0x60) == 0;
}

std::string escaped(unsigned char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {'\\', 'u', '0', '0', kDigits[c >> 4], kDigits[c & 15]};
}

using Cells = std::vector<std::string>;

constexpr char kGap[] = "  ";
constexpr char kNothing[] = "-";
constexpr char kBecomes[] = " -> ";

// "2MB", as a command line takes it.
bool isQuantity(const Json& value) {
  return value.is_object() && value.size() == 2 && value.contains("value") &&
         value.contains("unit");
}

std::string shown(const Json& value) {
  if (value.is_null()) return kNothing;
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_string()) return printable(value.text());
  if (isQuantity(value)) return shown(value.at("value")) + shown(value.at("unit"));
  if (!value.is_array()) return value.dump();
  if (value.empty()) return kNothing;
  std::string list;
  for (const Json& element : value) list += (list.empty() ? "" : ", ") + shown(element);
  return list;
}

const Json& member(const Json& value, const std::string& path) {
  const Json* found = value.find_path(path);
  if (found == nullptr) throw std::logic_error("an answer has no " + path);
  return *found;
}

// The brace that closes the one at `open`.
std::size_t closing(const Template& text, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < text.size(); ++at) {
    if (text[at] == '{') ++depth;
    if (text[at] == '}' && --depth == 0) return at;
  }
  throw std::logic_error("no closing brace: " + text);
}

// Text that stays as it is on a terminal: nothing in it steers the terminal.
std::string harmless(const std::string& text) {
  std::string result;
  std::string line;
  for (const char c : text) {
    if (c != '\n' && c != '\t') {
      line += c;
      continue;
    }
    result += printable(line) + c;
    line.clear();
  }
  return result + printable(line);
}

// Every column but the last is as wide as its widest cell.
std::string aligned(const std::vector<Cells>& rows) {
  std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
  for (const Cells& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], shownWidth(row[i]));

  std::string text;
  for (const Cells& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i)
      text += concat(row[i], std::string(widths[i] - shownWidth(row[i]), ' '), kGap);
    text += row.back() + "\n";
  }
  return text;
}

// Fills templates and lays out blocks for one place.
class Renderer {
 public:
  explicit Renderer(const Look& look) : look_(look) {}

  std::string render(const Table& table, const Json& value) const {
    std::vector<Cells> rows(1);
    for (const Column& column : table.columns) rows.front().emplace_back(column.heading);
    for (const Json& element : member(value, table.rows)) {
      rows.emplace_back();
      for (const Column& column : table.columns) rows.back().push_back(cell(column, element));
    }
    return aligned(rows);
  }

  std::string render(const Fields& list, const Json& value) const {
    std::vector<Cells> rows;
    for (const LabelledText& field : list.fields)
      rows.push_back({field.label, filled(field.text, value)});
    return aligned(rows);
  }

  std::string render(const Line& line, const Json& value) const {
    return filled(line.text, value) + "\n";
  }

  std::string render(const Lines& lines, const Json& value) const {
    std::string text;
    for (const Json& element : member(value, lines.rows))
      text += filled(lines.text, element) + "\n";
    return text;
  }

  std::string render(const Verbatim& block, const Json& /*value*/) const {
    return look_.isTerminal ? harmless(block.text) : block.text;
  }

  std::string render(const WholeValue& /*block*/, const Json& value) const {
    Answer answer;
    answer.value = value;
    return renderJson(answer);
  }

 private:
  std::string filledForEach(const Json& list, const Template& text) const {
    if (list.empty()) return kNothing;
    std::string result;
    for (const Json& element : list) result += (result.empty() ? "" : ", ") + filled(text, element);
    return result;
  }

  // What replaces a place, given without its braces.
  std::string valueAt(std::string place, const Json& value, Tone tone) const {
    if (const std::size_t at = place.find_first_of("?:"); at != std::string::npos) {
      const std::string name = place.substr(0, at);
      const Json& found = member(value, name);
      const Template inner = place.substr(at + 1);
      if (place[at] == ':') return filledForEach(found, inner);
      return found.get<bool>() ? filled(inner, value) : "";
    }
    const char mark =
        place.empty() || std::strchr("!-+", place.back()) == nullptr ? '\0' : place.back();
    if (mark != '\0') place.pop_back();
    const std::string text = shown(member(value, place));
    if (mark != '\0')
      tone = mark == '!' ? toneOfState(text) : mark == '-' ? Tone::Former : Tone::New;
    return look_.colours ? coloured(text, tone) : text;
  }

  std::string filled(const Template& text, const Json& value) const {
    constexpr std::size_t kLength = sizeof kBecomes - 1;
    std::string result;
    std::size_t done = 0;
    for (std::size_t open; (open = text.find('{', done)) != std::string::npos;) {
      const std::size_t close = closing(text, open);
      const bool isNew =
          open - done >= kLength && text.compare(open - kLength, kLength, kBecomes) == 0;
      const bool isFormer = text.compare(close + 1, kLength, kBecomes) == 0;
      result += text.substr(done, open - done);
      result += valueAt(text.substr(open + 1, close - open - 1), value,
                        isNew      ? Tone::New
                        : isFormer ? Tone::Former
                                   : Tone::Plain);
      done = close + 1;
    }
    return result + text.substr(done);
  }

  std::string cell(const Column& column, const Json& row) const {
    const std::string text = filled(column.cell, row);
    const std::string becomes = filled(column.becomes, row);
    return column.becomes.empty() || becomes == text ? text : concat(text, kBecomes, becomes);
  }

  Look look_;
};

}  // namespace

std::string renderJson(const Answer& answer, int indent) {
  const std::string text = answer.value.dump(indent);
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isControl(text, at))
      result += escaped(static_cast<unsigned char>(text[++at]));
    else if (text[at] == kDelete)
      result += escaped(static_cast<unsigned char>(kDelete));
    else
      result += text[at];
  }
  return result + "\n";
}

std::string renderText(const Answer& answer, const Look& look) {
  const Renderer renderer(look);
  std::string text;
  for (const Block& block : answer.layout) {
    if (!text.empty() && std::holds_alternative<Table>(block)) text += "\n";
    text +=
        std::visit([&](const auto& part) { return renderer.render(part, answer.value); }, block);
  }
  return text;
}

}  // namespace camcfg::tool::cli
