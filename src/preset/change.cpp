#include "base/log.h"
#include "base/xml_edit.h"
#include "camcfg/preset.h"
#include "preset/group.h"
#include "preset/record.h"
#include "store/file_lock.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

// Unsigned, a negative id is too large as well.
bool acceptable(int id) {
  return static_cast<std::uint32_t>(id) <= PRESET_ID_MAX;
}

int removeAndSave(WriteDocument& document, XMLElement* group, XMLElement* preset) {
  group->DeleteChild(preset);
  return document.save() ? 0 : -1;
}

}  // namespace

int CFG_PRESET_SetParam(tagPRESET_CFG_S* pstPresetCfg) {
  if (pstPresetCfg == nullptr) {
    logError(here(), "pstPresetCfg is NULL\n");
    return -1;
  }
  const int id = pstPresetCfg->s32Id;
  if (!acceptable(id)) {
    logError(here(), "preset id %d out of rang %d\n", id, PRESET_ID_MAX);
    return -1;
  }
  WriteDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;

  XMLElement* preset = findPreset(group, id);
  const bool isNew = preset == nullptr;
  if (isNew) preset = newElement(*document.get(), kPresetName);
  if (preset == nullptr) {
    logError(here(), "pstNode is NULL\n");
    return -1;
  }
  if (!writeRecord(*preset, *pstPresetCfg)) return -1;
  if (isNew) group->InsertEndChild(preset);
  return document.save() ? 0 : -1;
}

int CFG_PRESET_DeleteById(int s32PresetId) {
  WriteDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;
  XMLElement* preset = findPreset(group, s32PresetId);
  if (preset != nullptr) return removeAndSave(document, group, preset);

  // Deliberate: an unknown id is no failure, and the file stays locked until somebody calls
  // CFG_UnlockFile; programs that delete unknown ids call it, and a release here would make
  // theirs warn. [preset-delete-unknown]
  document.leaveLocked();
  leaveLockedInsideProcess(CFG_FILE_PRESET);
  return 0;
}

int CFG_PRESET_DeleteByDesc(const char* ps8Description) {
  if (ps8Description == nullptr) {
    logError(here(), "ps8Description is NULL\n");
    return -1;
  }
  WriteDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;
  // Deliberate: the first match only, by the beginning of its description. [preset-delete-first]
  XMLElement* preset = findPreset(group, ps8Description);
  return preset == nullptr ? -1 : removeAndSave(document, group, preset);
}
