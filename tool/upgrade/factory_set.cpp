#include "upgrade/factory_set.h"

#include <camcfg/types.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/concat.h"
#include "base/json.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "device/history.h"
#include "device/scratch.h"
#include "device/state_contents.h"
#include "device/state_folder.h"

namespace camcfg::tool::upgrade {
namespace {

using device::Contents;
using device::hashOf;
using device::StateFolder;

constexpr const char* kPaths[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};
constexpr char kFolder[] = "factory";
constexpr char kMark[] = "mark";
constexpr char kNew[] = ".new";
constexpr char kFiles[] = "files";
constexpr char kMerged[] = "merged";
constexpr char kBase[] = "base";
constexpr char kApplied[] = "applied";
constexpr const char* kHashes[] = {kFiles, kBase, kMerged};
constexpr int kFormat = 1;

std::string newOf(const std::string& name) {
  return name + kNew;
}

// The files of a set by the names under which they are kept.
std::vector<Contents> named(const FactorySet& set) {
  std::vector<Contents> all;
  for (const Contents& file : set.files) all.push_back({device::nameOf(file.path), file.bytes});
  if (!set.rules.empty()) all.push_back({kRulesName, set.rules});
  return all;
}

Json hashesOf(const std::vector<Contents>& files) {
  Json hashes = Json::object();
  for (const Contents& file : files) hashes[file.path] = hashOf(file.bytes);
  return hashes;
}

bool areHashes(const Json& value) {
  return value.is_object() && std::all_of(value.begin(), value.end(), [](const Json& hash) {
           return hash.is_string() && device::isHash(hash.text());
         });
}

// What a mark says; null if it is missing or was not written by this version.
Json markIn(const StateFolder& folder, const std::string& name) try {
  const device::StateFile file = folder.read(name, device::kMostBytes);
  if (!file.isThere || !file.fault.empty()) return nullptr;
  const Json read = readJson(file.bytes).value;
  const bool isOurs = read.is_object() && read.contains("format") && read["format"] == kFormat &&
                      std::all_of(std::begin(kHashes), std::end(kHashes), [&](const char* member) {
                        return read.contains(member) && areHashes(read[member]);
                      });
  return isOurs ? read : Json();
} catch (const Refusal&) {
  return nullptr;
}

bool has(const StateFolder& folder, const std::string& name, const Json& hash) {
  const device::StateFile file = folder.read(name, device::kMostBytes);
  return file.isThere && file.fault.empty() && hashOf(file.bytes) == hash.text();
}

[[noreturn]] void refuse(int error) {
  throw Refusal(
      concat(device::kStateDirectory, "/", kFolder, " cannot be written: ", std::strerror(error)));
}

// History makes room.
bool write(const StateFolder& folder, const std::string& name, const std::string& bytes) {
  while (!folder.write(name, bytes)) {
    const int error = errno;
    const bool hasRoom = error == ENOSPC && device::forgetOldest();
    errno = error;
    if (!hasRoom) return false;
  }
  return true;
}

void dropStaged(const StateFolder& folder) {
  for (const std::string& name : folder.names())
    if (name.size() > sizeof kNew && name.substr(name.size() - (sizeof kNew - 1)) == kNew)
      folder.remove(name);
}

void commit(const StateFolder& folder, const Json& mark) {
  for (const auto& [name, hash] : mark.at(kFiles).items())
    if (has(folder, newOf(name), hash) && !folder.rename(newOf(name), folder, name)) refuse(errno);
  if (!folder.flush() || !folder.rename(newOf(kMark), folder, kMark)) refuse(errno);
  for (const std::string& name : folder.names())
    if (name != kMark && !mark.at(kFiles).contains(name)) folder.remove(name);
  folder.flush();
}

// Whether an upgrade got as far as its main copies. Once it keeps its set, it did.
bool isMade(const StateFolder& folder, const Json& mark) {
  for (const auto& [name, hash] : mark.at(kFiles).items())
    if (!has(folder, newOf(name), hash)) return has(folder, name, hash);
  const Json& merged = mark.at(kMerged);
  return std::all_of(std::begin(kPaths), std::end(kPaths), [&](const char* path) {
    if (!merged.contains(path)) return true;
    const std::optional<std::string> now = readFile(path);
    return now && hashOf(*now) == merged.at(path).text();
  });
}

// Whether the library loads a file.
// @param bytes  what it has, to be tried on a device of its own; null: on this one
bool isLoaded(const std::string& path, const std::string* bytes) {
  const auto load = [&] { return Json(device::loadCopy(path).state == device::State::Good); };
  return (bytes == nullptr ? load() : device::onScratchDevice({{path, *bytes}}, load)).get<bool>();
}

}  // namespace

std::string readMain(const std::string& path, bool onCopies) {
  const std::optional<std::string> bytes = onCopies ? readFile(path) : std::nullopt;
  const auto load = [&] {
    device::requireDocument(path);
    return Json();
  };
  if (bytes)
    device::onScratchDevice({{path, *bytes}}, load);
  else
    load();
  return bytes ? *bytes : device::bytesOf(path);
}

std::optional<std::string> FactorySet::of(const std::string& path) const {
  for (const Contents& file : files)
    if (file.path == path) return file.bytes;
  return std::nullopt;
}

bool FactorySet::operator==(const FactorySet& other) const {
  return hashesOf(named(*this)) == hashesOf(named(other));
}

FactorySet installedSet(bool onCopies) {
  FactorySet set;
  for (const char* path : kPaths) {
    const std::string copy = device::pathOf(device::Place::Default, path);
    std::optional<std::string> bytes = readFile(copy);
    if (bytes && isLoaded(onCopies ? path : copy, onCopies ? &*bytes : nullptr))
      set.files.push_back({path, std::move(*bytes)});
  }
  set.rules = readFile(kRulesFile).value_or("");
  return set;
}

FactorySet setOf(const std::string& directory, const std::vector<HostFile>& files) {
  FactorySet set;
  for (const char* path : kPaths)
    for (const HostFile& file : files) {
      if (file.path != device::nameOf(path)) continue;
      if (!file.fault.empty()) throw Refusal(concat(directory, "/", file.path, ": ", file.fault));
      set.files.push_back({path, file.contents});
    }
  if (set.files.empty())
    throw Refusal(directory +
                  " is no factory set: it has none of business_param.xml, mpp_cfg.xml "
                  "and preset_cfg.xml");
  for (const HostFile& file : files)
    if (device::nameOf(file.path) == kRulesName && set.rules.empty()) set.rules = file.contents;
  return set;
}

std::optional<FactorySet> keptSet() {
  const StateFolder folder = StateFolder::existing().folder(kFolder);
  const Json mark = markIn(folder, kMark);
  if (mark.is_null()) return std::nullopt;
  FactorySet set;
  const auto read = [&](const std::string& name) -> std::optional<std::string> {
    if (!mark.at(kFiles).contains(name) || !has(folder, name, mark.at(kFiles).at(name)))
      return std::nullopt;
    return folder.read(name, device::kMostBytes).bytes;
  };
  for (const char* path : kPaths)
    if (std::optional<std::string> bytes = read(device::nameOf(path)))
      set.files.push_back({path, std::move(*bytes)});
  set.rules = read(kRulesName).value_or("");
  if (mark.contains(kApplied) && mark.at(kApplied).is_number_integer())
    set.applied = std::max(0, mark.at(kApplied).get<int>());
  return set;
}

FactorySet completed(FactorySet set, const std::optional<FactorySet>& kept) {
  if (!kept) return set;
  for (const Contents& file : kept->files)
    if (!set.of(file.path)) set.files.push_back(file);
  return set;
}

void stage(const FactorySet& set, const FactorySet* base, const std::vector<Contents>& merged) {
  const StateFolder folder = StateFolder::made().madeFolder(kFolder);
  if (!folder) refuse(errno);
  const std::vector<Contents> files = named(set);
  const Json mark = {{"format", kFormat},
                     {kFiles, hashesOf(files)},
                     {kBase, base == nullptr ? Json::object() : hashesOf(named(*base))},
                     {kMerged, hashesOf(merged)},
                     {kApplied, set.applied}};
  bool isWritten = std::all_of(files.begin(), files.end(), [&](const Contents& file) {
    return write(folder, newOf(file.path), file.bytes);
  });
  isWritten = isWritten && folder.flush() && write(folder, newOf(kMark), mark.dump(2) + "\n") &&
              folder.flush();
  if (isWritten) return;
  const int error = errno;
  dropStaged(folder);
  refuse(error);
}

bool isMergedFrom(const FactorySet& base, const Contents& main) {
  const Json mark = markIn(StateFolder::existing().folder(kFolder), kMark);
  return !mark.is_null() && mark.at(kBase) == hashesOf(named(base)) &&
         mark.at(kMerged).contains(main.path) &&
         mark.at(kMerged).at(main.path) == Json(hashOf(main.bytes));
}

void keepStaged() {
  const StateFolder folder = StateFolder::existing().folder(kFolder);
  const Json mark = markIn(folder, newOf(kMark));
  if (!mark.is_null()) commit(folder, mark);
}

void settle() {
  const StateFolder folder = StateFolder::existing().folder(kFolder);
  if (!folder) return;
  const Json mark = markIn(folder, newOf(kMark));
  if (!mark.is_null() && isMade(folder, mark)) return commit(folder, mark);
  dropStaged(folder);
}

}  // namespace camcfg::tool::upgrade
