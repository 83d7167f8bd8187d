#include <map>

#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

// A file with some of its parts replaced, which are there once.
std::string replacedIn(std::string text, const std::map<std::string, std::string>& parts) {
  for (const auto& [part, other] : parts) text.replace(text.find(part), part.size(), other);
  return text;
}

}  // namespace

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
       R"(<Site/>
<Image>)",
       R"(x.xml:9: error: this <System> is not found: the one at line 1 comes first [section-twice]
)"},
      {"section-twice", kCleanMedia, "    <SRT>",
       R"(    <NDI/>
    <SRT>)",
       R"(    <Extra/>
    <SRT>)",
       R"(x.xml:38: error: this <NDI> is not found: the one at line 33 comes first [section-twice]
)"},
      {"web-page", kCleanTexts, kCleanTexts, "<html><body><h1>502 Bad Gateway</h1></body></html>",
       R"(<htm><h1 Val="a"/></htm>)", R"(x.xml:1: error: the file is an HTML page [web-page]
)"},
      {"web-page", kCleanTexts, kCleanTexts, "\n<!DOCTYPE HTML><html><br></html>",
       R"(<html5><br Val="a"/></html5>)", R"(x.xml:1: error: the file is an HTML page [web-page]
)"},
      {"surplus-end", kCleanParameters, "</Image>\n", "</Image>\n</Image>\n",
       "</Image>\n<!-- </Image> -->\n",
       R"(x.xml:1: error: there is no <NetWork> [section-missing]
x.xml:15: error: </Image> closes nothing that is open here: reading ends, and what follows is not there [surplus-end]
)"},
      {"section-nested", kCleanParameters, R"(    <Mode Cur="Auto")",
       R"(    <Lens><Zoom Cur="1" Def="1" Min="1" Max="9" Step="1"/></Lens>
    <Mode Cur="Auto")",
       R"(    <Lens><Zoom Cur="a" Def="a" OptTxt="a,b"/></Lens>
    <Mode Cur="Auto")",
       R"(x.xml:11: error: Image/Lens is a section inside another: no call reads the numbers in it [section-nested]
)"},
      {"section-nested", kCleanParameters, kCleanParameters,
       replacedIn(kCleanParameters,
                  {{"<NetWork", "<Old><NetWork"}, {"</NetWork>", "</NetWork></Old>"}}),
       kCleanParameters,
       R"(x.xml:15: error: <NetWork> is not read: it is inside <Old> at line 15, and readers look for it at the top [section-nested]
)"},
      {"section-nested", kCleanMedia, kCleanMedia,
       replacedIn(kCleanMedia, {{"    <RTSP>\n", ""},
                                {"    <WEBSOCKET>\n", "    <WEBSOCKET>\n<RTSP>\n"},
                                {"    </WEBSOCKET>\n", ""},
                                {"    </RTSP>\n", "</RTSP></WEBSOCKET>\n"}}),
       kCleanMedia,
       R"(x.xml:19: error: <RTSP> is not read: it is inside <WEBSOCKET> at line 18, and readers look for it in <LiveMediaService> [section-nested]
x.xml:19: warning: <WEBSOCKET>: no loader reads <RTSP>, and the next save drops it [unknown-element]
)"},
      {"section-alike", kCleanParameters, "<Image>", "<image/>\n<Image>", "<Images/>\n<Image>",
       R"(x.xml:10: warning: <Image> is called as the section <image> at line 9 except for upper and lower case [section-alike]
)"},
      {"section-alike", kCleanMedia, "    <SRT>", "    <Ndi/>\n    <SRT>", "    <Nda/>\n    <SRT>",
       R"(x.xml:38: warning: <Ndi> is nearly called as the section <NDI> at line 33, and is not it [section-alike]
)"},
      {"section-alike", kCleanParameters, "<Image>", "<Systems/>\n<Image>", "<Sys/>\n<Image>",
       R"(x.xml:9: warning: <Systems> is nearly called as the section <System> at line 1, and is not it [section-alike]
)"},
  };
}

}  // namespace camcfg::tests
