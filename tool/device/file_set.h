#ifndef CAMCFG_TOOL_DEVICE_FILE_SET_H
#define CAMCFG_TOOL_DEVICE_FILE_SET_H

#include <array>
#include <string>
#include <vector>

#include "device/copy.h"

namespace camcfg::tool::device {

/// Where the three copies of a file are.
enum class Place { Main, Backup, Default };
constexpr std::array<Place, 3> kPlaces = {Place::Main, Place::Backup, Place::Default};

/// The word for a place in answers.
const char* wordFor(Place place);

/// The path of a file's copy.
std::string pathOf(Place place, const std::string& name);

/// The names of the regular files in a directory, sorted; none if it cannot be opened.
std::vector<std::string> filesIn(const std::string& directory);

/// The names of everything in a directory, sorted; none if it cannot be opened.
std::vector<std::string> namesIn(const std::string& directory);

/// Whether a name ends with ".xml".
bool isXmlName(const std::string& name);

/// One configuration file with its copies.
struct ConfigFile {
  std::string name;
  bool checkedAtStart = false;  ///< start-up verification looks at this name
  Copy main;
  Copy backup;
  Copy factory;

  const Copy& copy(Place place) const;
  std::string path(Place place) const { return pathOf(place, name); }
};

/// The configuration files of a device, sorted by name: all those that start-up verification looks
/// at, and whatever is called "*.xml" in any of the three directories.
struct FileSet {
  std::vector<ConfigFile> files;
  bool anyBackup = false;  ///< the backup directory holds a file

  /// The file of this name; null if there is none.
  const ConfigFile* find(const std::string& name) const;
};

/// Loads every copy of every file. A backup that is good but unlike its main copy is out of step.
FileSet surveyFiles();

/// @throws Refusal if a device has not a single file
void requireAnyFile(const FileSet& set);

}  // namespace camcfg::tool::device

#endif
