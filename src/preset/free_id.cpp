#include <bitset>

#include "base/log.h"
#include "camcfg/preset.h"
#include "preset/group.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

// Deliberate: PRESET_ID_MAX itself can be set but is never proposed. [preset-proposed-ids]
constexpr int kProposedIds = PRESET_ID_MAX;

using TakenIds = std::bitset<kProposedIds>;

TakenIds takenIds(XMLElement* group) {
  TakenIds taken;
  // Deliberate: not reset between presets, so one without a readable "Id" counts as having the id
  // of its predecessor, and as having 0 if it has no predecessor with one. [preset-id-carried]
  int id = 0;
  for (XMLElement* preset = firstPreset(group); preset != nullptr; preset = nextPreset(preset)) {
    preset->QueryIntAttribute("Id", &id);
    if (id >= 0 && id < kProposedIds) taken.set(static_cast<std::size_t>(id));
  }
  return taken;
}

}  // namespace

int CFG_PRESET_GetUnusedId(int* ps32UnusedId) {
  if (ps32UnusedId == nullptr) {
    logError(here(), "ps32UnusedId is NULL\n");
    return -1;
  }
  ReadDocument document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document, here());
  if (group == nullptr) return -1;

  const TakenIds taken = takenIds(group);
  int id = 0;
  while (id < kProposedIds && taken.test(static_cast<std::size_t>(id))) ++id;
  // Deliberate: with every id taken the call still succeeds; the untouched output shows it.
  // [preset-all-taken]
  if (id < kProposedIds) *ps32UnusedId = id;
  return 0;
}
