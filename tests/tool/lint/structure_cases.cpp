#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> structureCases() {
  return {
      {"not-well-formed", kCleanParameters,
       R"(</Image>
)",
       "",
       R"(</Image>
<!-- -->
)",
       R"(x.xml:9: error: an element that begins here does not end, or what is here is not XML [not-well-formed]
)"},
      {"not-well-formed", kCleanParameters, R"(Cur="English")", "Cur=English", "Cur='English'",
       R"(x.xml:2: error: an attribute is not written NAME="VALUE", or occurs twice [not-well-formed]
)"},
      {"not-well-formed", kCleanPresets, kCleanPresets, "", "<PresetCfg/>",
       R"(x.xml:1: error: the file is empty [not-well-formed]
)"},
      {"no-element", kCleanPresets, kCleanPresets, "<!-- nothing yet -->", "<PresetCfg/>",
       R"(x.xml:1: error: there is no element in it [no-element]
)"},
      {"allow-form", kCleanPresets, "<PresetCfg>", "<PresetCfg><!-- lint: allow equal-id -->",
       "<PresetCfg><!-- lin: allow equal-id -->",
       R"(x.xml:1: error: this comment allows nothing: it does not say why equal-id is allowed [allow-form]
)"},
      {"allow-form", kCleanPresets, "<PresetCfg>", "<PresetCfg><!--lint:allow equal-idd: x-->",
       "<PresetCfg><!--allow equal-idd: x-->",
       R"(x.xml:1: error: this comment allows nothing: there is no rule 'equal-idd'; did you mean 'equal-id'? [allow-form]
)"},
      {"allow-form", kCleanPresets, "<PresetCfg>", "<PresetCfg><!-- lint: ignore -->",
       "<PresetCfg><!-- ignore -->",
       R"(x.xml:1: error: this comment allows nothing: it is not "lint: allow RULE: reason" [allow-form]
)"},
      {"allow-unused", kCleanTexts, "<Texts>",
       "<Texts><!-- lint: allow text-missing: not yet translated -->",
       "<Texts><!-- lint: allow text-missing: not yet translated --><New/>",
       R"(x.xml:1: warning: this comment allows nothing: text-missing finds nothing in the next element [allow-unused]
)"},
      {"allow-unused", kCleanPresets, "</PresetCfg>",
       "<!-- lint: allow equal-id: as delivered --></PresetCfg>",
       "<!-- lent: allow equal-id: as delivered --></PresetCfg>",
       R"(x.xml:4: warning: this comment allows nothing: no element follows it [allow-unused]
)"},
      {"zero-byte", kCleanPresets,
       R"(</PresetCfg>
)",
       std::string("</PresetCfg>\n\0\0\0\0", 17),
       R"(</PresetCfg>

)",
       R"(x.xml:5: error: a zero byte ends the file here; 4 bytes are not read [zero-byte]
)"},
      {"not-well-formed", kCleanParameters, R"(Hostname="gate")",
       R"(Hostname="gate" Hostname="door")", R"(Hostname="gate" Port="door")",
       R"(x.xml:15: error: an attribute is not written NAME="VALUE", or occurs twice [not-well-formed]
)"},
      {"unknown-kind", kCleanTexts, kCleanTexts, "<Settings><Port>554</Port></Settings>",
       R"(<Settings><Port Val="554"/></Settings>)",
       R"(x.xml:1: warning: nothing in it says what it configures [unknown-kind]
)"},
      {"section-missing", kCleanMedia, "StreamCache>", "Buffers>", "StreamCache>",
       R"(x.xml:1: error: <Stream> has no <StreamCache> [section-missing]
)"},
      {"section-missing", kCleanPresets, "PresetCfg", "Presets", "PresetCfg",
       R"(x.xml:1: error: there is no <PresetCfg> [section-missing]
)"},
      {"section-twice", kCleanParameters, "<Image>",
       R"(<System/>
<Image>)",
       R"(<Systems/>
<Image>)",
       R"(x.xml:9: error: this <System> is not found: the one at line 1 comes first [section-twice]
)"},
      {"section-twice", kCleanMedia, "    <SRT>",
       R"(    <NDI/>
    <SRT>)",
       R"(    <Ndi/>
    <SRT>)",
       R"(x.xml:38: error: this <NDI> is not found: the one at line 33 comes first [section-twice]
)"},
  };
}

}  // namespace camcfg::tests
