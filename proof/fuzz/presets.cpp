#include <camcfg/preset.h>

#include <cstring>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

constexpr std::size_t kSeenById = 32;

tagPRESET_CFG_S presetOf(const Input& input) {
  tagPRESET_CFG_S preset{};
  preset.s32Id = input.number(0);
  const std::string description = input.line(1);
  // Not terminated if it fills the field.
  std::memcpy(preset.s8Description, description.data(),
              std::min(description.size(), sizeof preset.s8Description));
  preset.s32PanPos = input.number(2);
  preset.s32FocusMode = input.number(3);
  return preset;
}

int countOf() {
  int count = -1;
  CFG_PRESET_GetCountNum(&count);
  return count;
}

bool hasPreset(int id) {
  tagPRESET_CFG_S found{};
  return CFG_PRESET_QueryOneById(id, &found) == 0;
}

void store(tagPRESET_CFG_S preset) {
  const bool isNew = !hasPreset(preset.s32Id);
  const int before = countOf();
  if (CFG_PRESET_SetParam(&preset) != 0) return;
  require(countOf() == before + (isNew ? 1 : 0), "only a new preset adds to the count");
  tagPRESET_CFG_S found{};
  require(CFG_PRESET_QueryOneById(preset.s32Id, &found) == 0, "a preset that was set is found");
  require(found.s32Id == preset.s32Id && found.s32PanPos == preset.s32PanPos &&
              found.s32FocusMode == preset.s32FocusMode,
          "a preset is read as it was set");
  const std::string description(preset.s8Description,
                                strnlen(preset.s8Description, sizeof preset.s8Description));
  const std::string expected = asReadBack(description);
  if (expected.size() < kSeenById)
    require(found.s8Description == expected, "a description is read as it was set");
}

void removeById(int id) {
  const bool present = hasPreset(id);
  const int before = countOf();
  if (CFG_PRESET_DeleteById(id) != 0 || present) {
    require(!present || countOf() == before - 1, "deleting a preset takes one away");
    return;
  }
  // An unknown id leaves the file locked.
  releaseIfLocked(CFG_FILE_PRESET);
}

}  // namespace

// An id, a description, a pan position, a focus mode; the preset file.
void presets(const Input& input) {
  writeFile(CFG_FILE_PRESET, input.part(1));
  const tagPRESET_CFG_S preset = presetOf(input);
  const std::string description = input.line(1);

  int unused = -1;
  if (CFG_PRESET_GetUnusedId(&unused) == 0 && unused != -1)
    require(unused >= 0 && unused < PRESET_ID_MAX, "an unused id is one that may be set");
  tagPRESET_CFG_S found{};
  CFG_PRESET_QueryOneByDesc(description.c_str(), &found);
  store(preset);
  removeById(input.number(0));
  const int before = countOf();
  if (CFG_PRESET_DeleteByDesc(description.c_str()) == 0)
    require(countOf() == before - 1, "deleting a preset by its description takes one away");
}

}  // namespace camcfg::fuzz
