#ifndef CAMCFG_TOOL_DEVICE_ADVICE_H
#define CAMCFG_TOOL_DEVICE_ADVICE_H

#include <optional>
#include <string>
#include <vector>

#include "device/files.h"
#include "device/forecast.h"

namespace camcfg::tool::device {

/// What becomes of a copy that is not as it should be, and what somebody can do about it.
struct Advice {
  std::string problem;    ///< of the copy at which path
  std::string path{};     ///< that copy
  std::string outlook{};  ///< the rest of the sentence; empty if nothing brings it back
  std::optional<std::string>
      command{};                    ///< what makes it good, "verify" if that is what a start does
  std::vector<std::string> move{};  ///< what has to be moved away before that
};

/// What is known of a device, and becomes of it if nobody does anything.
class Adviser {
 public:
  /// @param set       all files; they outlive this object
  /// @param salvaged  the names of those that `boot` salvages
  explicit Adviser(const FileSet& set, std::vector<std::string> salvaged = {});

  const Forecast& start() const { return start_; }
  const Forecast& boot() const { return boot_; }
  const SharedFiles& shared() const { return shared_; }

  /// On a main copy or a backup that is not good.
  Advice onCopy(const ConfigFile& file, Place place) const;

  /// On a factory copy that no start can restore from; none if a start can, or the file needs none.
  /// @param isExpected  whether the file should have a factory copy
  std::optional<Advice> onFactory(const ConfigFile& file, bool isExpected) const;

  /// On a copy that is the same file as another one, of its own file or of another; none if it is not,
  /// or if the other one is the link.
  std::optional<Advice> onLink(const ConfigFile& file, Place place) const;

  /// The first other copy that is the same file as one that exists; empty if there is none.
  std::string sameFileAs(const ConfigFile& file, Place place) const;

 private:
  bool isGoodAfter(const ConfigFile& file, Place place,
                   const std::vector<std::string>& moved) const;
  bool leadsToAnother(const ConfigFile& file, Place place) const;
  std::vector<std::string> whatToMove(const ConfigFile& file, Place place) const;
  void withoutStart(const ConfigFile& file, Place place, Advice& advice) const;

  const FileSet& set_;
  SharedFiles shared_;
  std::vector<std::string> salvaged_;
  std::string refusal_;
  Forecast start_;
  Forecast resync_;
  Forecast boot_;
};

}  // namespace camcfg::tool::device

#endif
