#ifndef CAMCFG_TOOL_UPGRADE_FACTORY_SET_H
#define CAMCFG_TOOL_UPGRADE_FACTORY_SET_H

#include <optional>
#include <string>
#include <vector>

#include "base/host.h"
#include "device/save.h"

namespace camcfg::tool::upgrade {

/// Where the rules of the factory set in place are.
inline constexpr char kRulesFile[] = "/app/resource/upgrade.json";
inline constexpr char kRulesName[] = "upgrade.json";

/// A factory set: what the files of settings hold on a new device.
struct FactorySet {
  std::vector<device::Contents> files;  ///< by the main copies that they are for
  std::string rules;                    ///< text of its rules; empty if it has none
  int applied = 0;  ///< of a kept set: up to which version rules were applied that are not its own

  /// What it has for a main copy; none if it has nothing.
  std::optional<std::string> of(const std::string& path) const;
  bool operator==(const FactorySet& other) const;
};

/// The factory set in place, as far as it can be read.
/// @param onCopies  see readMain
FactorySet installedSet(bool onCopies = false);

/// The bytes of a main copy that the library loads.
/// @param onCopies  let it try on a copy: where it loads the file itself, it leaves a lock, and it
///                  restores what a save that was cut off has left
/// @throws Refusal  it cannot be loaded
std::string readMain(const std::string& path, bool onCopies);

/// A set of files that the command line named, and of its rules.
/// @throws Refusal  none of them is a file of settings
FactorySet setOf(const std::string& directory, const std::vector<HostFile>& files);

// The set that was merged last is kept in "/cfg1/.camcfg/factory", so that the next upgrade knows
// what the device has changed. "mark" names its files with their checksums. While an upgrade is made,
// the next set is there under "NAME.new"; "mark" is replaced last.

/// The set that is kept; none if there is none. A file that is damaged is not in it.
/// What the set in place lacked when it was merged is still there of the set before.
/// @throws Refusal  the tool's own directory cannot be used
std::optional<FactorySet> keptSet();

/// Writes the set that is going to be kept, before the main copies are changed.
/// @param base    the old set; null if there was none
/// @param merged  what the main copies are going to hold
/// @throws Refusal  it cannot be written; all is as it was
void stage(const FactorySet& set, const FactorySet* base,
           const std::vector<device::Contents>& merged);

/// Whether a main copy is what the last upgrade made of it, from this old set to the one that is kept.
bool isMergedFrom(const FactorySet& base, const device::Contents& main);

/// A set with what only the kept one has: a firmware whose file is damaged does not lose the base.
FactorySet completed(FactorySet set, const std::optional<FactorySet>& kept);

/// Keeps the set that was staged, in place of the previous one.
/// @throws Refusal  it cannot be written; the next upgrade is asked to do it
void keepStaged();

/// Finishes what an interrupted upgrade has left: its set is kept if the main copies are merged with
/// it, and dropped if not.
/// @throws Refusal  the tool's own directory cannot be used
void settle();

}  // namespace camcfg::tool::upgrade

#endif
