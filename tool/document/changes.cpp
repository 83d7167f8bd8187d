#include "document/changes.h"

#include <algorithm>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "document/section_names.h"
#include "parameters/parameter.h"
#include "settings/network.h"

namespace camcfg::tool::document {
namespace {

// Longer than a tick of any file system's clock.
constexpr std::chrono::milliseconds kTick(50);
// Who keeps a file open for longer than this after writing, is done with it.
constexpr std::chrono::milliseconds kSlowSave(3000);

// "live.srt[1].port" begins with "live".
std::string firstWord(const std::string& place) {
  return place.substr(0, place.find_first_of(".[/ "));
}

// Whether one place is another one, or in it, or has it in it.
bool isOnOneLine(const std::string& wanted, const std::string& place) {
  std::size_t i = 0;
  std::size_t j = 0;
  for (; i < wanted.size() && j < place.size() && wanted[i] == place[j]; ++i, ++j) {
    if (wanted.compare(i, 2, "[]") != 0) continue;
    ++i;
    j = std::min(place.find(']', j), place.size() - 1);
  }
  const auto isEnd = [](const std::string& text, std::size_t at) {
    return at == text.size() || text[at] == '.' || text[at] == '[' || text[at] == ' ';
  };
  return (i == wanted.size() || j == place.size()) && isEnd(wanted, i) && isEnd(place, j);
}

// Reads the sections of a file that can be read.
// @return why one cannot; empty if all can
std::string read(const std::string& path, std::map<const device::Section*, Json>& sections) {
  const device::ConfigFile file = device::surveyFile(device::nameOf(path));
  if (file.main.state != device::State::Good) return concat(path, " ", file.main.fault);
  std::string fault;
  for (const device::Section& section : allSections()) try {
      if (section.path == path) sections[&section] = section.load();
    } catch (const Refusal& refusal) {
      fault = refusal.what();
    }
  return fault;
}

// Resolves the words that somebody names places with.
class Words {
 public:
  std::string placeOf(const std::string& word) const {
    const std::string first = firstWord(word);
    if (!isAmong(exportNames(), first) && first != settings::kNetworkSection)
      return parameterPlace(word);
    std::string place =
        first == settings::kNetworkSection ? kNetwork + word.substr(first.size()) : word;
    for (const device::Section& section : allSections())
      if (isOnOneLine(place, section.name)) return place;
    refuse(word);
  }

  // Whether a word is a parameter of the section before it.
  bool isParameterOf(const std::string& section, const std::string& word) const {
    return isAmong(sections_, section) && firstWord(word) == word &&
           word != settings::kNetworkSection && !isAmong(exportNames(), word) &&
           !isAmong(sections_, word);
  }

 private:
  [[noreturn]] void refuse(const std::string& word) const {
    throw Refusal(Status::Usage, whyNoSection(word));
  }

  // "System/Rtsp" and "System Rtsp" are "parameters.System.Rtsp".
  std::string parameterPlace(const std::string& word) const {
    const std::string section = firstWord(word);
    if (!sections_.empty() && !isAmong(sections_, section)) refuse(word);
    std::string place = memberPlace(kParameters, section);
    if (word == section) return place;
    const char separator = word[section.size()];
    const std::string rest = word.substr(section.size() + 1);
    return separator == '/' || separator == ' ' ? memberPlace(place, rest)
                                                : concat(place, ".", rest);
  }

  const std::vector<std::string> sections_ = parameterSections();  // none if they cannot be read
};

}  // namespace

Places::Places(const std::vector<std::string>& given) {
  const Words words;
  std::string before;
  for (const std::string& word : given) {
    if (words.isParameterOf(before, word)) {
      parameters::Parameters().require(before, word);
      places_.back() = memberPlace(places_.back(), word);
      before.clear();
    } else {
      places_.push_back(words.placeOf(word));
      before = word;
    }
  }
}

bool Places::include(const std::string& place) const {
  return places_.empty() ||
         std::any_of(places_.begin(), places_.end(),
                     [&](const std::string& wanted) { return isOnOneLine(wanted, place); });
}

std::vector<std::string> Changes::files() {
  std::vector<std::string> paths;
  for (const device::Section& section : allSections())
    if (!isAmong(paths, section.path)) paths.emplace_back(section.path);
  return paths;
}

std::vector<Transition> Changes::look() {
  std::vector<Transition> found;
  for (const std::string& path : files()) lookAt(path, found);
  return found;
}

bool Changes::isUneasy() const {
  return sections_.empty() || std::any_of(faults_.begin(), faults_.end(), [&](const auto& fault) {
           const FileState& state = states_.at(fault.first);
           return state.wasRead || state.isBeingWritten;
         });
}

void Changes::lookAt(const std::string& path, std::vector<Transition>& found) {
  FileState& state = states_[path];
  const FileState now{device::signatureOf(path),
                      device::signatureOf(device::pathOf(device::Place::Backup, path)),
                      state.wasRead};
  if (now.main == state.main && now.backup == state.backup) return;
  state = now;
  std::map<const device::Section*, Json> sections;
  faults_[path] = read(path, sections);
  const bool isChanging = device::signatureOf(path) != now.main ||
                          (device::isOpenForWriting(path) && device::ageOf(now.main) < kSlowSave);
  if (isChanging || device::ageOf(now.main) < kTick) state.main = device::Signature{-1};
  if (isChanging) {
    state.isBeingWritten = true;
    faults_[path] = path + " is being written";
    return;
  }
  if (faults_[path].empty()) faults_.erase(path);
  for (const auto& [section, value] : sections) {
    const auto former = sections_.find(section);
    if (former != sections_.end() && former->second != value)
      found.push_back({section, former->second, value});
    sections_[section] = value;
    state.wasRead = true;
  }
}

}  // namespace camcfg::tool::document
