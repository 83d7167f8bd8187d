#ifndef CAMCFG_TOOL_DEVICE_CHANGE_H
#define CAMCFG_TOOL_DEVICE_CHANGE_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "device/files.h"
#include "device/save.h"

namespace camcfg::tool::device {

/// One change of a configuration file, made by the library. Its functions are called on a copy of the
/// device, in a process of their own: of what they change there, only the files count.
struct Change {
  std::string path;            ///< main copy
  std::string what;            ///< what is changed, the beginning of a refusal: "System/Rtsp"
  std::function<bool()> make;  ///< calls the library; false if it refused
  /// Whether a document holds what was to be changed.
  std::function<bool(tinyxml2::XMLDocument&)> arrived;
  /// What a document holds in its place, for a refusal; none: a refusal does not say that.
  std::function<std::optional<std::string>(tinyxml2::XMLDocument&)> standing{};
  /// What the file counts as holding before the change where its main copy is damaged; empty: it must
  /// not be.
  std::string instead{};
  /// What the file held when its maker, who has the turn, read it; empty: it is still to be read.
  std::string read{};
};

/// The change that makes a file what it is given here, byte for byte.
Change changeTo(const Contents& file, const std::string& instead = "");

struct FileChange;

/// Looks at what changes make of files before any of it is in force. Whatever it throws is thrown on, and
/// nothing was changed.
using Review = std::function<void(const std::vector<FileChange>&)>;

/// For as long as it lives, a review of whatever this process changes, after those that there are.
class Reviewed {
 public:
  explicit Reviewed(Review review);
  ~Reviewed();
  Reviewed(const Reviewed&) = delete;
  Reviewed& operator=(const Reviewed&) = delete;

  void look(const std::vector<FileChange>& changes) const;

 private:
  const Review review_;
  const Reviewed* const outer_;
};

/// Makes changes, all or none, and makes sure of them. What they make of the files is found out on
/// copies of them; it goes into the journal and is then saved, each file once. Whatever ends the tool
/// in between, the next run that changes something brings the device to the one state or the other.
/// Beforehand, both copies of each file must be writable and have room; afterwards, both are read
/// again. The library itself ignores a failed write; the previous contents are written back then. A
/// change that another program's save undoes, by a document that it loaded before, is made again, up
/// to three times in all; what that program saved stays.
/// An interruption by the user (SIGINT, SIGTERM, SIGHUP) ends the tool as ever until the change is in
/// force; from then on the tool completes it, and its exit status says so.
/// While another change is on trial, none is made, unless that one is confirmed first.
/// @param rehearse  only works them out and has them reviewed
/// @throws Refusal  in every case but that both copies of all files hold the changes
void makeChanges(const std::vector<Change>& changes, bool rehearse = false);

inline void makeChange(const Change& change, bool rehearse = false) {
  makeChanges({change}, rehearse);
}

}  // namespace camcfg::tool::device

#endif
