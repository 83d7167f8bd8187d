#include "device/forecast.h"

#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/plain_text.h"
#include "device/in_the_way.h"
#include "device/room.h"

namespace camcfg::tool::device {

Forecast::Forecast(const FileSet& set, const ConfigFile& file, std::vector<Place> moved)
    : set_(set), file_(file), moved_(std::move(moved)) {
  for (const Place place : kPlaces)
    if (!isMoved(place)) holds_[indexOf(place)] = place;
  sources_.fill("stays");
}

void Forecast::start() {
  if (!file_.checkedAtStart) return;
  const Loading loading{copy(Place::Main).loads(), hasBackups() && copy(Place::Backup).loads(),
                        set_.anyFactory && copy(Place::Default).loads(), hasBackups()};
  for (const Repair& repair : startUpRepairs(file_.name, loading)) replace(repair);
}

void Forecast::resync() {
  makesDirectories_ = true;
  start();
  for (auto next = nextResync(file_.name, states(), state(Place::Default)); next && replace(*next);)
    next = nextResync(file_.name, states(), state(Place::Default));
}

void Forecast::boot(bool isSalvaged) {
  makesDirectories_ = true;
  // What is salvaged has the elements of the factory copy.
  const bool isStored =
      isSalvaged && replace({file_.name, Place::Main, Place::Default}, "salvaged");
  if (isStored) replace({file_.name, Place::Backup, Place::Default}, "salvaged");
  resync();
}

State Forecast::state(Place place) const {
  if (place == Place::Main) return states().main;
  if (place == Place::Backup) return states().backup;
  return copy(place).state;
}

const Copy& Forecast::copy(Place place) const {
  static const Copy missing;
  const std::optional<Place>& held = holds_[indexOf(place)];
  return held ? file_.copy(*held) : missing;
}

// The last one may be moved away.
bool Forecast::hasBackups() const {
  if (!isMoved(Place::Backup)) return set_.anyBackup;
  const std::vector<std::string> names = filesIn(CFG_DIR_BACKUP);
  return std::any_of(names.begin(), names.end(),
                     [this](const std::string& name) { return name != file_.name; });
}

bool Forecast::isMoved(Place place) const {
  return std::find(moved_.begin(), moved_.end(), place) != moved_.end();
}

bool Forecast::areOne(Place a, Place b) const {
  const std::string first = file_.path(a);
  const std::string second = file_.path(b);
  if (a == b || !areOneFile(first, second)) return a == b;
  const std::string link = linkBetween(first, second);
  return !(isMoved(a) && link != second) && !(isMoved(b) && link != first);
}

std::string Forecast::obstacleTo(const Repair& repair) const {
  if (!repair.fitsTheCopy()) return "its name is too long for the library to copy it";
  const std::string path = repair.target();
  const std::string directory = path.substr(0, path.rfind('/'));
  if (isMoved(repair.to) || (makesDirectories_ && isGoingToBeMade(directory))) return "";
  struct stat source {};
  const std::optional<Place>& held = holds_[indexOf(repair.from)];
  if (held) stat(file_.path(*held).c_str(), &source);
  return whyNotWritable({replacing(path, static_cast<std::uintmax_t>(source.st_size))});
}

// Writing through a link changes the file that it leads to; a link to nothing comes to life with it.
bool Forecast::replace(const Repair& repair, const std::string& source) {
  obstacle_ = obstacleTo(repair);
  if (!obstacle_.empty()) return false;
  const std::optional<Place> contents = holds_[indexOf(repair.from)];
  for (const Place place : kPlaces) {
    if (!areOne(place, repair.to)) continue;
    holds_[indexOf(place)] = contents;
    sources_[indexOf(place)] = source;
  }
  return true;
}

bool Forecast::replace(const Repair& repair) {
  return replace(repair, std::string("from-") + wordFor(repair.from));
}

}  // namespace camcfg::tool::device
