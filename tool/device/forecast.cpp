#include "device/forecast.h"

#include <camcfg/types.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/in_the_way.h"

namespace camcfg::tool::device {
namespace {

const Copy kMissing;
// What is left where room ran out.
const Copy kCutOff{State::Damaged, "is not well-formed XML"};

std::uintmax_t sizeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<std::uintmax_t>(status.st_size) : 0;
}

std::string sourceFrom(Place place) {
  return std::string("from-") + wordFor(place);
}

}  // namespace

Forecast::Forecast(const FileSet& set, std::vector<std::string> moved)
    : set_(set), moved_(std::move(moved)), shared_(set, moved_), obstacles_(set.files.size()) {
  for (const ConfigFile& file : set_.files)
    for (const Place place : kPlaces) {
      const std::string path = file.path(place);
      const bool isThere = !isGone(path);
      slots_.push_back(
          {path, isThere ? &file.copy(place) : &kMissing, isThere ? sizeOf(path) : 0, "stays"});
    }
}

std::vector<Repair> Forecast::startUpRepairs(const ConfigFile& file, bool anyBackup) const {
  return device::startUpRepairs(
      file.name, {copy(file, Place::Main).loads(), anyBackup && copy(file, Place::Backup).loads(),
                  set_.anyFactory && copy(file, Place::Default).loads(), anyBackup});
}

// A main copy that is no file, or may not be used, or has too long a name, must not keep the others from
// being restored.
std::string Forecast::whyNotVerified() const {
  std::vector<Writing> mains;
  const bool anyBackup = hasBackups();
  for (const std::string& name : set_.checkedAtStart)
    for (const Repair& repair : startUpRepairs(*set_.find(name), anyBackup)) {
      const std::string path = repair.target();
      const std::string other = shared_.ofAnotherName(path);
      if (!other.empty()) return sameFileFault(path, other);
      const ConfigFile& file = *set_.find(repair.name);
      const State state = copy(file, Place::Main).state;
      const bool isFile = state != State::NotAFile && state != State::Unreadable;
      if (repair.to != Place::Main || !isFile || !repair.fitsTheCopy()) continue;
      if (shared_.isMoved(path) || isGoingToBeMade(directoryOf(shared_.identity(path)))) continue;
      mains.push_back(replacing(path, slot(file, repair.from).bytes));
    }
  return whyNotWritable(mains);
}

// The library counts the backups before it begins.
void Forecast::start() {
  const bool anyBackup = hasBackups();
  for (const std::string& name : set_.checkedAtStart)
    for (const Repair& repair : startUpRepairs(*set_.find(name), anyBackup))
      replaceByLibrary(repair);
}

void Forecast::resync() {
  makesDirectories_ = true;
  if (!whyNotVerified().empty()) return;
  start();
  for (const ConfigFile& file : set_.files) resync(file);
}

void Forecast::resync(const ConfigFile& file) {
  while (const auto next = nextResync(file.name, states(file), copy(file, Place::Default).state))
    if (!replaceByTool(*next, sourceFrom(next->from))) return;
}

// What is salvaged has the elements of the factory copy.
void Forecast::boot(const std::vector<std::string>& salvaged) {
  makesDirectories_ = true;
  for (const std::string& name : salvaged)
    if (replaceByTool({name, Place::Main, Place::Default}, "salvaged"))
      replaceByTool({name, Place::Backup, Place::Default}, "salvaged");
  resync();
}

State Forecast::state(const ConfigFile& file, Place place) const {
  if (place == Place::Main) return states(file).main;
  if (place == Place::Backup) return states(file).backup;
  return copy(file, place).state;
}

const std::string& Forecast::source(const ConfigFile& file, Place place) const {
  return slot(file, place).source;
}

const std::string& Forecast::obstacle(const ConfigFile& file) const {
  return obstacles_[numberOf(file)];
}

std::size_t Forecast::numberOf(const ConfigFile& file) const {
  return static_cast<std::size_t>(&file - set_.files.data());
}

const Forecast::Slot& Forecast::slot(const ConfigFile& file, Place place) const {
  return slots_[numberOf(file) * kPlaces.size() + static_cast<std::size_t>(place)];
}

PairState Forecast::states(const ConfigFile& file) const {
  return compared(copy(file, Place::Main), copy(file, Place::Backup));
}

// Moved away itself, or by what it leads to.
bool Forecast::isGone(const std::string& path) const {
  return shared_.isMoved(path) || shared_.isMoved(shared_.identity(path));
}

// The last one may be moved away, or the first one stored.
bool Forecast::hasBackups() const {
  const std::vector<std::string> names = filesIn(CFG_DIR_BACKUP);
  return std::any_of(names.begin(), names.end(),
                     [this](const std::string& name) {
                       return !shared_.isMoved(pathOf(Place::Backup, name));
                     }) ||
         std::any_of(written_.begin(), written_.end(), [](const Writing& writing) {
           return beginsWith(writing.path, CFG_DIR_BACKUP "/");
         });
}

// In a directory that is made, or as a file of its own in place of what was moved away.
bool Forecast::isMadeAgain(const std::string& path) const {
  return shared_.isMoved(path) ||
         (makesDirectories_ && isGoingToBeMade(directoryOf(shared_.identity(path))));
}

std::string Forecast::whyNotMade(const std::string& path) const {
  if (!shared_.isMoved(path)) return "";
  const std::string directory = directoryOf(path);
  const char* parent = isAmong(moved_, directory) ? "/" : directory.c_str();
  if (faccessat(AT_FDCWD, parent, W_OK, AT_EACCESS) == 0) return "";
  return concat("cannot write ", path, ": ", std::strerror(errno));
}

std::string Forecast::obstacleTo(const Repair& repair, std::uintmax_t bytes) const {
  if (!repair.fitsTheCopy()) return kNameTooLong;
  const std::string path = repair.target();
  if (isMadeAgain(path)) return whyNotMade(path);
  if (isGone(path) && slot(*set_.find(repair.name), repair.to).copy == &kMissing)
    return concat("cannot write ", path, ": it is a link to nothing; move it away");
  std::vector<Writing> all = written_;
  all.push_back(replacing(path, bytes));
  return whyNotWritable(all);
}

// Writing through a link changes the file that it leads to; a link to nothing comes to life with it. A
// file that may not be read is not read afterwards either.
void Forecast::store(const std::string& path, const Slot& contents, const std::string& source) {
  const Slot stored = contents;
  for (Slot& each : slots_) {
    if (shared_.identity(each.path) != shared_.identity(path)) continue;
    each.source = nameOf(each.path) == nameOf(path) ? source : "overwritten";
    if (each.copy->state == State::Unreadable) continue;
    each.copy = stored.copy;
    each.bytes = stored.bytes;
  }
}

// A copy by the library that runs out of room leaves a part of the file.
void Forecast::replaceByLibrary(const Repair& repair) {
  const std::string source = sourceFrom(repair.from);
  if (!replace(repair, source) && beginsWith(obstacle(*set_.find(repair.name)), kNoRoom))
    store(repair.target(), {"", &kCutOff, 0, ""}, source);
}

// The tool replaces no other file's settings, and reads what it has written.
bool Forecast::replaceByTool(const Repair& repair, const std::string& source) {
  const ConfigFile& file = *set_.find(repair.name);
  const std::string other = shared_.ofAnotherName(repair.target());
  std::string& obstacle = obstacles_[numberOf(file)];
  if (!other.empty()) obstacle = sameFileFault(repair.target(), other);
  if (!other.empty() || !replace(repair, source)) return false;
  if (copy(file, repair.to).loads()) return true;
  obstacle = "the copy " + copy(file, repair.to).fault;
  return false;
}

bool Forecast::replace(const Repair& repair, const std::string& source) {
  const ConfigFile& file = *set_.find(repair.name);
  const Slot& contents = slot(file, repair.from);
  std::string& obstacle = obstacles_[numberOf(file)];
  obstacle = obstacleTo(repair, contents.bytes);
  if (!obstacle.empty()) return false;
  const std::string path = repair.target();
  if (!isMadeAgain(path)) written_.push_back(replacing(path, contents.bytes));
  store(path, contents, source);
  return true;
}

}  // namespace camcfg::tool::device
