/// @file
/// A scratch device: the directory tree of a device in a temporary directory, which the test
/// process can make its own root.
#ifndef CAMCFG_TESTKIT_DEVICE_ROOT_H
#define CAMCFG_TESTKIT_DEVICE_ROOT_H

#include <string>
#include <vector>

namespace camcfg {
namespace testkit {

/// A temporary directory with "/cfg0", "/cfg1", "/app/resource/defcfg" and
/// "/app/resource/language" in it, removed when this object goes. One object at a time may be
/// entered; paths given to its members begin at the device's root, entered or not.
/// Errors of the file system are thrown as std::runtime_error.
class DeviceRoot {
 public:
  /// Whether the process works inside the device.
  enum Entry {
    Enter,    ///< the process works inside the device until this object goes
    StayOut,  ///< the tree is only laid out, for a child process to work in
  };

  /// Lays out an empty device. Entering needs root or a user namespace, and the first time in a
  /// process that is not root, a process with one thread.
  explicit DeviceRoot(Entry entry = Enter);
  ~DeviceRoot();
  DeviceRoot(const DeviceRoot&) = delete;
  DeviceRoot& operator=(const DeviceRoot&) = delete;

  /// Enters a device that was only laid out, after it was filled from the host. What holds for the
  /// constructor holds here.
  void enter();

  /// Directory of the device's root as seen from outside.
  const std::string& hostPath() const { return hostPath_; }

  /// Writes a file whole, making the directories that it needs.
  void write(const std::string& path, const std::string& contents) const;
  /// Reads a file whole.
  std::string read(const std::string& path) const;
  /// Whether something of this name exists (a link counts as such).
  bool exists(const std::string& path) const;
  /// Removes a file or a whole directory, if it exists.
  void remove(const std::string& path) const;
  /// Makes a directory and those above it.
  void makeDirectory(const std::string& path) const;
  /// Names in a directory, sorted.
  std::vector<std::string> list(const std::string& path) const;
  /// Copies a directory tree of the host into the device. Only while the device is not entered; a
  /// factory set goes to "/app/resource".
  void copyFromHost(const std::string& hostDirectory, const std::string& path) const;

 private:
  explicit DeviceRoot(std::string hostPath);
  std::string inside(const std::string& path) const;

  std::string hostPath_;
  bool entered_ = false;
  int outsideRoot_ = -1;
  int outsideDirectory_ = -1;
};

}  // namespace testkit
}  // namespace camcfg

#endif
