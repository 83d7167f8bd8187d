#include "device/file_set.h"

#include <camcfg/types.h>

#include <algorithm>
#include <set>

#include "device/directory.h"

namespace camcfg::tool {
namespace {

const char* directoryOf(Place place) {
  switch (place) {
    case Place::Main:
      return CFG_DIR_MAIN;
    case Place::Backup:
      return CFG_DIR_BACKUP;
    case Place::Default:
      break;
  }
  return CFG_DIR_DEFAULT;
}

// Start-up verification looks at the names of the first directory that holds any file.
std::vector<std::string> namesCheckedAtStart() {
  for (const Place place : {Place::Default, Place::Main, Place::Backup}) {
    std::vector<std::string> names = filesIn(directoryOf(place));
    if (!names.empty()) return names;
  }
  return {};
}

ConfigFile survey(const std::string& name, bool checkedAtStart) {
  ConfigFile file{name, checkedAtStart, loadCopy(pathOf(Place::Main, name)),
                  loadCopy(pathOf(Place::Backup, name)), loadCopy(pathOf(Place::Default, name))};
  const bool bothGood = file.main.state == State::Good && file.backup.state == State::Good;
  if (bothGood && !sameContents(file.main, file.backup)) file.backup.state = State::OutOfStep;
  return file;
}

}  // namespace

const char* wordFor(Place place) {
  switch (place) {
    case Place::Main:
      return "main";
    case Place::Backup:
      return "backup";
    case Place::Default:
      break;
  }
  return "default";
}

std::string pathOf(Place place, const std::string& name) {
  return std::string(directoryOf(place)) + "/" + name;
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
  for (const std::string& name : names)
    set.files.push_back(survey(name, checkedAtStart.count(name) != 0));
  return set;
}

}  // namespace camcfg::tool
