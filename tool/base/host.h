#ifndef CAMCFG_TOOL_BASE_HOST_H
#define CAMCFG_TOOL_BASE_HOST_H

#include <unistd.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace camcfg::tool {

/// An open file descriptor, closed when this object goes.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }
  /// Gives the descriptor away: it stays open.
  int release() {
    const int fd = fd_;
    fd_ = -1;
    return fd;
  }
  bool close() {
    const int fd = release();
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

/// Writes a text whole. False, with errno set, when that failed.
bool writeAll(int fd, const std::string& text);

/// Reads all that is left. False, with errno set, when that failed.
bool readAll(int fd, std::string& text);

/// The bytes of a file, without waiting for anybody; none, with errno set, if it cannot be read.
std::optional<std::string> readFile(const std::string& path);

/// What is in a directory, in no order; nothing if it cannot be read.
std::vector<std::string> namesIn(int directory);

/// What a symbolic link says; none, with errno set, if it cannot be read.
std::optional<std::string> linkTarget(const std::string& path);

/// Whether a file's name ends so: "a.xml" does with ".xml", which itself does not.
bool hasEnding(std::string_view name, std::string_view ending) noexcept;

/// A file without a name, in memory: it needs no directory and no room on the device.
class MemoryFile {
 public:
  MemoryFile();

  /// Its descriptor; below 0 if the system has none left.
  int get() const { return descriptor_.get(); }
  /// Writes a text and goes back to its beginning. False, with errno set, when that failed.
  bool fill(const std::string& text) const;
  /// All that was written to it.
  std::string contents() const;

 private:
  Descriptor descriptor_;
};

/// A file named on the command line, as it was before the device's root was entered.
struct HostFile {
  std::string path;      ///< as the caller named it
  std::string contents;  ///< all of it
  std::string fault;     ///< why it could not be read; empty if it could
  /// Where it is, links followed; null if it is no regular file, or nobody asked.
  std::shared_ptr<const Descriptor> directory{};
  std::string name{};  ///< in that directory
};

/// Remembers where a file named on the command line is, so that it can be replaced from inside the
/// device's root.
void locate(HostFile& file);

/// Replaces what a located file holds: a new file takes its place, with its permissions, once it is on
/// the disk.
/// @throws Refusal  also if the file is another one than was read, and the file is as it was
void replace(const HostFile& file, const std::string& contents);

/// A directory named on the command line. It is opened before the device's root is entered, so it
/// stays the caller's own directory.
class HostDirectory {
 public:
  /// Opens a directory, making it first if it does not exist.
  explicit HostDirectory(const std::string& path);

  /// Saves bytes under a name, or under "NAME.1", "NAME.2" and so on if that name is taken
  /// by other bytes already. The bytes are on the disk when this returns.
  /// @return where they are now, as the caller named the directory
  /// @throws Refusal
  std::string save(const std::string& name, const std::string& bytes);

 private:
  bool holds(const std::string& name, const std::string& bytes) const;
  void write(const std::string& name, const std::string& bytes);

  std::string path_;
  Descriptor descriptor_;
};

/// Remembers where the system that the tool was started on keeps temporary files: TMPDIR, /dev/shm,
/// /tmp. Call before the device's root is entered: from inside they are out of reach.
void rememberTemporaries();

/// Remembers which run of the kernel this is. Call before the device's root is entered: from inside
/// that cannot be known.
void rememberBoot();

/// Names the run of the kernel that was remembered; empty if none was.
const std::string& bootName();

/// A new directory among the temporary files, for this user only. It goes with this object, with
/// all that was written into it. What killed processes have left there goes when the next one is made.
class HostTemporary {
 public:
  /// @throws Refusal if no directory for temporary files can be written to
  HostTemporary();
  ~HostTemporary();
  HostTemporary(const HostTemporary&) = delete;
  HostTemporary& operator=(const HostTemporary&) = delete;

  /// Writes a file "DIRECTORY/NAME" below it, the directory being made if it is missing.
  /// @throws Refusal
  void write(const std::string& directory, const std::string& name, const std::string& text) const;

  /// Makes it the root of this process; for a child process, since there is no way back.
  /// @return an empty text, or what went wrong
  std::string enter() const;

 private:
  std::string name_;
  int parent_;  // a descriptor of the directory that it is in
  Descriptor descriptor_;
};

}  // namespace camcfg::tool

#endif
