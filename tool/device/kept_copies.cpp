#include "device/kept_copies.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

std::string bytesOf(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string bytes;
  if (!file || !readAll(file.get(), bytes))
    throw Refusal("cannot keep " + path + ": " + std::strerror(errno));
  return bytes;
}

// "/cfg0/x.xml" is kept as "cfg0-x.xml".
std::string keptName(std::string path) {
  path.erase(0, 1);
  path[path.find('/')] = '-';
  return path;
}

}  // namespace

void KeptCopies::keep(const Repair& repair, const FileSet& set) {
  const ConfigFile* file = set.find(repair.name);
  if (directory_ == nullptr || file == nullptr) return;
  const State state = file->copy(repair.to).state;
  if (state != State::Damaged && state != State::Unreadable && state != State::CutShort) return;
  const std::string path = repair.target();
  kept_.push_back({{"copy", path}, {"as", directory_->save(keptName(path), bytesOf(path))}});
}

}  // namespace camcfg::tool::device
