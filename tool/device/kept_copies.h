#ifndef CAMCFG_TOOL_DEVICE_KEPT_COPIES_H
#define CAMCFG_TOOL_DEVICE_KEPT_COPIES_H

#include "base/host_directory.h"
#include "base/json.h"
#include "device/repair.h"

namespace camcfg::tool::device {

/// Keeps the bytes of damaged copies that are going to be replaced.
class KeptCopies {
 public:
  /// @param directory  where they are kept; null: nowhere
  explicit KeptCopies(HostDirectory* directory) : directory_(directory) {}

  /// Saves the bytes of the copy that a repair replaces, if it is damaged: "cfg0-NAME" for a main
  /// copy, "cfg1-NAME" for a backup.
  /// @throws Refusal
  void keep(const Repair& repair, const FileSet& set);

  /// What was kept: an array of "copy" (its path) and "as" (where its bytes are).
  const Json& kept() const { return kept_; }

 private:
  HostDirectory* directory_;
  Json kept_ = Json::array();
};

}  // namespace camcfg::tool::device

#endif
