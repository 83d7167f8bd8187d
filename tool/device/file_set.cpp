#include "device/file_set.h"

#include <camcfg/types.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>

#include "base/progress.h"
#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

namespace fs = std::filesystem;

const char* directoryOf(Place place) {
  constexpr const char* kDirectories[] = {CFG_DIR_MAIN, CFG_DIR_BACKUP, CFG_DIR_DEFAULT};
  return kDirectories[static_cast<std::size_t>(place)];
}

template <typename Wanted>
std::vector<std::string> entriesOf(const std::string& directory, Wanted wanted) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error))
    if (wanted(*entry)) names.push_back(entry->path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

// Start-up verification looks at the names of the first directory that holds any file.
std::vector<std::string> namesCheckedAtStart() {
  for (const Place place : {Place::Default, Place::Main, Place::Backup}) {
    std::vector<std::string> names = filesIn(directoryOf(place));
    if (!names.empty()) return names;
  }
  return {};
}

// A save that is cut off between two top-level elements, or between a comment and the first of them,
// leaves a file that still parses. The library never removes such an element, so the backup is the
// older but whole copy then.
std::string elementCutOff(const tinyxml2::XMLDocument& main, const tinyxml2::XMLDocument& backup) {
  const tinyxml2::XMLElement* kept = main.FirstChildElement();
  const tinyxml2::XMLElement* whole = backup.FirstChildElement();
  while (kept != nullptr && whole != nullptr && std::strcmp(kept->Value(), whole->Value()) == 0) {
    kept = kept->NextSiblingElement();
    whole = whole->NextSiblingElement();
  }
  return kept == nullptr && whole != nullptr ? whole->Value() : "";
}

void compare(ConfigFile& file) {
  const bool parses = file.main.state == State::Good || file.main.state == State::NoElement;
  if (!parses || file.backup.state != State::Good || sameContents(file.main, file.backup)) return;
  const std::string missing = elementCutOff(*file.main.document, *file.backup.document);
  if (missing.empty()) {
    file.backup.state = State::OutOfStep;
  } else {
    file.main.state = State::CutShort;
    file.main.fault = "ends before '" + missing + "', which its backup has";
  }
}

ConfigFile survey(const std::string& name, bool checkedAtStart) {
  ConfigFile file{name, checkedAtStart, loadCopy(pathOf(Place::Main, name)),
                  loadCopy(pathOf(Place::Backup, name)), loadCopy(pathOf(Place::Default, name))};
  compare(file);
  return file;
}

}  // namespace

const char* wordFor(Place place) {
  constexpr const char* kWords[] = {"main", "backup", "default"};
  return kWords[static_cast<std::size_t>(place)];
}

std::string pathOf(Place place, const std::string& name) {
  return std::string(directoryOf(place)) + "/" + name;
}

std::vector<std::string> filesIn(const std::string& directory) {
  return entriesOf(directory, [](const fs::directory_entry& entry) {
    std::error_code ignored;
    return entry.symlink_status(ignored).type() == fs::file_type::regular;
  });
}

std::vector<std::string> namesIn(const std::string& directory) {
  return entriesOf(directory, [](const fs::directory_entry&) { return true; });
}

bool isXmlName(const std::string& name) {
  return fs::path(name).extension() == ".xml";
}

const Copy& ConfigFile::copy(Place place) const {
  if (place == Place::Main) return main;
  return place == Place::Backup ? backup : factory;
}

const ConfigFile* FileSet::find(const std::string& name) const {
  const auto found = std::find_if(files.begin(), files.end(),
                                  [&](const ConfigFile& file) { return file.name == name; });
  return found == files.end() ? nullptr : &*found;
}

FileSet surveyFiles() {
  const std::vector<std::string> checked = namesCheckedAtStart();
  const std::set<std::string> checkedAtStart(checked.begin(), checked.end());
  std::set<std::string> names = checkedAtStart;
  for (const Place place : {Place::Default, Place::Main, Place::Backup})
    for (const std::string& name : namesIn(directoryOf(place)))
      if (isXmlName(name)) names.insert(name);

  FileSet set;
  set.anyBackup = !filesIn(CFG_DIR_BACKUP).empty();
  for (const std::string& name : names) {
    const Stage stage(name, set.files.size() + 1, names.size());
    set.files.push_back(survey(name, checkedAtStart.count(name) != 0));
  }
  return set;
}

void requireAnyFile(const FileSet& set) {
  if (set.files.empty())
    throw Refusal(Status::Unusable,
                  "there is no file in " CFG_DIR_MAIN ", " CFG_DIR_BACKUP " or " CFG_DIR_DEFAULT);
}

}  // namespace camcfg::tool::device
