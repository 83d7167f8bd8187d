#ifndef CAMCFG_TESTS_TOOL_TWO_PRESETS_H
#define CAMCFG_TESTS_TOOL_TWO_PRESETS_H

namespace camcfg::tests {

/// Camera positions as the library writes them.
constexpr char kTwoPresets[] =
    "<PresetCfg>\n"
    "    <preset Id=\"1\" Description=\"Door\" PanPos=\"1\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n"
    "    <preset Id=\"2\" Description=\"Gate\" PanPos=\"2\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n"
    "</PresetCfg>\n";

}  // namespace camcfg::tests

#endif
