#ifndef CAMCFG_TOOL_UPGRADE_UPGRADE_H
#define CAMCFG_TOOL_UPGRADE_UPGRADE_H

#include <optional>
#include <string>

#include "base/outcome.h"
#include "upgrade/factory_set.h"

namespace camcfg::tool::upgrade {

/// What becomes of a setting that the device and the new factory set have both changed.
enum class OnConflict { User, Factory, Stop };

struct UpgradeOptions {
  std::optional<FactorySet> from{};    ///< the old set; none: the one that is kept
  std::string fromName{};              ///< where it came from
  std::optional<std::string> rules{};  ///< text of the rules; none: those of the new set
  OnConflict onConflict = OnConflict::User;
  bool rehearse = false;
  bool showSecrets = false;
};

/// Brings the main copies to the factory set in place: three ways, from the old set, the new one and
/// what the device has. All or nothing; running it again changes nothing.
/// @return "base": where the old set came from, null if there was none; "mergedBefore": whether the set
///         in place is the one that is kept; "files": those that change; "changes": what becomes of
///         settings, see Entry; "conflicts": places; "findings": what lint finds that it did not find
///         before. With a conflict that stops it, nothing is changed.
/// @throws Refusal  there is no factory set, a rule or a main copy is unusable, or see makeChanges
Outcome upgrade(const UpgradeOptions& options);

/// What a start does about a factory set that was not merged yet, after everything else. A device that
/// keeps no set, and has the structure of the one in place, only keeps it.
/// @param booted  what was done before; see device::boot
/// @return the same, with a line more in "done", or a note on why it could not be done
Outcome upgradeAtStart(Outcome booted);

/// What is wrong with rules.
/// @param text  none: the rules of the factory set in place
/// @return "file"; "faults": objects of "place" and "reason"; refused if there are any
Outcome checkRules(const std::optional<std::string>& text);

}  // namespace camcfg::tool::upgrade

#endif
