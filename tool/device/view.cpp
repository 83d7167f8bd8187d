#include "device/view.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iterator>
#include <utility>

#include "base/concat.h"
#include "base/host.h"
#include "base/outcome.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::device {
namespace {

// What a device has, and a host is not to show in its place.
constexpr const char* kDeviceDirectories[] = {"/cfg0", "/cfg1", "/app", "/run/camcfg"};

// Where the host's own tree is while the view is laid out.
constexpr char kHost[] = "/.host";

[[noreturn]] void fail(const std::string& what) {
  throw Refusal(concat(what, ": ", std::strerror(errno)));
}

[[noreturn]] void fail() {
  throw Refusal(std::strerror(errno));
}

// The type of what a path leads to; 0: there is nothing.
mode_t typeOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & S_IFMT;
  if (errno != ENOENT && errno != ENOTDIR) fail();
  return 0;
}

bool isDirectory(const std::string& path) {
  return typeOf(path) == S_IFDIR;
}

void makeDirectory(const std::string& path) {
  if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) fail();
}

std::string wholePath(const std::string& path) {
  char whole[PATH_MAX];
  if (realpath(path.c_str(), whole) == nullptr) fail();
  return whole;
}

bool isDevices(const std::string& path) {
  return std::any_of(std::begin(kDeviceDirectories), std::end(kDeviceDirectories),
                     [&](const char* directory) { return path == directory; });
}

void bindMount(const std::string& from, const std::string& to) {
  if (mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) fail(to);
}

// Lays the view out, when it is the root already.
class View {
 public:
  /// @param device  where the device's directories are now
  explicit View(std::string device) : device_(std::move(device)) {}

  void showHost() const { showDirectory(kHost, ""); }

  void showDevice() const {
    for (const std::string directory : kDeviceDirectories) {
      if (!isDirectory(device_ + directory)) continue;
      if (const std::size_t above = directory.rfind('/'); above != 0)
        makeDirectory(directory.substr(0, above));
      makeDirectory(directory);
      bindMount(device_ + directory, directory);
    }
  }

 private:
  void showDirectory(const std::string& host, const std::string& path) const {
    const Descriptor folder(open(host.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) fail();
    for (const std::string& name : namesIn(folder.get())) {
      const std::string inFolder = "/" + name;
      const std::string place = path + inFolder;
      if (place != kHost && !isDevices(place)) show(host + inFolder, place);
    }
  }

  void show(const std::string& entry, const std::string& place) const {
    struct stat status {};
    if (lstat(entry.c_str(), &status) != 0) fail();
    if (S_ISLNK(status.st_mode)) {
      const std::optional<std::string> target = linkTarget(entry);
      if (!target || symlink(target->c_str(), place.c_str()) != 0) fail();
    } else if (!S_ISDIR(status.st_mode)) {
      close(open(place.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
      bindMount(entry, place);
    } else {
      makeDirectory(place);
      if (holdsDevices(place)) return showDirectory(entry, place);
      bindMount(entry, place);
    }
  }

  // Whether something below a directory of the host is to be another's, so that it is not shown whole.
  bool holdsDevices(const std::string& place) const {
    return std::any_of(
        std::begin(kDeviceDirectories), std::end(kDeviceDirectories),
        [&](const std::string& directory) {
          return directory.rfind(place + "/", 0) == 0 &&
                 (typeOf(kHost + directory) != 0 || typeOf(device_ + directory) != 0);
        });
  }

  std::string device_;
};

void enterNamespaces() {
  const unsigned user = geteuid();
  const unsigned group = getegid();
  const bool entered =
      unshare(CLONE_NEWNS) == 0 || (enterUserNamespace(user, group) && unshare(CLONE_NEWNS) == 0);
  if (!entered) throw Refusal(needsUserNamespaces());
  if (mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr) == 0) return;
  if (errno == EINVAL) throw Refusal("'run' does not work inside a chroot");
  throw Refusal(needsUserNamespaces());
}

// The view becomes the root, with this system's own tree in it: the directory that the view was mounted
// on is seen there again.
void exchangeRoot(const std::string& view) {
  if (chdir(view.c_str()) != 0 || mkdir((view + kHost).c_str(), 0700) != 0) fail(view);
  if (syscall(SYS_pivot_root, ".", kHost + 1) != 0) fail("the root cannot be exchanged");
  if (chdir("/") != 0) fail("/");
}

}  // namespace

void seeDevice(const std::string& directory) {
  const std::string device = wholePath(directory);
  const std::string current = wholePath(".");
  if (device == "/") return;
  if (!isDirectory(device + "/cfg0") && !isDirectory(device + "/app"))
    throw Refusal("there is no device: neither cfg0 nor app is there");
  enterNamespaces();
  if (mount("camcfg", device.c_str(), "tmpfs", 0, "mode=755") != 0) {
    if (errno == EPERM || errno == EACCES) throw Refusal(needsUserNamespaces());
    fail(device);
  }
  exchangeRoot(device);
  const View view(kHost + device);
  view.showHost();
  view.showDevice();
  umount2(kHost, MNT_DETACH);
  if (rmdir(kHost) != 0) fail();
  if (chdir(current.c_str()) != 0) fail(current);
}

void becomeProgram(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  const int error = errno;
  throw Refusal(error == ENOENT || error == ENOTDIR ? Status::NotFound : Status::NotRunnable,
                concat(words.front(), ": ", std::strerror(error)));
}

}  // namespace camcfg::tool::device
