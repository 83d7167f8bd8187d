#include "tool/lint/device_cases.h"

#include <sys/stat.h>
#include <unistd.h>

#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using testkit::DeviceRoot;

constexpr char kMain[] = "/cfg0/mpp_cfg.xml";
constexpr char kBackup[] = "/cfg1/mpp_cfg.xml";

std::string replaced(std::string text, const std::string& part, const std::string& other) {
  return text.replace(text.find(part), part.size(), other);
}

void writeAll(const DeviceRoot& device, const std::string& name, const std::string& contents) {
  for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"})
    device.write(directory + name, contents);
}

std::string withText(const std::string& sentence, const std::string& text) {
  return replaced(
      kCleanTexts, "</Texts>",
      "    <Sentence Val=\"" + sentence + "\"/>\n    <Text Val=\"" + text + "\"/>\n</Texts>");
}

void writeTexts(const DeviceRoot& device, const std::string& english, const std::string& german) {
  device.write("/app/resource/language/English.xml", withText("Please enter a name.", english));
  device.write("/app/resource/language/German.xml", withText("Bitte einen Namen nennen.", german));
}

void writeCaller(const DeviceRoot& device, const std::string& host) {
  writeAll(
      device, "mpp_cfg.xml",
      replaced(kCleanMedia, "    </SRT>",
               "    <Instance Id=\"1\" Mode=\"Caller\" Hostname=\"" + host +
                   "\" Port=\"9000\">\n<Stream Id=\"a\"><Channel Id=\"0\"/></Stream></Instance>"
                   "\n    </SRT>"));
}

}  // namespace

std::vector<DeviceCase> deviceCases() {
  return {
      {"unreadable",
       [](const DeviceRoot& device) {
         device.remove(kMain);
         device.makeDirectory(kMain);
       },
       [](const DeviceRoot& device) { device.makeDirectory("/cfg0/more"); },
       "/cfg0/mpp_cfg.xml:1: error: is a directory [unreadable]\n"},
      {"unreadable",
       [](const DeviceRoot& device) {
         device.remove(kMain);
         mkfifo((device.hostPath() + kMain).c_str(), 0600);
       },
       [](const DeviceRoot& device) { mkfifo((device.hostPath() + "/cfg0/pipe").c_str(), 0600); },
       "/cfg0/mpp_cfg.xml:1: error: is not a regular file [unreadable]\n"},
      {"not-well-formed",
       [](const DeviceRoot& device) {
         device.write(kMain, "<Stream>\n<StreamSource>\n</Stream>\n");
       },
       [](const DeviceRoot& device) { device.write("/cfg0/notes.txt", "<Stream>\n<"); },
       "/cfg0/mpp_cfg.xml:2: error: an element is not closed by a tag of its name "
       "[not-well-formed]\n"},
      {"zero-byte",
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", std::string(kCleanMedia) + std::string(9, '\0'));
       },
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", std::string(kCleanMedia) + "\n\n");
       },
       "/cfg0/mpp_cfg.xml:46: error: a zero byte ends the file here; 9 bytes are not read "
       "[zero-byte]\n"},
      {"section-missing",
       [](const DeviceRoot& device) { writeAll(device, "preset_cfg.xml", kCleanTexts); },
       [](const DeviceRoot& device) { writeAll(device, "preset_cfg.xml", "<PresetCfg/>"); },
       "/cfg0/preset_cfg.xml:1: error: there is no <PresetCfg> [section-missing]\n"},
      {"language-missing",
       [](const DeviceRoot& device) { device.remove("/app/resource/language/English.xml"); },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.txt", kCleanTexts);
       },
       "/cfg0/business_param.xml:2: error: System/Language: there is no "
       "/app/resource/language/English.xml [language-missing]\n"},
      {"language-option-missing",
       [](const DeviceRoot& device) { device.remove("/app/resource/language/German.xml"); },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.txt", kCleanTexts);
       },
       "/cfg0/business_param.xml:2: warning: System/Language: there is no "
       "/app/resource/language/German.xml [language-option-missing]\n"},
      {"port-of-two-services",
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", replaced(kCleanMedia, "Port=\"9000\"", "Port=\"554\""));
       },
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", replaced(kCleanMedia, "Port=\"9000\"", "Port=\"555\""));
       },
       "/cfg0/mpp_cfg.xml:39: warning: <Instance>: 554 is the port of <Rtsp> in "
       "/cfg0/business_param.xml at line 6, too [port-of-two-services]\n"},
      {"translation-missing",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml", "<T><MenuLive Val=\"Live\"/></T>");
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      "<T><MenuVideo Val=\"V\"/><MenuLive Val=\"L\"/></T>");
       },
       "/app/resource/language/German.xml:1: warning: MenuVideo has no text here; it has one in "
       "/app/resource/language/English.xml at line 3 [translation-missing]\n"},
      {"translation-empty",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      replaced(kCleanTexts, "Val=\"Video\"", "Val=\"\""));
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      replaced(kCleanTexts, "Val=\"Video\"", "Val=\"-\""));
       },
       "/app/resource/language/German.xml:3: warning: MenuVideo: \"Val\" is empty, and has a text "
       "in "
       "/app/resource/language/English.xml at line 3 [translation-empty]\n"},
      {"translation-placeholders",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      replaced(kCleanTexts, "Val=\"Video\"", "Val=\"Video %d\""));
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      replaced(kCleanTexts, "Val=\"Video\"", "Val=\"100% Video\""));
       },
       "/app/resource/language/German.xml:3: warning: MenuVideo: \"Val\" has other placeholders "
       "than "
       "the text in /app/resource/language/English.xml at line 3 [translation-placeholders]\n"},
      {"language-not-offered",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.xml", kCleanTexts);
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.xml.old", kCleanTexts);
       },
       "/cfg0/business_param.xml:2: warning: System/Language: \"OptTxt\" does not list 'Dutch', "
       "which /app/resource/language/Dutch.xml has the texts of [language-not-offered]\n"},
      {"calls-itself", [](const DeviceRoot& device) { writeCaller(device, "192.0.2.7"); },
       [](const DeviceRoot& device) { writeCaller(device, "192.0.2.8"); },
       "/cfg0/mpp_cfg.xml:44: warning: <Instance> '1' calls the listener at line 39 "
       "[calls-itself]\n"},
      {"calls-itself", [](const DeviceRoot& device) { writeCaller(device, "localhost"); },
       [](const DeviceRoot& device) { writeCaller(device, "local"); },
       "/cfg0/mpp_cfg.xml:44: warning: <Instance> '1' calls the listener at line 39 "
       "[calls-itself]\n"},
      {"translation-missing",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/English.xml", withText("a", "a"));
         device.write("/app/resource/language/German.xml",
                      replaced(withText("b", "b"), "    <Text Val=\"b\"/>\n", ""));
       },
       [](const DeviceRoot& device) { writeTexts(device, "a", "b"); },
       "/app/resource/language/German.xml:4: warning: Text has no text here; it has one in "
       "/app/resource/language/English.xml at line 5 [translation-missing]\n"},
      {"translation-placeholders",
       [](const DeviceRoot& device) { writeTexts(device, "%d of %s", "%s hat %d"); },
       [](const DeviceRoot& device) { writeTexts(device, "%1$d of %2$s", "%2$s hat %1$d"); },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" has other placeholders than "
       "the text in /app/resource/language/English.xml at line 5 [translation-placeholders]\n"},
      {"translation-placeholders",
       [](const DeviceRoot& device) { writeTexts(device, "%d %% done", "%d % fertig"); },
       [](const DeviceRoot& device) { writeTexts(device, "100 % done", "100% fertig"); },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" has other placeholders than "
       "the text in /app/resource/language/English.xml at line 5 [translation-placeholders]\n"},
      {"translation-space", [](const DeviceRoot& device) { writeTexts(device, "Delete", "Weg "); },
       [](const DeviceRoot& device) { writeTexts(device, "Delete", "Weg"); },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" has a space at an end of the "
       "text, otherwise than in "
       "/app/resource/language/English.xml at line 5 [translation-space]\n"},
      {"translation-escaped",
       [](const DeviceRoot& device) {
         writeTexts(device, "Save &amp; go", "Sichern &amp;amp; los");
       },
       [](const DeviceRoot& device) { writeTexts(device, "Save &amp; go", "Sichern &amp; los"); },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" has an entity in what people "
       "see, otherwise than in "
       "/app/resource/language/English.xml at line 5 [translation-escaped]\n"},
      {"translation-todo",
       [](const DeviceRoot& device) { writeTexts(device, "All of it was saved.", "TODO"); },
       [](const DeviceRoot& device) {
         writeTexts(device, "All of it was saved.", "TODO GUARDADO");
       },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" 'TODO' is no translation of "
       "the text in "
       "/app/resource/language/English.xml at line 5 [translation-todo]\n"},
      {"translation-same",
       [](const DeviceRoot& device) {
         writeTexts(device, "All of it was saved.", "All of it was saved.");
       },
       [](const DeviceRoot& device) {
         writeTexts(device, "All of it was saved.", "Alles wurde gesichert.");
       },
       "/app/resource/language/German.xml:5: warning: Text: \"Val\" is not translated: it is that "
       "in "
       "/app/resource/language/English.xml at line 5 [translation-same]\n"},
      {"text-missing",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      "<Texts><MenuLive/><MenuVideo Val=\"Video\"/></Texts>");
       },
       [](const DeviceRoot& device) { device.write("/app/resource/language/README", "no XML"); },
       "/app/resource/language/German.xml:1: warning: MenuLive has no \"Val\" [text-missing]\n"},
      {"main-missing", [](const DeviceRoot& device) { device.remove(kMain); },
       [](const DeviceRoot& device) { device.remove("/app/resource/defcfg/mpp_cfg.xml.bak"); },
       "/cfg0/mpp_cfg.xml:1: error: the main copy is missing; another copy exists "
       "[main-missing]\n"},
      {"backup-missing", [](const DeviceRoot& device) { device.remove(kBackup); },
       [](const DeviceRoot& device) { device.write("/cfg0/notes.txt", ""); },
       "/cfg0/mpp_cfg.xml:1: warning: there is no backup /cfg1/mpp_cfg.xml [backup-missing]\n"},
      {"backup-damaged", [](const DeviceRoot& device) { device.write(kBackup, "<Stream>"); },
       [](const DeviceRoot& device) {
         device.write("/app/resource/defcfg/mpp_cfg.xml", "<Stream/>");
       },
       "/cfg0/mpp_cfg.xml:1: warning: its backup /cfg1/mpp_cfg.xml is not well-formed XML "
       "[backup-damaged]\n"},
      {"copies-differ",
       [](const DeviceRoot& device) {
         device.write(kBackup, replaced(kCleanMedia, "Port=\"9000\"", "Port=\"9001\""));
       },
       [](const DeviceRoot& device) {
         device.write(kBackup, replaced(kCleanMedia, "Port=\"9000\"", "Port='9000'"));
       },
       "/cfg0/mpp_cfg.xml:39: warning: its backup /cfg1/mpp_cfg.xml differs from here on "
       "[copies-differ]\n"},
      {"copies-differ",
       [](const DeviceRoot& device) {
         device.write(kBackup, replaced(kCleanMedia, "</RTSP>", "<MediaGroup Name=\"a\"/></RTSP>"));
       },
       [](const DeviceRoot& device) {
         device.write(kBackup, replaced(kCleanMedia, "</RTSP>", "\n</RTSP>"));
       },
       "/cfg0/mpp_cfg.xml:21: warning: its backup /cfg1/mpp_cfg.xml differs from here on "
       "[copies-differ]\n"},
      {"cut-short",
       [](const DeviceRoot& device) {
         device.write("/cfg1/preset_cfg.xml", std::string(kCleanPresets) + "<More/>\n");
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/defcfg/preset_cfg.xml",
                      std::string(kCleanPresets) + "<More/>\n");
       },
       "/cfg0/preset_cfg.xml:1: error: it ends before 'More', which its backup has [cut-short]\n"},
      {"factory-missing",
       [](const DeviceRoot& device) {
         for (const char* name : {"mpp_cfg", "preset_cfg", "business_param"})
           device.remove(std::string("/app/resource/defcfg/") + name + ".xml");
       },
       [](const DeviceRoot& device) { device.remove("/app/resource/language/Dutch.xml"); },
       "/app/resource/defcfg/business_param.xml:1: warning: there is no factory copy "
       "[factory-missing]\n"
       "/app/resource/defcfg/mpp_cfg.xml:1: warning: there is no factory copy [factory-missing]\n"
       "/app/resource/defcfg/preset_cfg.xml:1: warning: there is no factory copy "
       "[factory-missing]\n"},
      {"factory-damaged",
       [](const DeviceRoot& device) {
         device.write("/app/resource/defcfg/mpp_cfg.xml", "<Stream>");
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/defcfg/mpp_cfg.xml", "<Stream/>");
       },
       "/app/resource/defcfg/mpp_cfg.xml:1: warning: the factory copy is not well-formed XML "
       "[factory-damaged]\n"},
      {"copies-are-one",
       [](const DeviceRoot& device) {
         device.remove(kBackup);
         symlink("../cfg0/mpp_cfg.xml", (device.hostPath() + kBackup).c_str());
       },
       [](const DeviceRoot& device) {
         symlink("mpp_cfg.xml", (device.hostPath() + "/cfg0/mpp_cfg.old").c_str());
       },
       "/cfg0/mpp_cfg.xml:1: warning: it is the same file as /cfg1/mpp_cfg.xml "
       "[copies-are-one]\n"},
      {"copies-are-one",
       [](const DeviceRoot& device) {
         device.remove(kBackup);
         link((device.hostPath() + "/app/resource/defcfg/mpp_cfg.xml").c_str(),
              (device.hostPath() + kBackup).c_str());
       },
       [](const DeviceRoot& device) {
         link((device.hostPath() + "/cfg1/mpp_cfg.xml").c_str(),
              (device.hostPath() + "/cfg1/mpp_cfg.kept").c_str());
       },
       "/cfg1/mpp_cfg.xml:1: warning: it is the same file as /app/resource/defcfg/mpp_cfg.xml "
       "[copies-are-one]\n"},
      {"copy-of-another",
       [](const DeviceRoot& device) {
         device.remove("/cfg1/preset_cfg.xml");
         device.write("/cfg0/copied.xml", kCleanPresets);
         writeAll(device, "copied.xml", kCleanPresets);
         symlink("../cfg0/copied.xml", (device.hostPath() + "/cfg1/preset_cfg.xml").c_str());
       },
       [](const DeviceRoot& device) { writeAll(device, "copied.xml", kCleanPresets); },
       "/cfg0/copied.xml:1: error: it is the same file as /cfg1/preset_cfg.xml "
       "[copy-of-another]\n"
       "/cfg1/preset_cfg.xml:1: error: it is the same file as /cfg0/copied.xml "
       "[copy-of-another]\n"},
      {"not-checked-at-start",
       [](const DeviceRoot& device) {
         device.write("/cfg0/extra.xml", kCleanTexts);
         device.write("/cfg1/extra.xml", kCleanTexts);
       },
       [](const DeviceRoot& device) { writeAll(device, "extra.xml", kCleanTexts); },
       "/cfg0/extra.xml:1: warning: start-up verification does not check it: it is not in "
       "/app/resource/defcfg [not-checked-at-start]\n"},
      {"file-name-too-long",
       [](const DeviceRoot& device) {
         writeAll(device, std::string(52, 'n') + ".xml", kCleanTexts);
       },
       [](const DeviceRoot& device) {
         writeAll(device, std::string(51, 'n') + ".xml", kCleanTexts);
       },
       "/cfg0/" + std::string(52, 'n') +
           ".xml:1: error: its name has 56 bytes and is too long for the library to copy it "
           "[file-name-too-long]\n"},
  };
}

}  // namespace camcfg::tests
