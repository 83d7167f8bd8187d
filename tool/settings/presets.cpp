#include "settings/presets.h"

#include <camcfg/preset.h>

#include <algorithm>

#include "base/concat.h"
#include "settings/table.h"

namespace camcfg::tool::settings {
namespace {

using Preset = tagPRESET_CFG_S;

constexpr std::size_t kLongestDescription = PRESET_DESC_SIZE - 1;

std::string whyNotADescription(const std::string& text) {
  if (text.size() > kLongestDescription)
    return concat("the description has ", text.size(), " bytes, the limit is ", kLongestDescription,
                  nearestOfLength(text, kLongestDescription));
  const auto steers = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
  return std::any_of(text.begin(), text.end(), steers)
             ? "the description has a control character in it"
             : "";
}

template <auto Member>
Row number(const char* name, const char* attribute, const char* help) {
  return integer<Member>(name, attribute, kExpected, help);
}

}  // namespace

const Settings& presetSettings() {
  static const Settings settings = {
      integer<&Preset::s32Id>(kPresetId, "Id", kRequired, "Id from 0 to 128")
          .within(0, PRESET_ID_MAX)
          .listed("ID"),
      text<&Preset::s8Description>(kPresetDescription, "Description", kExpected,
                                   "Text of up to 63 bytes")
          .checked(whyNotADescription)
          .option("--description")
          .listed("DESCRIPTION", 1),
      number<&Preset::s32PanPos>("pan", "PanPos", "Pan position").option("--pan").listed("PAN"),
      number<&Preset::s32TiltPos>("tilt", "TiltPos", "Tilt position")
          .option("--tilt")
          .listed("TILT"),
      number<&Preset::s32ZoomPos>("zoom", "ZoomPos", "Zoom position")
          .option("--zoom")
          .listed("ZOOM"),
      number<&Preset::s32FocusPos>("focus", "FocusPos", "Focus position")
          .option("--focus")
          .listed("FOCUS"),
      number<&Preset::s32FocusMode>("focusMode", "FocusMode", "Focus mode")
          .option("--focus-mode")
          .labelled("focus mode")
          .listed("FOCUS MODE"),
  };
  return settings;
}

}  // namespace camcfg::tool::settings
