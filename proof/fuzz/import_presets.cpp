#include "base/refusal.h"
#include "fuzz/device.h"
#include "fuzz/targets.h"
#include "presets/import.h"

namespace camcfg::fuzz {
namespace {

void importTwice(const std::string& table) {
  const std::vector<tool::presets::PresetRow> rows = tool::presets::readPresets(table);
  const tool::presets::Presets before;
  const tool::presets::PresetImport import(&before, rows);
  import.json();
  if (!import.faults().empty()) return;
  import.carryOut();
  const tool::presets::Presets after;
  const tool::presets::PresetImport again(&after, rows);
  require(again.faults().empty() && again.json()["unchanged"].size() == rows.size(),
          "presets that were imported make no difference any more");
}

}  // namespace

// A table in CSV or JSON; the preset file, where it is not that of small_device/.
void importPresets(const Input& input) {
  const std::string given = input.part(1);
  writeFile(CFG_FILE_PRESET, given.empty() ? smallFile("preset_cfg.xml") : given);
  try {
    importTwice(input.part(0));
  } catch (const tool::Refusal& refusal) {
    require(*refusal.what() != '\0', "a refusal says why");
  }
}

}  // namespace camcfg::fuzz
