#ifndef CAMCFG_TOOL_SETTINGS_PRESETS_H
#define CAMCFG_TOOL_SETTINGS_PRESETS_H

#include "settings/setting.h"

namespace camcfg::tool::settings {

inline constexpr char kPresetId[] = "id";
inline constexpr char kPresetDescription[] = "description";

/// The settings of a preset: its id, its description, then the numbers. Each is an attribute of the
/// preset's element, and a field of tagPRESET_CFG_S.
const Settings& presetSettings();

}  // namespace camcfg::tool::settings

#endif
