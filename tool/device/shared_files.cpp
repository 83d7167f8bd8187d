#include "device/shared_files.h"

#include <sys/stat.h>

#include <algorithm>

#include "base/concat.h"
#include "base/host.h"
#include "base/plain_text.h"

namespace camcfg::tool::device {
namespace {

constexpr int kMostLinks = 40;
constexpr char kCircle[] = "circle";
using Paths = std::vector<std::string>;

// An absolute path without "." and "..", by its words only.
std::string normal(const std::string& path) {
  Paths kept;
  for (const std::string& part : parts(path, '/')) {
    if (part.empty() || part == ".") continue;
    if (part != "..")
      kept.push_back(part);
    else if (!kept.empty())
      kept.pop_back();
  }
  return "/" + joined(kept, "/");
}

std::string targetOfLink(const std::string& link) {
  const std::string target = linkTarget(link).value_or("");
  return normal(beginsWith(target, "/") ? target : concat(directoryOf(link), "/", target));
}

// Where a path leads, also if there is nothing; links that lead in a circle lead to themselves, whichever
// of a file's copies they begin with.
std::string resolved(const std::string& path, const Paths& moved, int links = 0) {
  if (links == kMostLinks) return kCircle;
  if (path == "/") return "";
  if (path.find('/') == std::string::npos) return path;
  const std::string place = concat(resolved(directoryOf(path), moved, links), "/", nameOf(path));
  const bool leadsOn = isLink(place) && !isAmong(moved, place);
  return leadsOn ? resolved(targetOfLink(place), moved, links + 1) : place;
}

// Where the name of a file is, whatever it leads to.
std::string placeOf(const std::string& path, const Paths& moved) {
  return concat(resolved(directoryOf(path), moved), "/", nameOf(path));
}

bool isOtherDirectory(const std::string& directory) {
  return std::any_of(kPlaces.begin(), kPlaces.end(), [&](Place place) {
    const std::string other = directoryOf(pathOf(place, ""));
    return other != directory && resolved(other, {}) == resolved(directory, {});
  });
}

}  // namespace

SharedFiles::SharedFiles() {
  for (const Place place : kPlaces)
    for (const std::string& name : xmlNamesIn(pathOf(place, ""))) add(pathOf(place, name));
}

SharedFiles::SharedFiles(const FileSet& set, const Paths& moved) {
  for (const std::string& path : moved) moved_.push_back(placeOf(path, moved));
  for (const Place place : kPlaces)
    for (const ConfigFile& file : set.files) add(file.path(place));
}

void SharedFiles::add(const std::string& path) {
  paths_.push_back(path);
  std::string real = resolved(path, moved_);
  if (real == kCircle) real += "/" + nameOf(path);
  struct stat status {};
  const bool isThere = !isMoved(real) && stat(real.c_str(), &status) == 0;
  identities_[path] = isThere ? concat(status.st_dev, ":", status.st_ino) : real;
}

bool SharedFiles::isMoved(const std::string& path) const {
  const std::string place = placeOf(path, moved_);
  return isAmong(moved_, place) || isAmong(moved_, directoryOf(place));
}

std::vector<std::string> SharedFiles::copiesOfSame(const std::string& path) const {
  std::vector<std::string> copies;
  std::copy_if(paths_.begin(), paths_.end(), std::back_inserter(copies),
               [&](const std::string& each) { return identity(each) == identity(path); });
  return copies;
}

std::string SharedFiles::ofAnotherName(const std::string& path) const {
  if (identities_.count(path) == 0) return "";
  for (std::string& copy : copiesOfSame(path)) {
    const bool isFactoryLink = copy == pathOf(Place::Default, copy) && !linkAt(copy).empty();
    if (nameOf(copy) != nameOf(path) && !isFactoryLink) return std::move(copy);
  }
  return "";
}

std::string linkAt(const std::string& path) {
  const std::string directory = directoryOf(path);
  if (isLink(path) && !(isLink(directory) && isOtherDirectory(directory))) return path;
  return isLink(directory) ? directory : "";
}

std::string targetOf(const std::string& path) {
  const std::string link = linkAt(path);
  return link.empty() ? path : targetOfLink(link) + path.substr(link.size());
}

std::string sameFileFault(const std::string& path, const std::string& other) {
  return concat(path, " is the same file as ", other, "; move it away");
}

}  // namespace camcfg::tool::device
