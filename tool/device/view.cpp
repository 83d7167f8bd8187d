#include "device/view.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <utility>

#include "base/outcome.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::device {
namespace {

namespace fs = std::filesystem;

// What a device has, and a host is not to show in its place.
constexpr const char* kDeviceDirectories[] = {"/cfg0", "/cfg1", "/app", "/run/camcfg"};

// Where the host's own tree is while the view is laid out.
constexpr char kHost[] = "/.host";

[[noreturn]] void fail(const std::string& what) {
  throw Refusal(what + ": " + std::strerror(errno));
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
      if (!fs::is_directory(device_ + directory)) continue;
      fs::create_directories(directory);
      bindMount(device_ + directory, directory);
    }
  }

 private:
  void showDirectory(const std::string& host, const std::string& path) const {
    for (const fs::directory_entry& entry : fs::directory_iterator(host)) {
      const std::string place = path + "/" + entry.path().filename().string();
      if (place != kHost && !isDevices(place)) show(entry, place);
    }
  }

  void show(const fs::directory_entry& entry, const std::string& place) const {
    if (entry.is_symlink()) return fs::create_symlink(fs::read_symlink(entry.path()), place);
    if (!entry.is_directory()) {
      close(open(place.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
      return bindMount(entry.path(), place);
    }
    fs::create_directory(place);
    if (holdsDevices(place)) return showDirectory(entry.path(), place);
    bindMount(entry.path(), place);
  }

  // Whether something below a directory of the host is to be another's, so that it is not shown whole.
  bool holdsDevices(const std::string& place) const {
    return std::any_of(std::begin(kDeviceDirectories), std::end(kDeviceDirectories),
                       [&](const std::string& directory) {
                         return directory.rfind(place + "/", 0) == 0 &&
                                (fs::exists(kHost + directory) || fs::exists(device_ + directory));
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

void seeDevice(const std::string& directory) try {
  const std::string device = fs::canonical(directory);
  const std::string current = fs::current_path();
  if (device == "/") return;
  if (!fs::is_directory(device + "/cfg0") && !fs::is_directory(device + "/app"))
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
  fs::remove(kHost);
  if (chdir(current.c_str()) != 0) fail(current);
} catch (const fs::filesystem_error& error) {
  throw Refusal(error.code().message());
}

void becomeProgram(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  const int error = errno;
  throw Refusal(error == ENOENT || error == ENOTDIR ? Status::NotFound : Status::NotRunnable,
                words.front() + ": " + std::strerror(error));
}

}  // namespace camcfg::tool::device
