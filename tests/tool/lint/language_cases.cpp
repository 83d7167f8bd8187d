#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> languageCases() {
  return {
      {"text-missing", kCleanTexts, R"( Val="Video")", "", R"( Val="")",
       R"(x.xml:3: warning: MenuVideo has no "Val" [text-missing]
)"},
      {"text-twice", kCleanTexts, "MenuVideo", "MenuLive", "MenuLiv",
       R"(x.xml:3: error: MenuLive: a lookup finds the one at line 2 [text-twice]
)"},
      {"text-not-found", kCleanTexts,
       R"(</Texts>
)",
       R"(</Texts>
<More>
    <MenuAudio Val="Audio"/>
</More>
)",
       R"(</Texts>
<More/>
)",
       R"(x.xml:6: error: MenuAudio is not right inside the first element, and so is not found [text-not-found]
)"},
  };
}

}  // namespace camcfg::tests
