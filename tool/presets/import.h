#ifndef CAMCFG_TOOL_PRESETS_IMPORT_H
#define CAMCFG_TOOL_PRESETS_IMPORT_H

#include <map>
#include <string>
#include <vector>

#include "presets/change.h"
#include "presets/preset_row.h"

namespace camcfg::tool::presets {

/// What an import is going to do. Presets that are not in it stay as they are.
class PresetImport {
 public:
  /// Checks every row against the others and the presets that are there.
  /// @param presets  what is there; null: nothing
  PresetImport(const Presets* presets, const std::vector<PresetRow>& rows);

  /// Stores what is created and updated, all or none. There must be no faults.
  /// @throws Refusal  see makeChange
  void carryOut() const;

  const std::vector<std::string>& faults() const { return faults_; }
  /// The ids that are created, updated and found unchanged, none if there are faults; the faults.
  Json json() const;

 private:
  void plan(const Presets* presets, const PresetRow& row);
  bool takeId(const PresetRow& row);
  void addFault(const PresetRow& row, const std::string& why);

  std::vector<tagPRESET_CFG_S> records_;
  std::vector<int> created_;
  std::vector<int> updated_;
  std::vector<int> unchanged_;
  std::vector<std::string> faults_;
  std::map<int, std::string> places_;  // of the ids
};

}  // namespace camcfg::tool::presets

#endif
