#ifndef CAMCFG_TOOL_DEVICE_FILES_H
#define CAMCFG_TOOL_DEVICE_FILES_H

#include <tinyxml2.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace camcfg::tool::device {

using Document = std::unique_ptr<tinyxml2::XMLDocument>;

/// What a copy of a configuration file is found to be.
enum class State {
  Good,
  Missing,
  Damaged,     ///< not well-formed
  NoElement,   ///< well-formed, but it holds nothing
  Unreadable,  ///< not for the one who runs the tool
  NotAFile,    ///< a directory, a link to nothing or something else of that name
  OutOfStep,   ///< a good backup copy with other contents than its main copy
  CutShort,    ///< a main copy that ends before a top-level element that its good backup still has
};

/// The word for a state in answers.
const char* wordFor(State state);

/// Where the three copies of a file are.
enum class Place { Main, Backup, Default };
constexpr std::array<Place, 3> kPlaces = {Place::Main, Place::Backup, Place::Default};

/// The word for a place in answers.
const char* wordFor(Place place);

/// The path of a copy of the file with this name, which may have any directory before it.
std::string pathOf(Place place, const std::string& file);

/// The name of a file without its directory.
std::string nameOf(const std::string& path);

/// The directory of a file, without a slash at its end.
std::string directoryOf(const std::string& path);

/// A copy as the library loads it.
struct Copy {
  State state = State::Missing;
  std::string fault = "is missing";  ///< what is wrong; empty for a good copy
  Document document{};               ///< what was loaded; null if the library cannot load it

  /// Whether the library loads it, which is all that start-up verification asks for.
  bool loads() const { return document != nullptr; }
};

/// Loads a copy of a file through the library.
Copy loadCopy(const std::string& path);

/// Loads a main copy for a command that cannot do without it.
/// @throws Refusal that names the file, its fault and what repairs it
Document requireDocument(const std::string& path);

/// A text as the library parses files; with an error if it is not well-formed.
Document parsed(std::string_view text);

/// Whether a text is well-formed and has an element.
bool isWhole(const tinyxml2::XMLDocument& parsed);
inline bool isWhole(std::string_view text) {
  return isWhole(*parsed(text));
}

/// Whether two documents are the same to the library.
bool sameContents(const Copy& a, const Copy& b);

/// The states of a main copy and its backup, compared with each other.
struct PairState {
  State main;
  State backup;
  std::string lacking{};  ///< the element at which a main copy is cut short
};
PairState compared(const Copy& main, const Copy& backup);

/// The first top-level element that a copy lacks at its end: a save that is cut off between two of
/// them, or between a comment and the first of them, leaves a file that still loads. Empty if it lacks
/// none, or one of the two does not load.
/// @param whole  an older copy, or one with the same elements
std::string elementCutOff(const Copy& cut, const Copy& whole);

/// A text as the interface takes it: the library's `char*` arguments are not written to.
inline char* argument(const std::string& text) {
  return const_cast<char*>(text.c_str());
}

/// The names of the regular files in a directory, sorted; none if it cannot be opened.
std::vector<std::string> filesIn(const std::string& directory);

/// The names ending with ".xml" of what is in a directory, sorted.
std::vector<std::string> xmlNamesIn(const std::string& directory);

/// Whether a name ends with ".xml".
bool isXmlName(const std::string& name);

/// Whether a path names a symbolic link.
bool isLink(const std::string& path);

/// One configuration file with its copies.
struct ConfigFile {
  std::string name;
  bool checkedAtStart = false;  ///< start-up verification looks at this name
  Copy main{};
  Copy backup{};
  Copy factory{};

  const Copy& copy(Place place) const;
  std::string path(Place place) const { return pathOf(place, name); }
};

/// The configuration files of a device, sorted by name: all those that start-up verification looks
/// at, and whatever is called "*.xml" in any of the three directories.
struct FileSet {
  std::vector<ConfigFile> files;
  bool anyBackup = false;                     ///< the backup directory holds a file
  bool anyFactory = false;                    ///< the factory set's directory holds a file
  std::vector<std::string> checkedAtStart{};  ///< what start-up verification looks at, in its order

  /// The file of this name; null if there is none.
  const ConfigFile* find(const std::string& name) const;
};

/// Loads every copy of one file, once, whoever may be saving it.
ConfigFile surveyFile(const std::string& name, bool checkedAtStart = false);

/// Loads every copy of every file. A backup that is good but unlike its main copy is out of step.
FileSet surveyFiles();

/// @throws Refusal if none of a device's directories exists; it says where a device may be
void requireDevice();

/// @throws Refusal if a device has not a single file
void requireAnyFile(const FileSet& set);

/// The names of all language files, without ".xml".
std::vector<std::string> languages();

/// The texts of a language.
/// @throws Refusal if there is no such language or its file is unusable
Document requireTexts(const std::string& language);

/// The keys of all texts.
std::vector<std::string> keysOf(const tinyxml2::XMLDocument& texts);

}  // namespace camcfg::tool::device

#endif
