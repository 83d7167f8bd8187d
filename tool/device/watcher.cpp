#include "device/watcher.h"

#include <camcfg/types.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/statfs.h>

#include <cerrno>
#include <utility>

#include "base/plain_text.h"
#include "device/calm.h"

namespace camcfg::tool::device {
namespace {

constexpr int kBurst = 100;
constexpr int kLook = 1000;
constexpr unsigned kOfFile = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;
constexpr unsigned kOfNames = IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr unsigned kOfItself = IN_DELETE_SELF | IN_MOVE_SELF;

// Others may change files there without this kernel's knowledge.
bool isElsewhere(const std::string& directory) {
  constexpr unsigned long kCifs = 0xff534d42;
  constexpr unsigned long kFuse = 0x65735546;
  struct statfs system {};
  if (statfs(directory.c_str(), &system) != 0) return true;
  return isAmong(std::array<unsigned long, 6>{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC,
                                              V9FS_MAGIC, kCifs, kFuse},
                 static_cast<unsigned long>(system.f_type));
}

}  // namespace

Watcher::Watcher(std::vector<std::string> paths)
    : paths_(std::move(paths)), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

bool Watcher::add(const std::string& path, unsigned events) const {
  return inotify_add_watch(events_.get(), path.c_str(), events) >= 0;
}

// Watching what is watched already changes nothing. The root shows that the directory comes back.
// Files are watched, too: what is written through another name of theirs, their directory does not
// show.
void Watcher::arm() {
  isArmed_ = events_ && add("/", kOfNames | IN_ONLYDIR);
  isArmed_ = isArmed_ && add(CFG_DIR_MAIN, kOfFile | kOfNames | kOfItself | IN_ONLYDIR);
  for (const std::string& path : paths_)
    isArmed_ = isArmed_ && (add(path, kOfFile) || errno == ENOENT);
  isArmed_ = isArmed_ && !isElsewhere(CFG_DIR_MAIN);
}

// What they say does not matter, not even that some were lost: all files are looked at.
void Watcher::forgetEvents() const {
  char buffer[16384];
  while (read(events_.get(), buffer, sizeof buffer) > 0) continue;
}

void Watcher::wait(const Wait& wait, bool isUneasy) const {
  if (!wait(events_.get(), isArmed_ && !isUneasy ? -1 : kLook)) return;
  int left = kLook / kBurst;
  do forgetEvents();
  while (wait(events_.get(), kBurst) && --left > 0);
}

}  // namespace camcfg::tool::device
