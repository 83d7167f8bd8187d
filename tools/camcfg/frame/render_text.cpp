#include <algorithm>
#include <stdexcept>

#include "frame/printable.h"
#include "frame/render.h"

namespace camcfg::tool {
namespace {

using Cells = std::vector<std::string>;

constexpr char kGap[] = "  ";
constexpr char kNothing[] = "-";

std::string shown(const Json& value) {
  if (value.is_null()) return kNothing;
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_string()) return printable(value.get_ref<const std::string&>());
  if (!value.is_array()) return value.dump(-1, ' ', false, Json::error_handler_t::replace);
  if (value.empty()) return kNothing;
  std::string list;
  for (const Json& element : value) list += (list.empty() ? "" : ", ") + shown(element);
  return list;
}

const Json& member(const Json& value, const std::string& path) {
  return path.empty() ? value : value.at(Json::json_pointer("/" + path));
}

std::string filled(const Template& text, const Json& value);

std::string filledForEach(const Json& list, const Template& text) {
  if (list.empty()) return kNothing;
  std::string result;
  for (const Json& element : list) result += (result.empty() ? "" : ", ") + filled(text, element);
  return result;
}

// What stands for a place, given without its braces.
std::string valueAt(const std::string& place, const Json& value) {
  const std::size_t mark = place.find_first_of("?:");
  const Json& found = member(value, place.substr(0, mark));
  if (mark == std::string::npos) return shown(found);
  const Template inner = place.substr(mark + 1);
  if (place[mark] == ':') return filledForEach(found, inner);
  return found.get<bool>() ? filled(inner, value) : "";
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

std::string filled(const Template& text, const Json& value) {
  std::string result;
  std::size_t done = 0;
  for (std::size_t open; (open = text.find('{', done)) != std::string::npos;) {
    const std::size_t close = closing(text, open);
    result += text.substr(done, open - done);
    result += valueAt(text.substr(open + 1, close - open - 1), value);
    done = close + 1;
  }
  return result + text.substr(done);
}

std::string cell(const Column& column, const Json& row) {
  const std::string text = filled(column.cell, row);
  const std::string becomes = filled(column.becomes, row);
  return column.becomes.empty() || becomes == text ? text : text + " -> " + becomes;
}

// Every column but the last is as wide as its widest cell.
std::string aligned(const std::vector<Cells>& rows) {
  std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
  for (const Cells& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], characters(row[i]));

  std::string text;
  for (const Cells& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i)
      text += row[i] + std::string(widths[i] - characters(row[i]), ' ') + kGap;
    text += row.back() + "\n";
  }
  return text;
}

std::string render(const Table& table, const Json& value) {
  std::vector<Cells> rows(1);
  for (const Column& column : table.columns) rows.front().emplace_back(column.heading);
  for (const Json& element : member(value, table.rows)) {
    rows.emplace_back();
    for (const Column& column : table.columns) rows.back().push_back(cell(column, element));
  }
  return aligned(rows);
}

std::string render(const Fields& list, const Json& value) {
  std::vector<Cells> rows;
  for (const Field& field : list.fields) rows.push_back({field.label, filled(field.text, value)});
  return aligned(rows);
}

std::string render(const Line& line, const Json& value) {
  return filled(line.text, value) + "\n";
}

std::string render(const Lines& lines, const Json& value) {
  std::string text;
  for (const Json& element : member(value, lines.rows)) text += filled(lines.text, element) + "\n";
  return text;
}

std::string render(const Verbatim& block, const Json& /*value*/) {
  return block.text;
}

std::string render(const WholeValue& /*block*/, const Json& value) {
  Answer answer;
  answer.value = value;
  return renderJson(answer);
}

}  // namespace

std::string renderText(const Answer& answer) {
  std::string text;
  for (const Block& block : answer.layout) {
    if (!text.empty() && std::holds_alternative<Table>(block)) text += "\n";
    text += std::visit([&](const auto& part) { return render(part, answer.value); }, block);
  }
  return text;
}

}  // namespace camcfg::tool
