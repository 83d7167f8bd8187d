#include "device/state_record.h"

#include <camcfg/store.h>

#include <algorithm>
#include <cstdint>
#include <set>

#include "base/concat.h"
#include "base/json.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "device/state_contents.h"

namespace camcfg::tool::device {
namespace {

constexpr char kFormat[] = "camcfg-change";
constexpr int kVersion = 1;

// Whoever only looks at a long command line needs no more of it.
constexpr std::size_t kMostCommandBytes = 4096;

struct Head {
  std::string line;
  std::string rest;
};

Head headOf(const std::string& rest) {
  return {concat(kFormat, " ", kVersion, " ", rest.size(), " ", hashOf(rest), "\n"), rest};
}

/// The first line as its reader sees it; what is missing is empty.
struct FirstLine {
  explicit FirstLine(const std::string& line) {
    std::vector<std::string> words = wordsIn(line);
    words.resize(3);
    format = std::move(words[0]);
    version = std::move(words[1]);
    size = std::move(words[2]);
  }

  std::string format;
  std::string version;
  std::string size;
};

// A later version may go on in any way after its number.
bool isLater(const std::string& line) {
  const FirstLine first(line);
  const std::optional<long long> number = decimal(first.version);
  return first.format == kFormat && number && *number > kVersion;
}

// How many bytes the first line announces for the rest.
std::optional<std::size_t> announced(const std::string& line) {
  const FirstLine first(line);
  const std::optional<long long> number = decimal(first.size);
  if (first.format != kFormat || !number || *number < 0) return std::nullopt;
  return static_cast<std::size_t>(*number);
}

bool isCutOff(const std::string& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string::npos || text.find('\0') != std::string::npos) return true;
  const std::optional<std::size_t> size = announced(text.substr(0, end));
  return size && text.size() - end - 1 < *size;
}

const Json& member(const Json& object, const char* name) {
  static const Json none;
  const auto found = object.is_object() ? object.find(name) : object.end();
  return found == object.end() ? none : *found;
}

std::optional<std::int64_t> integerIn(const Json& object, const char* name) {
  const Json& value = member(object, name);
  if (!value.is_number_integer() || value.is_unsigned()) return std::nullopt;
  return value.get<std::int64_t>();
}

std::string textIn(const Json& object, const char* name) {
  const Json& value = member(object, name);
  return value.is_string() ? value.text() : "";
}

// Why a change makes no sense on this device; empty if it does.
std::string faultOf(const RecordedChange& change) {
  std::set<std::string> paths;
  for (const FileChange& file : change.files) {
    if (!isMainCopy(file.path))
      return concat("is about ", printable(shortened(file.path)),
                    ", which is no main copy of a device");
    if (!paths.insert(file.path).second) return "is damaged: it names a file twice";
    if (!isHash(file.before) || !isHash(file.after) ||
        !std::all_of(file.earlier.begin(), file.earlier.end(), isHash))
      return "is damaged: a file has no contents";
  }
  return paths.empty() ? "is damaged: it names no file" : "";
}

FileChange fileIn(const Json& value) {
  FileChange file{textIn(value, "path"), textIn(value, "before"), textIn(value, "after")};
  const Json& earlier = member(value, "earlier");
  if (earlier.is_array())
    for (const Json& hash : earlier) file.earlier.push_back(hash.is_string() ? hash.text() : "");
  return file;
}

std::optional<Trial> trialIn(const Json& value) {
  if (!value.is_object()) return std::nullopt;
  return Trial{textIn(value, "boot"), integerIn(value, "begin").value_or(0),
               integerIn(value, "end").value_or(0)};
}

std::string take(const Json& value, RecordedChange& change) {
  const std::optional<std::int64_t> number = integerIn(value, "number");
  const std::optional<std::int64_t> time = integerIn(value, "time");
  if (!number || *number < 1 || *number > INT32_MAX || !time)
    return "is damaged: it has no number or no time";
  change.number = static_cast<int>(*number);
  change.time = *time;
  change.command = textIn(value, "command");
  change.caller = textIn(value, "caller");
  change.trial = trialIn(member(value, "trial"));
  change.takesBack = static_cast<int>(integerIn(value, "takesBack").value_or(0));
  const Json& files = member(value, "files");
  if (files.is_array())
    for (const Json& file : files) change.files.push_back(fileIn(file));
  return faultOf(change);
}

std::string parse(const std::string& text, RecordedChange& change) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  if (isLater(text.substr(0, end))) return "was written by a later version of this program";
  const Head head = headOf(text.substr(std::min(end + 1, text.size())));
  if (text != head.line + head.rest) return "is damaged: its checksum is wrong";
  try {
    return take(readJson(head.rest).value, change);
  } catch (const Refusal& refusal) {
    return std::string("is damaged: ") + refusal.what();
  }
}

Json fileRecord(const FileChange& file) {
  Json record = {{"path", file.path}, {"before", file.before}, {"after", file.after}};
  if (!file.earlier.empty()) record["earlier"] = file.earlier;
  return record;
}

}  // namespace

std::vector<std::string*> contentsIn(FileChange& file) {
  std::vector<std::string*> contents = {&file.before, &file.after};
  for (std::string& earlier : file.earlier) contents.push_back(&earlier);
  return contents;
}

RecordedChange withHashes(RecordedChange change) {
  for (FileChange& file : change.files)
    for (std::string* part : contentsIn(file)) *part = hashOf(*part);
  return change;
}

std::string recordText(const RecordedChange& change) {
  Json value = {{"number", change.number},
                {"time", change.time},
                {"command", firstBytes(change.command, kMostCommandBytes)},
                {"caller", firstBytes(change.caller, kMostCommandBytes)},
                {"files", Json::array()}};
  for (const FileChange& file : change.files) value["files"].push_back(fileRecord(file));
  if (change.trial)
    value["trial"] = {
        {"boot", change.trial->boot}, {"begin", change.trial->begin}, {"end", change.trial->end}};
  if (change.takesBack != 0) value["takesBack"] = change.takesBack;
  const Head head = headOf(value.dump(1) + "\n");
  return head.line + head.rest;
}

Record readRecord(const StateFolder& folder, const std::string& name) {
  const StateFile file = folder.read(name, kMostRecordBytes);
  Record record;
  if (!file.isThere) return record;
  record.kind = Record::Useless;
  record.fault =
      file.fault.empty() ? parse(file.bytes, record.change) : "is damaged: " + file.fault;
  if (record.fault.empty())
    record.kind = Record::Whole;
  else if (file.fault.empty() && isCutOff(file.bytes))
    record.kind = Record::Incomplete;
  return record;
}

std::optional<RecordedChange> withContents(const StateFolder& state, RecordedChange change) {
  for (FileChange& file : change.files)
    for (std::string* part : contentsIn(file)) {
      std::optional<std::string> bytes = contentsOf(state, *part);
      if (!bytes) return std::nullopt;
      *part = std::move(*bytes);
    }
  return change;
}

bool isMainCopy(const std::string& path) {
  // The library copies a file by a command line of limited length.
  const std::string copy =
      concat("cp ", pathOf(Place::Main, path), " ", pathOf(Place::Backup, path));
  return path == pathOf(Place::Main, path) && isXmlName(path) && asUtf8(path) == path &&
         path.find('\0') == std::string::npos && copy.size() < CFG_PATH_SIZE;
}

std::string describe(const RecordedChange& change) {
  const std::string time = utcText(change.time);
  return concat(printable(change.command), " (", time.empty() ? "at an unknown time" : time, ")");
}

}  // namespace camcfg::tool::device
