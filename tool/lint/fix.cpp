#include "lint/fix.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "base/concat.h"
#include "base/markup.h"
#include "lint/item.h"
#include "lint/order.h"
#include "lint/rules.h"
#include "lint/spaces.h"

namespace camcfg::tool::lint {
namespace {

using Fixes = std::vector<Fix>;

// Parts of the bytes, from the first to the last, with what is there in place of them.
using Edits = std::vector<std::pair<std::string_view, std::string>>;

std::string edited(const std::string& bytes, const Edits& edits) {
  std::string text;
  std::size_t at = 0;
  for (const auto& [part, other] : edits) {
    const std::size_t begin = offsetOf(part, bytes);
    text.append(bytes, at, begin - at) += other;
    at = begin + part.size();
  }
  return text.append(bytes, at, std::string::npos);
}

// What is between the first two quotes of a text from a place on; moves the place to their end.
std::string quotedFrom(const std::string& text, std::size_t& at) {
  const std::size_t begin = text.find('"', at);
  const std::size_t end = begin == std::string::npos ? begin : text.find('"', begin + 1);
  if (end == std::string::npos) return "";
  at = end + 1;
  return text.substr(begin + 1, end - begin - 1);
}

struct Meant {
  std::string name;
  const Rule* rule;
  int count;  // how often it was found
};

// A name of an attribute at a line, with the one that it should have.
using Names = std::map<std::tuple<int, std::string>, Meant>;

Names namesToFix(const std::vector<const Finding*>& findings) {
  Names names;
  for (const Finding* finding : findings) {
    if (finding->rule != &kAttributeCase && finding->rule != &kUnreadAttribute) continue;
    std::size_t at = 0;
    const std::string name = quotedFrom(finding->text, at);
    const std::string meant = quotedFrom(finding->text, at);
    if (!name.empty() && isSameWord(name, meant)) {
      Meant& right =
          names.try_emplace({finding->line, name}, Meant{meant, finding->rule, 0}).first->second;
      ++right.count;
    }
  }
  return names;
}

struct Found {
  const Markup* tag;
  const MarkupAttribute* attribute;
};

// Whether another attribute of the tag has that name already, or would get it as well.
bool isTaken(const Found& found, const std::string& meant) {
  const auto& all = found.tag->attributes;
  return std::any_of(all.begin(), all.end(), [&](const MarkupAttribute& other) {
    return &other != found.attribute && isSameWord(other.name, meant);
  });
}

std::string withAttributeNames(const std::string& bytes,
                               const std::vector<const Finding*>& findings, Fixes& fixes) {
  const Names names = namesToFix(findings);
  if (names.empty()) return bytes;
  const std::vector<Markup> pieces = markupIn(bytes);
  std::map<std::tuple<int, std::string>, std::vector<Found>> places;
  int line = 1;
  std::size_t at = 0;
  for (const Markup& piece : pieces)
    for (const MarkupAttribute& attribute : piece.attributes) {
      const std::size_t begin = offsetOf(attribute.name, bytes);
      line +=
          static_cast<int>(std::count(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                      bytes.begin() + static_cast<std::ptrdiff_t>(begin), '\n'));
      at = begin;
      const std::tuple<int, std::string> key{line, attribute.name};
      if (names.count(key) != 0) places[key].push_back({&piece, &attribute});
    }
  Edits edits;
  for (const auto& [key, found] : places) {
    const Meant& meant = names.at(key);
    // Of several in a line, it is not known which one was found unless all were.
    if (found.size() != static_cast<std::size_t>(meant.count)) continue;
    for (const Found& each : found) {
      if (isTaken(each, meant.name)) continue;
      edits.emplace_back(each.attribute->name, meant.name);
      fixes.push_back({std::get<0>(key), meant.rule,
                       concat("\"", std::get<1>(key), "\" is now \"", meant.name, "\"")});
    }
  }
  std::sort(edits.begin(), edits.end(),
            [](const auto& a, const auto& b) { return a.first.data() < b.first.data(); });
  return edited(bytes, edits);
}

std::string withoutSpaces(const std::string& bytes, int line, Fixes& fixes) {
  Edits edits;
  for (const std::string_view part : extraSpacesIn(bytes)) edits.emplace_back(part, "");
  if (edits.empty()) return bytes;
  fixes.push_back({line, &kExtraSpace,
                   concat("needless white space is gone from ", edits.size(),
                          edits.size() == 1 ? " place" : " places")});
  return edited(bytes, edits);
}

std::string withoutMark(const std::string& bytes, Fixes& fixes) {
  std::string text = bytes;
  for (std::size_t end = lengthToMark(text); end != 0; end = lengthToMark(text))
    text.erase(end - kMarkBytes.size(), kMarkBytes.size());
  fixes.push_back({1, &kByteOrderMark, "the byte order mark is gone"});
  return text;
}

std::string withOrder(const std::string& bytes, const std::vector<const Finding*>& findings,
                      Fixes& fixes) {
  std::set<int> lines;
  for (const Finding* finding : findings)
    if (finding->rule == &kParameterShadowed) lines.insert(finding->line);
  std::vector<Moved> moved;
  std::string text = inOrder(bytes, lines, moved);
  for (const Moved& each : moved)
    fixes.push_back({each.line, &kParameterShadowed,
                     concat(tag(each.name), " is now before ", tag(each.before))});
  return text;
}

}  // namespace

FixedFile fixed(const Source& source, const std::vector<Finding>& findings) {
  FixedFile file{source.bytes, {}};
  if (!source.isWhole() || source.bytes.find('\0') != std::string::npos) return file;
  std::vector<const Finding*> own;
  for (const Finding& finding : findings)
    if (finding.file == source.name) own.push_back(&finding);
  const auto find = [&](const Rule& rule) {
    const auto found = std::find_if(own.begin(), own.end(),
                                    [&](const Finding* finding) { return finding->rule == &rule; });
    return found == own.end() ? nullptr : *found;
  };
  // Lines stay where they are until elements are moved.
  if (find(kByteOrderMark) != nullptr) file.bytes = withoutMark(file.bytes, file.fixes);
  if (const Finding* finding = find(kExtraSpace))
    file.bytes = withoutSpaces(file.bytes, finding->line, file.fixes);
  file.bytes = withAttributeNames(file.bytes, own, file.fixes);
  file.bytes = withOrder(file.bytes, own, file.fixes);
  std::stable_sort(file.fixes.begin(), file.fixes.end(),
                   [](const Fix& a, const Fix& b) { return a.line < b.line; });
  if (!device::isWhole(file.bytes)) return {source.bytes, {}};
  return file;
}

void setBytes(Source& source, std::string bytes) {
  source.bytes = std::move(bytes);
  source.parsed = device::parsed(source.bytes);
  source.document = source.parsed->Error() ? nullptr : source.parsed.get();
}

}  // namespace camcfg::tool::lint
