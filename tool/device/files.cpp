#include "device/files.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <set>

#include "base/concat.h"
#include "base/host.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "device/calm.h"

namespace camcfg::tool::device {
namespace {

constexpr std::string_view kSuffix = ".xml";

// What the file system says of a path, before the library opens it.
Copy examine(const std::string& path) {
  struct stat status {};
  const bool isThere = stat(path.c_str(), &status) == 0;
  const bool leadsNowhere = !isThere && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP);
  if (leadsNowhere && isLink(path)) return {State::NotAFile, "is a link to nothing"};
  if (leadsNowhere) return {};
  if (isThere && S_ISDIR(status.st_mode)) return {State::NotAFile, "is a directory"};
  if (isThere && !S_ISREG(status.st_mode)) return {State::NotAFile, "is not a regular file"};
  if (!isThere || faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
    return {State::Unreadable, std::string("cannot be read: ") + std::strerror(errno)};
  return {State::Good, ""};
}

// The library gives one reason for all that it cannot load; any other complaint, such as a lock
// that cannot be had, is passed on as it is.
std::string loadFault(const std::string& path) {
  const std::string complaint = lastComplaint();
  const bool ordinary = complaint.empty() || complaint == concat("Load file ", path, " fail");
  return ordinary ? "is not well-formed XML" : "cannot be loaded: " + complaint;
}

std::string remedyFor(State state) {
  if (state == State::Unreadable) return "";
  const bool inTheWay = state != State::Missing && state != State::Damaged;
  return concat("; ", inTheWay ? "move it away and " : "", "run 'camcfg verify' to repair it");
}

Descriptor opened(const std::string& directory) {
  return Descriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// The names of regular files, in no order.
std::vector<std::string> ownFilesIn(const std::string& directory) {
  const Descriptor folder = opened(directory);
  std::vector<std::string> names;
  for (std::string& name : namesIn(folder.get())) {
    struct stat status {};
    if (fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(status.st_mode))
      names.push_back(std::move(name));
  }
  return names;
}

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

// Start-up verification looks at the names of the first directory that holds any file, as they come.
std::vector<std::string> namesCheckedAtStart() {
  for (const Place place : {Place::Default, Place::Main, Place::Backup}) {
    std::vector<std::string> names = ownFilesIn(pathOf(place, ""));
    if (!names.empty()) return names;
  }
  return {};
}

// What a copy is by itself.
State ownState(const Copy& copy) {
  if (!copy.loads()) return copy.state;
  return copy.document->FirstChildElement() == nullptr ? State::NoElement : State::Good;
}

void compare(ConfigFile& file) {
  const PairState states = compared(file.main, file.backup);
  file.main.state = states.main;
  file.backup.state = states.backup;
  if (states.main == State::CutShort)
    file.main.fault = concat("ends before '", states.lacking, "', which its backup has");
}

FileSet surveyOnce() {
  FileSet set;
  set.checkedAtStart = namesCheckedAtStart();
  std::set<std::string> names(set.checkedAtStart.begin(), set.checkedAtStart.end());
  for (const Place place : kPlaces)
    for (const std::string& name : xmlNamesIn(pathOf(place, ""))) names.insert(name);

  set.anyBackup = !filesIn(CFG_DIR_BACKUP).empty();
  set.anyFactory = !filesIn(CFG_DIR_DEFAULT).empty();
  for (const std::string& name : names) {
    const Stage stage(name, set.files.size() + 1, names.size());
    set.files.push_back(surveyFile(name, isAmong(set.checkedAtStart, name)));
  }
  return set;
}

}  // namespace

void requireDevice() {
  for (const char* directory : {CFG_DIR_MAIN, CFG_DIR_BACKUP, "/app"})
    if (access(directory, F_OK) == 0) return;
  throw Refusal(Status::Unusable,
                "there is no device here: " CFG_DIR_MAIN ", " CFG_DIR_BACKUP
                " and /app do not exist; '--root DIR' works on a device below DIR, and the demo "
                "(scripts/demo.sh) lays one out in build/device");
}

const char* wordFor(State state) {
  constexpr const char* kWords[] = {"good",       "missing",    "damaged",     "no-element",
                                    "unreadable", "not-a-file", "out-of-step", "cut-short"};
  return kWords[static_cast<std::size_t>(state)];
}

const char* wordFor(Place place) {
  constexpr const char* kWords[] = {"main", "backup", "default"};
  return kWords[static_cast<std::size_t>(place)];
}

std::string pathOf(Place place, const std::string& file) {
  constexpr const char* kDirectories[] = {CFG_DIR_MAIN, CFG_DIR_BACKUP, CFG_DIR_DEFAULT};
  return concat(kDirectories[static_cast<std::size_t>(place)], "/", nameOf(file));
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

bool isLink(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

Copy loadCopy(const std::string& path) {
  workingOn(path);
  Copy copy = examine(path);
  if (copy.state != State::Good) return copy;
  forgetComplaint();
  copy.document.reset(CFG_GetDocByFileName(argument(path), BU_TRUE));
  if (copy.document == nullptr) return {State::Damaged, loadFault(path)};
  if (copy.document->FirstChildElement() != nullptr) return copy;
  return {State::NoElement, "holds no element", std::move(copy.document)};
}

Document parsed(std::string_view text) {
  auto document = std::make_unique<tinyxml2::XMLDocument>(true, tinyxml2::PRESERVE_WHITESPACE);
  document->Parse(text.data(), text.size());
  return document;
}

bool isWhole(const tinyxml2::XMLDocument& parsed) {
  return !parsed.Error() && parsed.FirstChildElement() != nullptr;
}

Document requireDocument(const std::string& path) {
  Copy copy = loadCalmly(path);
  if (copy.state == State::Missing) requireDevice();
  if (copy.state != State::Good)
    throw Refusal(Status::Unusable, concat(path, " ", copy.fault, remedyFor(copy.state)));
  return std::move(copy.document);
}

bool sameContents(const Copy& a, const Copy& b) {
  return a.loads() && b.loads() && written(*a.document) == written(*b.document);
}

PairState compared(const Copy& main, const Copy& backup) {
  PairState states{ownState(main), ownState(backup)};
  if (!main.loads() || states.backup != State::Good || sameContents(main, backup)) return states;
  states.lacking = elementCutOff(main, backup);
  if (states.lacking.empty())
    states.backup = State::OutOfStep;
  else
    states.main = State::CutShort;
  return states;
}

// The library never removes a top-level element.
std::string elementCutOff(const Copy& cut, const Copy& whole) {
  if (!cut.loads() || !whole.loads()) return "";
  const tinyxml2::XMLElement* kept = cut.document->FirstChildElement();
  const tinyxml2::XMLElement* next = whole.document->FirstChildElement();
  while (kept != nullptr && next != nullptr && std::strcmp(kept->Value(), next->Value()) == 0) {
    kept = kept->NextSiblingElement();
    next = next->NextSiblingElement();
  }
  return kept == nullptr && next != nullptr ? next->Value() : "";
}

std::vector<std::string> filesIn(const std::string& directory) {
  return sorted(ownFilesIn(directory));
}

std::vector<std::string> xmlNamesIn(const std::string& directory) {
  std::vector<std::string> names = namesIn(opened(directory).get());
  names.erase(std::remove_if(names.begin(), names.end(),
                             [](const std::string& name) { return !isXmlName(name); }),
              names.end());
  return sorted(std::move(names));
}

bool isXmlName(const std::string& name) {
  return hasEnding(nameOf(name), kSuffix);
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

ConfigFile surveyFile(const std::string& name, bool checkedAtStart) {
  ConfigFile file{name, checkedAtStart, loadCopy(pathOf(Place::Main, name)),
                  loadCopy(pathOf(Place::Backup, name)), loadCopy(pathOf(Place::Default, name))};
  compare(file);
  return file;
}

FileSet surveyFiles() {
  return calmly(surveyOnce, [](const FileSet& set) {
    return std::any_of(set.files.begin(), set.files.end(), [](const ConfigFile& file) {
      return file.main.state != State::Good || file.backup.state != State::Good;
    });
  });
}

void requireAnyFile(const FileSet& set) {
  if (!set.files.empty()) return;
  requireDevice();
  throw Refusal(Status::Unusable,
                "there is no file in " CFG_DIR_MAIN ", " CFG_DIR_BACKUP " or " CFG_DIR_DEFAULT);
}

std::vector<std::string> languages() {
  std::vector<std::string> names = xmlNamesIn(CFG_DIR_LANGUAGE);
  for (std::string& name : names) name.resize(name.size() - kSuffix.size());
  return names;
}

Document requireTexts(const std::string& language) {
  const std::vector<std::string> known = languages();
  if (!isAmong(known, language))
    throw Refusal(concat("there is no language '", language, "'",
                         known.empty() ? "" : concat(" (there are ", joined(known), ")"),
                         didYouMean(language, known)));
  const std::string path = (CFG_DIR_LANGUAGE + language).append(kSuffix);
  Copy texts = loadCopy(path);
  if (texts.state != State::Good) throw Refusal(Status::Unusable, concat(path, " ", texts.fault));
  return std::move(texts.document);
}

std::vector<std::string> keysOf(const tinyxml2::XMLDocument& texts) {
  std::vector<std::string> keys;
  for (const auto* entry = texts.FirstChildElement()->FirstChildElement(); entry != nullptr;
       entry = entry->NextSiblingElement())
    keys.emplace_back(entry->Value());
  return keys;
}

}  // namespace camcfg::tool::device
