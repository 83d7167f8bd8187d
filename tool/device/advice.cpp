#include "device/advice.h"

#include <algorithm>

#include "base/plain_text.h"
#include "device/forecast.h"
#include "device/in_the_way.h"
#include "device/repair.h"

namespace camcfg::tool::device {
namespace {

constexpr char kVerify[] = "verify";
constexpr char kResync[] = "verify --resync";
constexpr Place kWritten[] = {Place::Main, Place::Backup};

// ... "restores it from the factory set".
std::string restoresFrom(const Forecast& forecast, Place place) {
  return std::string(" restores it from ") +
         (forecast.source(place) == "from-backup" ? "its backup" : "the factory set");
}

// The place of something that has to be moved away, with that.
using Moved = std::vector<std::pair<Place, std::string>>;

Moved allInTheWay(const ConfigFile& file) {
  Moved moved;
  for (const Place place : kWritten) {
    const std::string path = inTheWayOf(file.path(place));
    if (!path.empty()) moved.emplace_back(place, path);
  }
  return moved;
}

bool isGoodAfter(const FileSet& set, const ConfigFile& file, Place place, const Moved& moved) {
  std::vector<Place> places;
  for (const auto& [from, path] : moved) places.push_back(from);
  Forecast forecast(set, file, places);
  forecast.resync();
  return forecast.state(place) == State::Good;
}

// A link to nothing that leads to where another copy will be comes to life with that, but is none of
// its own.
bool leadsToAnother(const ConfigFile& file, Place place) {
  const State state = file.copy(place).state;
  if (state != State::NotAFile && state != State::Missing) return false;
  const std::string path = file.path(place);
  return std::any_of(kPlaces.begin(), kPlaces.end(), [&](Place other) {
    if (other == place || !areOneFile(file.path(other), path)) return false;
    const std::string link = linkBetween(file.path(other), path);
    return !link.empty() && beginsWith(path, link);
  });
}

// The least that has to be moved away before `verify --resync` makes a copy good; nothing if that does
// not help.
Moved whatToMove(const FileSet& set, const ConfigFile& file, Place place) {
  Moved all = allInTheWay(file);
  std::stable_sort(all.begin(), all.end(), [&](const auto& a, const auto& b) {
    return a.first == place && b.first != place;
  });
  const bool isItsOwn = !leadsToAnother(file, place);
  for (const auto& each : all)
    if ((isItsOwn || each.first == place) && isGoodAfter(set, file, place, {each})) return {each};
  return isGoodAfter(set, file, place, all) ? all : Moved();
}

void adviseMoving(const Moved& moved, Advice& advice) {
  for (const auto& [place, path] : moved) advice.move.push_back(path);
  const bool isItself = advice.move.size() == 1 && advice.move.front() == advice.path;
  advice.outlook = "; move " + (isItself ? "it" : joined(advice.move)) + " away";
}

bool isAnyGood(const ConfigFile& file) {
  return file.backup.state == State::Good || file.factory.state == State::Good;
}

std::string withoutAdvice(const ConfigFile& file, Place place, const std::string& obstacle) {
  if (place == Place::Main && !isAnyGood(file)) return " and no other copy of it is good";
  return obstacle.empty() || !isAnyGood(file) ? "" : "; it is not restored: " + obstacle;
}

}  // namespace

Advice adviceOn(const FileSet& set, const ConfigFile& file, Place place, bool isSalvaged) {
  const bool differs = file.copy(place).state == State::OutOfStep;
  Advice advice{differs ? "differs from its main copy" : file.copy(place).fault, file.path(place)};
  const std::string refusal = whyNotVerified(set);
  Forecast start(set, file);
  start.start();
  const bool isItsOwn = !leadsToAnother(file, place);
  if (isItsOwn && start.state(place) == State::Good) {
    advice.outlook = "; the next start" + restoresFrom(start, place);
    if (isSalvaged) advice.outlook += ", 'camcfg boot' from what it can salvage";
    if (refusal.empty()) advice.command = kVerify;
    return advice;
  }
  Forecast resync(set, file);
  resync.resync();
  const std::string runs = std::string("'camcfg ") + kResync + "'";
  if (!refusal.empty()) {
    advice.outlook = withoutAdvice(file, place, refusal);
  } else if (isItsOwn && resync.state(place) == State::Good) {
    advice.command = kResync;
    advice.outlook = "; " + runs +
                     (place == Place::Main ? restoresFrom(resync, place) : " brings it up to date");
  } else if (const Moved moved = whatToMove(set, file, place); !moved.empty()) {
    advice.command = kResync;
    adviseMoving(moved, advice);
    advice.outlook += " and run " + runs;
  } else {
    advice.outlook = withoutAdvice(file, place, resync.obstacle());
  }
  return advice;
}

std::optional<Advice> adviceOnFactory(const FileSet& set, const ConfigFile& file, bool isExpected) {
  const std::string path = file.path(Place::Default);
  const State state = file.factory.state;
  if (state == State::Missing && !isExpected) return std::nullopt;
  if (state == State::NoElement)
    return Advice{file.factory.fault, path, ", so no start can restore settings from it"};
  if (state == State::Good && file.checkedAtStart && set.anyFactory) return std::nullopt;
  return Advice{state == State::Good ? "is a link" : file.factory.fault, path,
                ", so no start can restore from it"};
}

std::optional<Place> sameFileAs(const ConfigFile& file, Place place) {
  const auto isFile = [&](Place each) {
    const State state = file.copy(each).state;
    return state != State::Missing && state != State::NotAFile;
  };
  for (const Place other : kPlaces)
    if (other != place && isFile(other) && isFile(place) &&
        areOneFile(file.path(other), file.path(place)))
      return other;
  return std::nullopt;
}

Advice adviceOnLink(const FileSet& set, const ConfigFile& file, Place place, Place other) {
  Advice advice{"is the same file as " + file.path(other), file.path(place)};
  const std::string link = linkBetween(file.path(other), file.path(place));
  const auto* const moved = std::find_if(std::begin(kWritten), std::end(kWritten), [&](Place each) {
    return beginsWith(file.path(each), link) && !link.empty();
  });
  if (moved == std::end(kWritten)) return advice;
  adviseMoving({{*moved, link}}, advice);
  const bool isEachGood = isGoodAfter(set, file, *moved, {{*moved, link}}) &&
                          isGoodAfter(set, file, place, {{*moved, link}});
  if (!whyNotVerified(set).empty() || !isEachGood) return advice;
  advice.command = kResync;
  advice.outlook += std::string(" and run 'camcfg ") + kResync + "'";
  return advice;
}

}  // namespace camcfg::tool::device
