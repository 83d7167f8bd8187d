#include "tool/lint/cases.h"

namespace camcfg::tests {

namespace {

// Presets with the ids from 0 up.
std::string presetsUpTo(int count) {
  std::string text = "<PresetCfg>\n";
  for (int id = 0; id < count; ++id)
    text += "    <preset Id=\"" + std::to_string(id) + "\" Description=\"at " + std::to_string(id) +
            ".\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"0\" FocusPos=\"0\" FocusMode=\"0\"/>\n";
  return text + "</PresetCfg>\n";
}

}  // namespace

std::vector<LintCase> presetCases() {
  return {
      {"preset-id-range", kCleanPresets, R"(<preset Id="3")", R"(<preset Id="129")",
       R"(<preset Id="128")",
       R"(x.xml:3: error: preset 129: the id is outside 0..128 [preset-id-range]
)"},
      {"preset-id-range", kCleanPresets, R"(<preset Id="3")", R"(<preset Id="-1")",
       R"(<preset Id="1")",
       R"(x.xml:3: error: preset -1: the id is outside 0..128 [preset-id-range]
)"},
      {"preset-no-free-id", kCleanPresets, kCleanPresets, presetsUpTo(128), presetsUpTo(127),
       R"(x.xml:1: warning: all ids from 0 to 127 are taken [preset-no-free-id]
)"},
      {"preset-position-missing", kCleanPresets, R"( FocusMode="1")", "", R"( FocusMode="-1")",
       R"(x.xml:3: warning: preset 3 has no "FocusMode" [preset-position-missing]
)"},
      {"description-missing", kCleanPresets, "Dock", "", "D",
       R"(x.xml:3: warning: preset 3 has no description [description-missing]
)"},
      {"description-missing", kCleanPresets, R"( Description="Dock")", "", R"( Description="D")",
       R"(x.xml:3: warning: preset 3 has no description [description-missing]
)"},
      {"description-hidden-by-id", kCleanPresets, "Dock", "A description of thirty-two byte",
       "A description of thirty-two byt",
       R"(x.xml:3: warning: preset 3: the description has 32 bytes and is not returned by a query by id [description-hidden-by-id]
)"},
      {"description-hidden", kCleanPresets, "Dock",
       "A description of sixty-four bytes is not returned by any query a", "A description",
       R"(x.xml:3: error: preset 3: the description has 64 bytes and is not returned by any query [description-hidden]
)"},
      {"description-twice", kCleanPresets, "Dock", "Home", "home",
       R"(x.xml:3: error: preset 3: the description 'Home' finds preset 0 'Home' at line 2 [description-twice]
)"},
      {"description-shadowed", kCleanPresets, "Dock", "Hom", "hom",
       R"(x.xml:3: error: preset 3: the description 'Hom' finds preset 0 'Home' at line 2 [description-shadowed]
)"},
      {"description-begins-another", kCleanPresets, "Dock", "Home 2", "Hom 2",
       R"(x.xml:2: warning: preset 0: the description 'Home' begins that of preset 3 'Home 2' at line 3 [description-begins-another]
)"},
      {"preset-name", kCleanPresets, R"(<preset Id="3")", R"(<presets Id="3")", R"(<preset Id="4")",
       R"(x.xml:3: warning: <presets> is read as a <preset> [preset-name]
)"},
      {"not-a-preset", kCleanPresets, R"(<preset Id="3")", R"(<Position Id="3")",
       R"(<preset Id="4")",
       R"(x.xml:3: warning: <Position> is not read: its name is not <preset> [not-a-preset]
)"},
      {"preset-nested", kCleanPresets, R"(FocusMode="1"/>)",
       R"(FocusMode="1"><preset Id="4"/></preset>)", R"(FocusMode="1"><note Id="4"/></preset>)",
       R"(x.xml:3: error: preset 4 is inside preset 3 at line 3: no call finds it [preset-nested]
)"},
  };
}

}  // namespace camcfg::tests
