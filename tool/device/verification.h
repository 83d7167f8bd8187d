#ifndef CAMCFG_TOOL_DEVICE_VERIFICATION_H
#define CAMCFG_TOOL_DEVICE_VERIFICATION_H

#include <string>
#include <vector>

#include "device/kept_copies.h"
#include "device/repair.h"

namespace camcfg::tool::device {

/// A repair and why it was not done; done if there is no fault.
struct Outcome {
  Repair repair;
  std::string fault;
};

/// The check of all configuration files, and what became of them.
class Verification {
 public:
  /// @param keepIn  where damaged copies are kept before they are replaced; null: nowhere
  explicit Verification(HostDirectory* keepIn) : kept_(keepIn), found_(surveyFiles()) {}

  /// Lets the library do what it does when the device starts.
  /// @throws Refusal  before anything was changed
  void startUp();
  /// Does what start-up verification leaves undone, so that each file has two good copies.
  void level();

  const FileSet& found() const { return found_; }
  const FileSet& now() const { return now_; }
  const std::vector<Outcome>& outcomes() const { return outcomes_; }
  const Json& kept() const { return kept_.kept(); }
  bool levelled() const { return levelled_; }

  /// From where a copy was replaced; null if it was not.
  const Repair* restored(const std::string& name, Place place) const;

 private:
  KeptCopies kept_;
  FileSet found_;
  FileSet now_;
  std::vector<Outcome> outcomes_;
  bool levelled_ = false;
};

}  // namespace camcfg::tool::device

#endif
