#include "device/advice.h"

#include <sys/stat.h>

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/in_the_way.h"

namespace camcfg::tool::device {
namespace {

constexpr char kVerify[] = "verify";
constexpr char kResync[] = "verify --resync";
constexpr Place kWritten[] = {Place::Main, Place::Backup};

std::string runs(const char* command) {
  return concat("'camcfg ", command, "'");
}

// ... "restores it from the factory set".
std::string restoresFrom(const std::string& source) {
  return std::string(" restores it from ") +
         (source == "from-backup" ? "its backup" : "the factory set");
}

std::vector<std::string> allInTheWay(const ConfigFile& file) {
  std::vector<std::string> paths;
  for (const Place place : kWritten) {
    std::string path = inTheWayOf(file.path(place));
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

void adviseMoving(const std::vector<std::string>& paths, Advice& advice) {
  advice.move = paths;
  const bool isItself = paths.size() == 1 && paths.front() == advice.path;
  advice.outlook = concat("; move ", isItself ? "it" : joined(paths), " away");
}

bool isAnyGood(const ConfigFile& file) {
  return file.backup.state == State::Good || file.factory.state == State::Good;
}

std::string withoutAdvice(const ConfigFile& file, Place place, const std::string& obstacle) {
  if (place == Place::Main && !isAnyGood(file)) return " and no other copy of it is good";
  return obstacle.empty() || !isAnyGood(file) ? "" : "; it is not restored: " + obstacle;
}

bool isFile(const ConfigFile& file, Place place) {
  const State state = file.copy(place).state;
  return state != State::Missing && state != State::NotAFile;
}

bool isHardLink(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && status.st_nlink > 1;
}

// Of copies that are one file, the one that stays: the first that is no link, or else leads to none of
// the others.
const std::string& ownerOf(const std::vector<std::string>& copies) {
  auto found = std::find_if(copies.begin(), copies.end(),
                            [](const std::string& copy) { return linkAt(copy).empty(); });
  if (found == copies.end())
    found = std::find_if(copies.begin(), copies.end(),
                         [&](const std::string& copy) { return !isAmong(copies, targetOf(copy)); });
  return found == copies.end() ? copies.front() : *found;
}

// What has to be moved away so that a copy is no longer its owner's file. Where that is another file's, the
// other copy may not be restored from either.
std::vector<std::string> linksOf(const ConfigFile& file, Place place, const std::string& owner,
                                 const std::vector<std::string>& copies) {
  std::vector<std::string> links;
  for (const Place each : kWritten) {
    const std::string path = file.path(each);
    if (each != place && (nameOf(owner) == file.name || !isAmong(copies, path))) continue;
    std::string link = linkAt(path);
    if (link.empty() && isHardLink(path)) link = path;
    if (!link.empty() && !isAmong(links, link)) links.push_back(std::move(link));
  }
  return links;
}

}  // namespace

Adviser::Adviser(const FileSet& set, std::vector<std::string> salvaged)
    : set_(set),
      shared_(set),
      salvaged_(std::move(salvaged)),
      start_(set),
      resync_(set),
      boot_(set) {
  refusal_ = start_.whyNotVerified();
  start_.start();
  resync_.resync();
  boot_.boot(salvaged_);
}

Advice Adviser::onCopy(const ConfigFile& file, Place place) const {
  const bool differs = file.copy(place).state == State::OutOfStep;
  Advice advice{differs ? "differs from its main copy" : file.copy(place).fault, file.path(place)};
  if (leadsToAnother(file, place) || start_.state(file, place) != State::Good) {
    withoutStart(file, place, advice);
    return advice;
  }
  advice.outlook = "; the next start" + restoresFrom(start_.source(file, place));
  if (isAmong(salvaged_, file.name)) advice.outlook += ", 'camcfg boot' from what it can salvage";
  if (refusal_.empty()) advice.command = kVerify;
  return advice;
}

void Adviser::withoutStart(const ConfigFile& file, Place place, Advice& advice) const {
  const bool isRestored = !leadsToAnother(file, place) && resync_.state(file, place) == State::Good;
  const std::vector<std::string> moved =
      isRestored ? std::vector<std::string>() : whatToMove(file, place);
  if (!moved.empty()) {
    adviseMoving(moved, advice);
    advice.outlook += " and run " + runs(kResync);
  } else if (isRestored) {
    advice.outlook = concat(
        "; ", runs(kResync),
        place == Place::Main ? restoresFrom(resync_.source(file, place)) : " brings it up to date");
  } else {
    advice.outlook =
        withoutAdvice(file, place, refusal_.empty() ? resync_.obstacle(file) : refusal_);
  }
  if (isRestored || !moved.empty()) advice.command = kResync;
}

std::optional<Advice> Adviser::onFactory(const ConfigFile& file, bool isExpected) const {
  const std::string path = file.path(Place::Default);
  const State state = file.factory.state;
  if (state == State::Missing && !isExpected) return std::nullopt;
  if (state == State::NoElement)
    return Advice{file.factory.fault, path, ", so no start can restore settings from it"};
  if (state == State::Good && file.checkedAtStart && set_.anyFactory) return std::nullopt;
  return Advice{state == State::Good ? "is a link" : file.factory.fault, path,
                ", so no start can restore from it"};
}

std::optional<Advice> Adviser::onLink(const ConfigFile& file, Place place) const {
  const std::string path = file.path(place);
  if (sameFileAs(file, place).empty()) return std::nullopt;
  const std::vector<std::string> copies = shared_.copiesOfSame(path);
  const std::string& owner = ownerOf(copies);
  if (owner == path) return std::nullopt;
  Advice advice{"is the same file as " + owner, path};
  if (place == Place::Default) return advice;
  const std::vector<std::string> moved = linksOf(file, place, owner, copies);
  if (moved.empty() || !isGoodAfter(file, place, moved)) return advice;
  adviseMoving(moved, advice);
  advice.command = kResync;
  advice.outlook += " and run " + runs(kResync);
  return advice;
}

std::string Adviser::sameFileAs(const ConfigFile& file, Place place) const {
  if (!isFile(file, place)) return "";
  const std::string path = file.path(place);
  for (const std::string& copy : shared_.copiesOfSame(path))
    if (copy != path) return copy;
  return "";
}

bool Adviser::isGoodAfter(const ConfigFile& file, Place place,
                          const std::vector<std::string>& moved) const {
  Forecast forecast(set_, moved);
  forecast.resync();
  return forecast.state(file, place) == State::Good;
}

// A link to nothing that leads to where another copy will be comes to life with that, but is none of
// its own.
bool Adviser::leadsToAnother(const ConfigFile& file, Place place) const {
  const std::string path = file.path(place);
  return !isFile(file, place) && !linkAt(path).empty() && shared_.copiesOfSame(path).size() > 1;
}

// The least that has to be moved away before `verify --resync` makes a copy good; nothing if that does
// not help.
std::vector<std::string> Adviser::whatToMove(const ConfigFile& file, Place place) const {
  std::vector<std::string> all = allInTheWay(file);
  const std::string own = inTheWayOf(file.path(place));
  std::stable_sort(all.begin(), all.end(), [&](const std::string& a, const std::string& b) {
    return a == own && b != own;
  });
  const bool isItsOwn = !leadsToAnother(file, place);
  for (const std::string& each : all)
    if ((isItsOwn || each == own) && isGoodAfter(file, place, {each})) return {each};
  return isGoodAfter(file, place, all) ? all : std::vector<std::string>();
}

}  // namespace camcfg::tool::device
