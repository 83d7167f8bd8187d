#include <camcfg/types.h>

#include "base/outcome.h"
#include "fuzz/device.h"
#include "fuzz/targets.h"
#include "presets/preset.h"

namespace camcfg::fuzz {
namespace {

void importTwice(const std::string& table) {
  const std::size_t rows = tool::presets::readPresetRows(table).size();
  const tool::Outcome done = tool::presets::importPresets(table, false);
  if (done.status != tool::Status::Done) return;
  const tool::Outcome again = tool::presets::importPresets(table, false);
  require(again.status == tool::Status::Done && again.value["unchanged"].size() == rows,
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
