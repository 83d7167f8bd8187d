#ifndef CAMCFG_TOOL_DEVICE_STATE_FOLDER_H
#define CAMCFG_TOOL_DEVICE_STATE_FOLDER_H

#include <string>
#include <vector>

#include "base/host.h"

namespace camcfg::tool::device {

/// Where the tool keeps what it has to remember. Start-up verification passes directories by.
inline constexpr char kStateDirectory[] = "/cfg1/.camcfg";

/// What is found under a name.
struct StateFile {
  bool isThere = false;
  std::string bytes;
  std::string fault;  ///< why the bytes are of no use; empty if they were read whole
};

/// The tool's own directory, or one inside of it, for its owner only. No link is followed, whatever
/// anybody has put there.
class StateFolder {
 public:
  /// Opens the tool's own directory. While it does not exist, the folder has no files.
  /// @throws Refusal  it is a link, no directory, or of somebody else
  static StateFolder existing();
  /// The same, made if it does not exist.
  /// @throws Refusal  it cannot be made either
  static StateFolder made();

  /// Whether there is such a directory.
  explicit operator bool() const { return static_cast<bool>(descriptor_); }
  /// A directory in it, which need not exist.
  StateFolder folder(const char* name) const;
  /// The same, made if it does not exist. One that cannot be made does not exist, with errno set.
  StateFolder madeFolder(const char* name) const;

  /// Reads a file of at most so many bytes.
  StateFile read(const std::string& name, std::size_t most) const;
  /// Opens a file for reading, to lock it. Not open if there is none.
  Descriptor open(const std::string& name) const;
  /// Lets only root write to a file of this user, or this user as well. Whoever has it open sees that.
  bool seal(const std::string& name, bool isSealed) const;
  /// Whether an open file has this name.
  bool has(const std::string& name, const Descriptor& file) const;
  /// How many bytes a file has; 0 if there is no such file.
  std::size_t size(const std::string& name) const;
  /// Writes a new file in place of whatever file has the name. False, with errno set, when that
  /// failed; nothing has the name then.
  bool write(const std::string& name, const std::string& bytes) const;
  /// Gives something in it another name, here or in another folder, in place of the file there.
  bool rename(const std::string& name, const StateFolder& to, const std::string& other) const;
  /// Removes a file or an empty directory.
  bool remove(const std::string& name) const;
  /// The names of all that is in it, in no order.
  std::vector<std::string> names() const;
  /// Makes all that was written durable, in one go. False, with errno set, when that failed.
  bool flush() const;

 private:
  explicit StateFolder(int fd) : descriptor_(fd) {}
  static StateFolder checked(int fd);

  Descriptor descriptor_;
};

}  // namespace camcfg::tool::device

#endif
