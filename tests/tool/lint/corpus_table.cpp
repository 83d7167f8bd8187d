#include "tool/lint/corpus_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <limits>
#include <sstream>

namespace camcfg::tests {
namespace {

/// The text that an escape stands for; the position moves to its last character.
std::string unescaped(const std::string& text, std::size_t& at) {
  constexpr int kHexadecimal = 16;
  const char kind = text[++at];
  if (kind == 'n') return "\n";
  if (kind == 'x') {
    at += 2;
    return {static_cast<char>(std::stoi(text.substr(at - 1, 2), nullptr, kHexadecimal))};
  }
  const std::size_t end = text.find('}', at);
  const std::size_t star = text.rfind('*', end);
  std::string repeated;
  for (int i = std::stoi(text.substr(star + 1)); i > 0; --i)
    repeated += text.substr(at + 1, star - at - 1);
  at = end;
  return repeated;
}

std::string decoded(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at)
    result += text[at] == '\\' ? unescaped(text, at) : std::string(1, text[at]);
  return result;
}

std::string allReplaced(std::string text, const std::string& part, const std::string& other) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += other.size())
    text.replace(at, part.size(), other);
  return text;
}

/// For texts of ASCII only, which the bases so edited are.
std::string utf16(const std::string& text, bool littleEndian) {
  std::string result;
  for (const char byte : text) result += littleEndian ? std::string{byte, 0} : std::string{0, byte};
  return result;
}

std::string unindented(std::string text) {
  while (text.find("\n ") != std::string::npos) text = allReplaced(text, "\n ", "\n");
  return text;
}

/// The last of the elements at the top comes first.
std::string lastElementFirst(const std::string& text) {
  const std::size_t at = text.rfind("\n<", text.rfind("\n</") - 1) + 1;
  return text.substr(at) + text.substr(0, at);
}

std::string withOneCard(const std::string& text) {
  return text.substr(0, text.find("    <Lan1>")) + "</NetWork>\n";
}

/// The edits of whole files by their names in the tables.
const std::map<std::string, std::function<std::string(const std::string&)>>& edits() {
  using Text = std::string;
  static const std::map<Text, std::function<Text(const Text&)>> all = {
      {"utf16le", [](const Text& text) { return "\xff\xfe" + utf16(text, true); }},
      {"utf16be", [](const Text& text) { return "\xfe\xff" + utf16(text, false); }},
      {"utf16le-bare", [](const Text& text) { return utf16(text, true); }},
      {"empty", [](const Text&) { return Text(); }},
      {"blank", [](const Text&) { return Text("  \n\n"); }},
      {"nul-tail", [](const Text& text) { return text + Text(100, '\0'); }},
      {"zeroed", [](const Text& text) { return Text(text.size(), '\0'); }},
      {"half", [](const Text& text) { return text.substr(0, text.size() / 2); }},
      {"twice", [](const Text& text) { return text + text; }},
      {"cr", [](const Text& text) { return allReplaced(text, "\n", "\r"); }},
      {"crlf", [](const Text& text) { return allReplaced(text, "\n", "\r\n"); }},
      {"bom", [](const Text& text) { return "\xef\xbb\xbf" + text; }},
      {"tabs", [](const Text& text) { return allReplaced(text, "    ", "\t"); }},
      {"unindented", unindented},
      {"one-line", [](const Text& text) { return allReplaced(unindented(text), "\n", ""); }},
      {"single-quotes", [](const Text& text) { return allReplaced(text, "\"", "'"); }},
      {"no-final-line-break", [](const Text& text) { return text.substr(0, text.size() - 1); }},
      {"no-presets", [](const Text&) { return Text("<PresetCfg>\n</PresetCfg>\n"); }},
      {"last-element-first", lastElementFirst},
      {"one-card", withOneCard},
      {"html",
       [](const Text&) { return Text("<html><body><h1>502 Bad Gateway</h1></body></html>\n"); }},
      {"json", [](const Text&) { return Text("{\"System\": {\"WebHttp\": 80}}\n"); }},
      {"gzip", [](const Text&) { return Text("\x1f\x8b\x08\0\0\0\0\0\0\x03\xab\x56\0\0", 14); }},
  };
  return all;
}

ChangedFile edited(const std::string& base, const std::string& edit) {
  const auto found = edits().find(edit);
  if (found == edits().end()) return {base, 0, 0, "there is no edit \"" + edit + "\""};
  return {found->second(base), 0, std::numeric_limits<int>::max(), ""};
}

/// Where a text to be replaced begins; nowhere if it is not there precisely once.
std::size_t placeOf(const std::string& contents, const std::string& written) {
  if (written == "\\A") return 0;
  if (written == "\\Z") return contents.size();
  const std::string part = decoded(written);
  const std::size_t at = contents.find(part);
  return at == contents.rfind(part) ? at : std::string::npos;
}

void replace(ChangedFile& file, const std::string& written, const std::string& by) {
  const std::size_t at = placeOf(file.contents, written);
  if (at == std::string::npos) {
    file.fault = "not there, or more than once: " + written;
    return;
  }
  const std::string other = decoded(by);
  const bool inserted = written == "\\A" || written == "\\Z";
  file.contents.replace(at, inserted ? 0 : decoded(written).size(), other);
  file.firstLine = lineAt(file.contents, at);
  file.lastLine = lineAt(file.contents, at + other.size());
}

void take(CorpusEntry& entry, char kind, const std::string& text) {
  if (kind == '-') entry.replacements.emplace_back(text, "");
  if (kind == '+' && !entry.replacements.empty()) entry.replacements.back().second = text;
  if (kind == '@') entry.places.push_back(decoded(text));
  if (kind == '!') entry.edit = text;
}

}  // namespace

std::string corpusFile(const std::string& name) {
  std::ifstream file(CAMCFG_LINT_CORPUS "/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  std::stringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

std::vector<CorpusEntry> corpusTable(const std::string& name) {
  std::vector<CorpusEntry> entries;
  std::istringstream lines(corpusFile(name));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#' || line.rfind("why ", 0) == 0) continue;
    if (std::string("-+@!").find(line[0]) != std::string::npos && !entries.empty()) {
      take(entries.back(), line[0], line.size() > 2 ? line.substr(2) : "");
      continue;
    }
    CorpusEntry entry;
    std::istringstream(line) >> entry.mark >> entry.name >> entry.base;
    entries.push_back(entry);
  }
  return entries;
}

ChangedFile changed(const std::string& base, const CorpusEntry& entry) {
  if (!entry.edit.empty()) return edited(base, entry.edit);
  ChangedFile file = {base, 0, 0, entry.replacements.empty() ? "nothing is replaced" : ""};
  for (const auto& [written, by] : entry.replacements) replace(file, written, by);
  return file;
}

int lineAt(const std::string& contents, std::size_t offset) {
  const auto end = contents.begin() + static_cast<std::ptrdiff_t>(offset);
  return 1 + static_cast<int>(std::count(contents.begin(), end, '\n'));
}

}  // namespace camcfg::tests
