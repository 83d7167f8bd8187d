#include "base/log.h"
#include "camcfg/preset.h"
#include "preset/group.h"
#include "preset/record.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

// Deliberate: a description of 32 to 63 bytes is answered to a query by description and kept from a
// query by id. Callers of the latter rely on the second half of the field staying unchanged.
// [preset-description-limits]
constexpr std::size_t kDescriptionLimitById = 32;
constexpr std::size_t kDescriptionLimitByDesc = PRESET_DESC_SIZE;

}  // namespace

int CFG_PRESET_QueryOneById(int s32PresetId, tagPRESET_CFG_S* pstPresetCfg) {
  if (pstPresetCfg == nullptr) {
    logError(here(), "pstPresetCfg is NULL\n");
    return -1;
  }
  ReadDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;
  const XMLElement* preset = findPreset(group, s32PresetId);
  if (preset == nullptr) {
    logError(here(), "pstNode is NULL, can't find preset Id %d\n", s32PresetId);
    return -1;
  }
  readRecord(*preset, *pstPresetCfg, kDescriptionLimitById);
  return 0;
}

int CFG_PRESET_QueryOneByDesc(const char* ps8Description, tagPRESET_CFG_S* pstPresetCfg) {
  if (ps8Description == nullptr || pstPresetCfg == nullptr) {
    // Deliberate: reported under this name whichever of the two is null. [preset-null-name]
    logError(here(), "pstPresetCfg is NULL\n");
    return -1;
  }
  ReadDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;
  const XMLElement* preset = findPreset(group, ps8Description);
  if (preset == nullptr) {
    logError(here(), "pstNode is NULL, can't find preset Description %s\n", ps8Description);
    return -1;
  }
  readRecord(*preset, *pstPresetCfg, kDescriptionLimitByDesc);
  return 0;
}

int CFG_PRESET_GetCountNum(int* ps32PresetCount) {
  if (ps32PresetCount == nullptr) {
    logError(here(), "ps32PresetCount is NULL\n");
    return -1;
  }
  ReadDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;
  int count = 0;
  for (XMLElement* preset = firstPreset(group); preset != nullptr; preset = nextPreset(preset))
    ++count;
  *ps32PresetCount = count;
  return 0;
}
