#include <algorithm>
#include <optional>
#include <set>

#include "base/concat.h"
#include "base/json.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/scratch.h"
#include "document/exchange.h"
#include "media/media.h"
#include "settings/media.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

using settings::Table;

constexpr char kValue[] = "value";
constexpr char kFault[] = "fault";

// Faults are reported with the copies' own paths.
std::string told(std::string fault, device::Place place) {
  for (const device::Section& section : allSections()) {
    const std::string main = section.path;
    const std::string other = device::pathOf(place, main);
    for (std::size_t at = fault.find(main); at != std::string::npos;
         at = fault.find(main, at + other.size()))
      fault.replace(at, main.size(), other);
  }
  return fault;
}

// The copies that can be read; says of each other one why it is not among them.
std::vector<device::Contents> readable(device::Place place,
                                       std::map<std::string, std::string>& faults) {
  std::vector<device::Contents> files;
  for (const device::Section& section : allSections()) {
    if (faults.count(section.path) != 0) continue;
    const std::string path = device::pathOf(place, section.path);
    const device::Copy copy = device::loadCopy(path);
    const bool isGood = copy.state == device::State::Good;
    faults[section.path] = isGood ? "" : concat(path, " ", copy.fault);
    if (isGood) files.push_back({section.path, written(*copy.document)});
  }
  return files;
}

using Paths = std::set<std::string>;

Paths allPaths() {
  Paths paths;
  for (const device::Section& section : allSections()) paths.insert(section.path);
  return paths;
}

// A file that is not there would be waited for.
CopiedSections loadFromMain(const Paths& paths) {
  CopiedSections sections;
  for (const device::Section& section : allSections()) try {
      if (paths.count(section.path) == 0) continue;
      sections[section.name] = {section.load(), ""};
    } catch (const Refusal& refusal) {
      sections[section.name] = {nullptr, refusal.what()};
    }
  return sections;
}

Json loadedHere(const Paths& paths) {
  Json loaded = Json::object();
  for (const auto& [name, section] : loadFromMain(paths))
    loaded[name] = {{kValue, section.value}, {kFault, section.fault}};
  return loaded;
}

const Table& requireKind(const std::string& word) {
  std::vector<std::string> words;
  for (const Table* table : settings::mediaTables()) {
    if (word == table->word) return *table;
    words.emplace_back(table->word);
  }
  throw Refusal(Status::Usage, concat("there is no kind '", word, "'; there are ", joined(words),
                                      didYouMean(word, words)));
}

// A section in one copy of the media file, and where in its list the sessions of the id are, in the
// order of their entries.
struct MediaCopy {
  std::string path;
  device::Copy file;
  CopiedSection section;
  std::vector<std::size_t> found;
};

MediaCopy mediaCopy(device::Place place, const Table& table, const std::string& id) {
  const std::string path = device::pathOf(place, CFG_FILE_MPP);
  MediaCopy copy{path, device::loadCopy(path), loadFrom(place).at(table.place), {}};
  for (std::size_t i = 0; copy.section.fault.empty() && i < copy.section.value.size(); ++i) {
    const Json& key = copy.section.value[i].at(table.key);
    if ((key.is_string() ? key.text() : key.dump()) == id) copy.found.push_back(i);
  }
  return copy;
}

int lineOf(const MediaCopy& copy, const Table& table, std::size_t index) {
  const auto entries =
      media::entriesOf(media::requireSection(*copy.file.document, table), table.elements);
  return index < entries.size() ? entries[index]->GetLineNum() : 0;
}

// The members of a record, each among what the other copies have of it.
void addValues(Json& values, device::Place place, const Json& record, const Table& table) {
  for (const auto& [name, member] : record.items()) {
    auto value = std::find_if(values.begin(), values.end(), [&, &sought = name](const Json& each) {
      return each.at("name") == sought;
    });
    if (value == values.end()) {
      values.push_back(device::valueRow(name, permittedFor(*table.find(name))));
      value = values.end() - 1;
    }
    (*value)[device::wordFor(place)] = member;
  }
}

Json lookupIn(const MediaCopy& copy, const Table& table, const std::string& id) {
  const std::string what = concat(table.key, " ", id);
  device::Lookup lookup{concat(table.word, " ", id), {}, "no entry has the " + what};
  for (const std::size_t index : copy.found)
    lookup.hits.push_back({id, lineOf(copy, table, index), true});
  if (!lookup.hits.empty())
    lookup.why = concat("the first entry with the ", what, "; loading hands out every entry");
  return device::jsonOf(lookup, copy.path);
}

std::optional<device::Unread> firstUnread(const device::Section& section) try {
  const device::Readable readable = readableOf(section);
  return readable.unread.empty() ? std::nullopt : std::optional(readable.unread.front());
} catch (const Refusal& refusal) {
  return device::Unread{refusal.what(), ""};
}

}  // namespace

CopiedSections loadFrom(device::Place place) {
  if (place == device::Place::Main) return loadFromMain(allPaths());
  std::map<std::string, std::string> faults;
  CopiedSections sections = loadFrom(readable(place, faults));
  for (const device::Section& section : allSections()) {
    CopiedSection& copied = sections[section.name];
    const std::string& fault = faults.at(section.path);
    copied.fault = fault.empty() ? told(copied.fault, place) : fault;
  }
  return sections;
}

CopiedSections loadFrom(const std::vector<device::Contents>& files) {
  Paths paths;
  for (const device::Contents& file : files) paths.insert(file.path);
  const Json loaded = device::onScratchDevice(files, [&] { return loadedHere(paths); });
  CopiedSections sections;
  for (const auto& [name, read] : loaded.items())
    sections[name] = {read.at(kValue), read.at(kFault).text()};
  return sections;
}

std::map<std::string, std::string> unreadSections() {
  std::map<std::string, std::string> faults;
  std::optional<CopiedSections> factory;
  for (const device::Section& section : allSections()) {
    if (device::loadCopy(section.path).state != device::State::Good) continue;
    const std::optional<device::Unread> unread = firstUnread(section);
    if (!unread) continue;
    if (unread->was.empty() && !factory) factory = loadFrom(device::Place::Default);
    if (!unread->was.empty() || factory->at(section.name).fault.empty())
      faults[section.name] = unread->fault;
  }
  return faults;
}

device::Explanation explainSession(const std::string& kindWord, const std::string& id,
                                   bool showSecrets) {
  const Table& table = requireKind(kindWord);
  device::Explanation explanation{concat(kindWord, " ", id)};
  for (const device::Place place : device::kPlaces) {
    const MediaCopy copy = mediaCopy(place, table, id);
    std::optional<int> line;
    if (explanation.lookups.empty() && copy.section.fault.empty())
      explanation.lookups.push_back(lookupIn(copy, table, id));
    if (!copy.found.empty()) {
      line = lineOf(copy, table, copy.found.front());
      const Json& record = copy.section.value[copy.found.front()];
      addValues(explanation.values, place,
                showSecrets ? record : settings::withMaskedSecrets(record, table.settings), table);
    }
    explanation.copies.push_back(
        device::copyRow(place, copy.path, copy.file.state, copy.section.fault, line));
  }
  if (explanation.values.empty())
    throw Refusal(concat("no copy has a ", kindWord, " with the ", table.key, " ", id));
  return explanation;
}

}  // namespace camcfg::tool::document
