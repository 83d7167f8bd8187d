#include "settings/presets.h"

#include <camcfg/preset.h>

#include <algorithm>

#include "settings/nearest.h"

namespace camcfg::tool::settings {
namespace {

using Record = tagPRESET_CFG_S;

constexpr std::size_t kLongestDescription = PRESET_DESC_SIZE - 1;

std::string whyNotADescription(const std::string& text) {
  if (text.size() > kLongestDescription)
    return "the description has " + std::to_string(text.size()) + " bytes, the limit is " +
           std::to_string(kLongestDescription) + nearestOfLength(text, kLongestDescription);
  const auto steers = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
  return std::any_of(text.begin(), text.end(), steers)
             ? "the description has a control character in it"
             : "";
}

Setting row(const char* member, const char* attribute, Kind kind, Field field, const char* help,
            const char* heading, const char* cell) {
  Setting setting{member, {{attribute}}, kind, Need::Expected, help, field};
  setting.limits = {INT32_MIN, INT32_MAX};
  setting.column = {heading, cell};
  return setting;
}

Setting option(const char* name, Setting setting) {
  setting.option = name;
  return setting;
}

Settings makePresetSettings() {
  Setting id = row(kPresetId, "Id", Kind::Integer, fieldOf<&Record::s32Id>(), "Id from 0 to 128",
                   "ID", "{id}");
  id.need = Need::Required;
  id.limits = {0, PRESET_ID_MAX};
  Setting description =
      option("--description",
             row(kPresetDescription, "Description", Kind::Text, fieldOf<&Record::s8Description>(),
                 "Text of up to 63 bytes", "DESCRIPTION", "{description}"));
  description.whyNotUsable = whyNotADescription;
  const auto number = [](const char* optionName, const char* member, const char* attribute,
                         Field field, const char* help, const char* heading, const char* cell) {
    return option(optionName, row(member, attribute, Kind::Integer, field, help, heading, cell));
  };
  Setting focusMode =
      number("--focus-mode", "focusMode", "FocusMode", fieldOf<&Record::s32FocusMode>(),
             "Focus mode", "FOCUS MODE", "{focusMode}");
  focusMode.label = "focus mode";
  return {id,
          description,
          number("--pan", "pan", "PanPos", fieldOf<&Record::s32PanPos>(), "Pan position", "PAN",
                 "{pan}"),
          number("--tilt", "tilt", "TiltPos", fieldOf<&Record::s32TiltPos>(), "Tilt position",
                 "TILT", "{tilt}"),
          number("--zoom", "zoom", "ZoomPos", fieldOf<&Record::s32ZoomPos>(), "Zoom position",
                 "ZOOM", "{zoom}"),
          number("--focus", "focus", "FocusPos", fieldOf<&Record::s32FocusPos>(), "Focus position",
                 "FOCUS", "{focus}"),
          focusMode};
}

}  // namespace

const Settings& presetSettings() {
  static const Settings settings = makePresetSettings();
  return settings;
}

}  // namespace camcfg::tool::settings
