#include "device/preset_import.h"
#include "frame/status.h"
#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

void importTwice(const std::string& table) {
  const std::vector<tool::PresetRow> rows = tool::readPresets(table);
  const tool::Presets before;
  const tool::PresetImport import(&before, rows);
  import.json();
  if (!import.faults().empty()) return;
  import.carryOut();
  const tool::Presets after;
  const tool::PresetImport again(&after, rows);
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
