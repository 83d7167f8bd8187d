#ifndef CAMCFG_TOOL_DEVICE_REPAIR_H
#define CAMCFG_TOOL_DEVICE_REPAIR_H

#include <string>
#include <vector>

#include "base/host_directory.h"
#include "base/json.h"
#include "device/file_set.h"

namespace camcfg::tool::device {

/// One copy of a file that is replaced by another one.
struct Repair {
  std::string name;
  Place to;
  Place from;

  std::string target() const { return pathOf(to, name); }
  std::string source() const { return pathOf(from, name); }
  /// Whether the library's copy takes paths as long as these; it would cut the target short.
  bool fitsTheCopy() const;
};

/// What start-up verification is going to replace.
std::vector<Repair> startUpRepairs(const FileSet& set);

/// The check of all configuration files, and what became of them.
class Verification {
 public:
  /// A repair and why it was not done; done if there is no fault.
  struct Attempt {
    Repair repair;
    std::string fault;
  };

  /// @param keepIn  where damaged copies are kept before they are replaced, "cfg0-NAME" for a main
  ///                copy and "cfg1-NAME" for a backup; null: nowhere
  explicit Verification(HostDirectory* keepIn) : keepIn_(keepIn), found_(surveyFiles()) {}

  /// Lets the library do what it does when the device starts.
  /// @throws Refusal  before anything was changed
  void startUp();
  /// Does what start-up verification leaves undone, so that each file has two good copies: replaces
  /// backups from their main copies, and main copies that it passes by from their backups.
  void level();

  const FileSet& found() const { return found_; }
  const FileSet& now() const { return now_; }
  const std::vector<Attempt>& attempts() const { return attempts_; }
  /// What was kept: an array of "copy" (its path) and "as" (where its bytes are).
  const Json& kept() const { return kept_; }
  bool levelled() const { return levelled_; }

  /// From where a copy was replaced; null if it was not.
  const Repair* restored(const std::string& name, Place place) const;

 private:
  void keep(const Repair& repair, const FileSet& set);

  HostDirectory* keepIn_;
  Json kept_ = Json::array();
  FileSet found_;
  FileSet now_;
  std::vector<Attempt> attempts_;
  bool levelled_ = false;
};

}  // namespace camcfg::tool::device

#endif
