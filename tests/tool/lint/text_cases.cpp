#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

constexpr char kPort[] = R"(<Rtsp Cur="554" )";

// A text in an encoding in which each character takes several bytes.
std::string wide(const std::string& text, std::size_t length, std::size_t letter) {
  std::string all;
  for (const char c : text) {
    std::string character(length, '\0');
    character[letter] = c;
    all += character;
  }
  return all;
}

std::vector<LintCase> wideCases() {
  const std::string found16 =
      "x.xml:1: error: the file is UTF-16, of which the library reads nothing [wide-encoding]\n";
  const std::string found32 =
      "x.xml:1: error: the file is UTF-32, of which the library reads nothing [wide-encoding]\n";
  const std::string small = "<PresetCfg/>";
  return {
      {"wide-encoding", kCleanPresets, kCleanPresets, "\xff\xfe" + wide(kCleanPresets, 2, 0), small,
       found16},
      {"wide-encoding", kCleanPresets, kCleanPresets, "\xfe\xff" + wide(kCleanPresets, 2, 1), small,
       found16},
      {"wide-encoding", kCleanPresets, kCleanPresets, wide(kCleanPresets, 2, 0), small, found16},
      {"wide-encoding", kCleanPresets, kCleanPresets, wide(kCleanPresets, 2, 1), small, found16},
      {"wide-encoding", kCleanPresets, kCleanPresets,
       std::string("\xff\xfe\0\0", 4) + wide(kCleanPresets, 4, 0), small, found32},
      {"wide-encoding", kCleanPresets, kCleanPresets, wide(kCleanPresets, 4, 3), small, found32},
  };
}

std::vector<LintCase> nameCases() {
  return {
      {"wrapped-root", kCleanParameters, kCleanParameters,
       "<Config>\n" + std::string(kCleanParameters) + "</Config>", kCleanParameters,
       R"(x.xml:1: error: <Config> is around what readers look for at the top [wrapped-root]
)"},
      {"wrapped-root", kCleanMedia, kCleanMedia,
       "<!-- all -->\n<config>\n" + std::string(kCleanMedia) + "</config>", kCleanMedia,
       R"(x.xml:2: error: <config> is around what readers look for at the top [wrapped-root]
)"},
      {"wrapped-root", kCleanPresets, kCleanPresets, "<Presets><PresetCfg/></Presets>",
       "<Presets/><PresetCfg/>",
       R"(x.xml:1: error: <Presets> is around what readers look for at the top [wrapped-root]
)"},
      {"near-name", kCleanPresets, R"(<preset Id="3")", R"(<Preset Id="3")", R"(<preset Id="4")",
       R"(x.xml:3: error: <Preset> is not read: readers look for <preset> [near-name]
)"},
      {"near-name", kCleanPresets, R"(<preset Id="3")", R"(<prest Id="3")", R"(<preset Id="6")",
       R"(x.xml:3: error: <prest> is not read: readers look for <preset> [near-name]
)"},
      {"near-name", kCleanPresets, "PresetCfg", "PresetCFG", "PresetCfg",
       R"(x.xml:1: error: <PresetCFG> is not read: readers look for <PresetCfg> [near-name]
)"},
      {"near-name", kCleanParameters, "NetWork", "Network", "NetWork",
       R"(x.xml:15: error: <Network> is not read: readers look for <NetWork> [near-name]
)"},
      {"near-name", kCleanMedia, "StreamCache>", "streamcaches>", "StreamCache>",
       R"(x.xml:7: error: <streamcaches> is not read: readers look for <StreamCache> [near-name]
)"},
      {"near-name", kCleanMedia, "Channel Id=\"7\" Type", "Chanel Id=\"7\" Type",
       "channel Id=\"7\" Type",
       R"(x.xml:30: error: <Chanel> is not read: readers look for <Channel> [near-name]
)"},
      {"near-name", kCleanParameters, "<MTU ", "<Mtu ", "<Autoneg Cur=\"On\" Def=\"On\"/><MTU ",
       R"(x.xml:18: error: <Mtu> is not read: readers look for <MTU> [near-name]
)"},
      {"near-name", kCleanParameters, "<DeviceAttr ", "<Deviceattr ", "<!-- --><DeviceAttr ",
       R"(x.xml:3: error: <Deviceattr> is not read: readers look for <DeviceAttr> [near-name]
)"},
      {"near-name", kCleanTexts, kCleanTexts, "<stream><StreamSource/></stream>",
       "<Flow><StreamSource Val=\"a\"/></Flow>",
       R"(x.xml:1: error: <stream> is not read: readers look for <Stream> [near-name]
)"},
  };
}

std::vector<LintCase> encodingCases() {
  return {
      {"encoding-ignored", kCleanParameters, "<System>",
       "<?xml version='1.0' encoding='ISO-8859-1'?>\n<System>\n<Owner Cur='\xe9' Def='\xe9' "
       "OptTxt='\xe9'/>",
       "<?xml version='1.0' encoding='utf-8'?>\n<System>\n<Owner Cur='\xc3\xa9' Def='\xc3\xa9' "
       "OptTxt='\xc3\xa9'/>",
       R"(x.xml:1: error: the encoding 'ISO-8859-1' is not followed: from line 3 on there are characters that are read as UTF-8 [encoding-ignored]
)"},
      {"encoding-declared", kCleanTexts, "<Texts>",
       "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><Texts>",
       "<?xml version=\"1.0\" encoding=\"US-ASCII\"?><Texts>",
       R"(x.xml:1: warning: the encoding 'ISO-8859-1' is not followed [encoding-declared]
)"},
      {"not-unicode", kCleanTexts, "Live view", "\xe9t\xe9", "\xc3\xa9t\xc3\xa9",
       R"(x.xml:2: warning: what is here is not UTF-8, as at 1 more places [not-unicode]
)"},
      {"not-unicode", kCleanTexts, "Live view", "\xc0\xaf", "/",
       R"(x.xml:2: warning: what is here is not UTF-8, as at 1 more places [not-unicode]
)"},
      {"byte-order-mark", kCleanTexts, "<Texts>", "\xef\xbb\xbf<Texts>", "\n<Texts>",
       R"(x.xml:1: warning: a byte order mark comes before all else [byte-order-mark]
)"},
      {"extra-space", kCleanTexts, "<MenuLive Val", "<MenuLive  Val", "<MenuLive\n    Val",
       R"(x.xml:2: warning: white space is doubled in a tag or ends a line here [extra-space]
)"},
      {"extra-space", kCleanTexts, "\"/>", "\"\t />  ", "\"\n/><!-- -->",
       R"(x.xml:2: warning: white space is doubled in a tag or ends a line here, and in 3 more places [extra-space]
)"},
      {"control-character", kCleanTexts, "Live view", "Live\x07view", "Live\tview",
       R"(x.xml:2: warning: a control character is here, \x07 [control-character]
)"},
      {"control-character", kCleanTexts, "Live view", "Live&#7;view", "Live&#10;view",
       R"(x.xml:2: warning: <MenuLive>: "Val" holds a control character [control-character]
)"},
  };
}

std::vector<LintCase> referenceCases() {
  return {
      {"character-reference", kCleanTexts, "Live view", "Live&#0;view", "Live&#9;view",
       R"(x.xml:2: error: <MenuLive>: "Val" ends at a reference to a zero byte [character-reference]
)"},
      {"character-reference", kCleanTexts, "Live view", "Live&#xD800;view", "Live&#xD7FF;view",
       R"(x.xml:2: error: <MenuLive>: "Val" holds a reference to a character that does not exist [character-reference]
)"},
      {"character-reference", kCleanTexts, "Live view", "Live&#xZ;view", "Live&#xA9;view",
       R"(x.xml:2: error: <MenuLive>: "Val" holds a reference that is no number [character-reference]
)"},
      {"unknown-entity", kCleanTexts, "Live view", "caf&eacute;", "caf&amp;eacute;",
       R"(x.xml:2: error: <MenuLive>: "Val" holds an entity that is not replaced [unknown-entity]
)"},
      {"bare-ampersand", kCleanTexts, "Live view", "Sound & Vision; &amp", "Sound &amp; Vision;",
       R"(x.xml:2: warning: <MenuLive>: "Val" holds a bare "&" [bare-ampersand]
)"},
      {"document-type", kCleanTexts, "<Texts>",
       "<!DOCTYPE Texts [\n<!ENTITY a \"b\">\n<!ENTITY c \"d\">\n]>\n<Texts>",
       "<!-- DOCTYPE Texts -->\n<Texts>",
       R"(x.xml:1: warning: the document type is not read, and the next save writes it otherwise [document-type]
)"},
      {"document-type", kCleanTexts, "<Texts>", "<!DOCTYPE Texts SYSTEM \"texts.dtd\">\n<Texts>",
       "<!--DOCTYPE-->\n<Texts>",
       R"(x.xml:1: warning: the document type is not read [document-type]
)"},
  };
}

std::vector<LintCase> strictCases() {
  return {
      {"strict-xml", kCleanTexts, "<Texts>", "\n<?xml version=\"1.0\"?>\n<Texts>",
       "<?xml version=\"1.0\"?>\n<?xml-stylesheet href=\"a\"?>\n<Texts>",
       R"(x.xml:2: warning: a declaration <?...?> is not at the beginning of the file [strict-xml]
)"},
      {"strict-xml", kCleanTexts, "Live view", "Live <view", "Live > view",
       R"(x.xml:2: warning: a value holds a bare "<" [strict-xml]
)"},
      {"strict-xml", kCleanTexts, "<MenuLive Val=\"Live view\"/>",
       "<MenuLive Val=\"Live view\"Key=\"l\"/>", "<MenuLive\nVal=\"Live view\"\nKey=\"l\"/>",
       R"(x.xml:2: warning: there is no space between two attributes [strict-xml]
)"},
      {"strict-xml", kCleanTexts, "    <Menu", "    < Menu", "    <Menu",
       R"(x.xml:2: warning: there is a space before the name of a tag, as in 1 more places [strict-xml]
)"},
      {"strict-xml", kCleanTexts, "<Texts>", "<!-- a -- b --><Texts>", "<!-- a - b --><Texts>",
       R"(x.xml:1: warning: a comment has "--" inside, or ends with "--->" [strict-xml]
)"},
      {"strict-xml", kCleanTexts, "</Texts>\n", "</Texts>\n</Texts>\n", "</Texts>\n<!-- -->\n",
       R"(x.xml:5: warning: </Texts> closes nothing that is open here [strict-xml]
)"},
      {"carriage-returns", kCleanPresets, kCleanPresets, "<PresetCfg>\r</PresetCfg>\r",
       "<PresetCfg>\r\n</PresetCfg>\r\n",
       R"(x.xml:1: warning: all lines end in carriage returns only [carriage-returns]
)"},
      {"damaged-text", kCleanTexts, "Live view", "D\u00c3\u00a9tails", "D\u00c9TAILS",
       R"(x.xml:2: warning: <MenuLive>: "Val" holds characters of UTF-8 that was encoded twice [damaged-text]
)"},
      {"damaged-text", kCleanTexts, "Live view", "M\u00c3\u0153nchen",
       "\u00abAMANH\u00c3\u00bb \u201cMANH\u00c3\u201d",
       R"(x.xml:2: warning: <MenuLive>: "Val" holds characters of UTF-8 that was encoded twice [damaged-text]
)"},
      {"damaged-text", kCleanTexts, "Live view", "L\ufffdschen", "L\u00f6schen?",
       R"(x.xml:2: warning: <MenuLive>: "Val" holds U+FFFD, which stands for a lost character [damaged-text]
)"},
      {"invisible-name", kCleanTexts, "<MenuLive ", "<Menu\u200bLive ",
       "<\u0645\u06cc\u200c\u062e ",
       "x.xml:2: error: <Menu\u200bLive> has a character in its name that nobody sees "
       "[invisible-name]\n"},
  };
}

std::vector<LintCase> strayCases() {
  return {
      {"stray-text", kCleanParameters, "<Image>", "Image:\n<Image>", "\n<Image>",
       R"(x.xml:9: warning: there is text outside all elements [stray-text]
)"},
      {"stray-text", kCleanParameters, kPort, R"(Port: <Rtsp Cur="554" )",
       R"(<!-- Port: --> <Rtsp Cur="554" )",
       R"(x.xml:6: warning: <System> holds text, which no reader looks at [stray-text]
)"},
      {"stray-text", kCleanPresets, "FocusMode=\"1\"/>", "FocusMode=\"1\">Dock</preset>",
       "FocusMode=\"1\">\n</preset>",
       R"(x.xml:3: warning: <preset> holds text, which no reader looks at [stray-text]
)"},
      {"stray-text", kCleanMedia, "    <RTMP>", "    <RTMP><![CDATA[x]]>", "    <RTMP><!-- x -->",
       R"(x.xml:27: warning: <RTMP> holds text, which no reader looks at [stray-text]
)"},
      {"not-well-formed", kCleanPresets, "</PresetCfg>\n", "</PresetCfg>\n<?xml version='1.0'?>\n",
       "</PresetCfg>\n\n",
       R"(x.xml:5: error: a declaration <?...?> does not end or is in the middle of the file [not-well-formed]
)"},
  };
}

}  // namespace

std::vector<LintCase> textCases() {
  std::vector<LintCase> all;
  for (const auto cases :
       {wideCases, nameCases, encodingCases, referenceCases, strictCases, strayCases})
    for (LintCase& lintCase : cases()) all.push_back(std::move(lintCase));
  return all;
}

}  // namespace camcfg::tests
