#include "tool/lint/device_cases.h"

#include <sys/stat.h>
#include <unistd.h>

#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using testkit::DeviceRoot;

constexpr char kMain[] = "/cfg0/mpp_cfg.xml";
constexpr char kBackup[] = "/cfg1/mpp_cfg.xml";

std::string with(std::string text, const std::string& part, const std::string& other) {
  return text.replace(text.find(part), part.size(), other);
}

void writeAll(const DeviceRoot& device, const std::string& name, const std::string& contents) {
  for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"})
    device.write(directory + name, contents);
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
         device.write("/app/resource/language/Dutch.xml", kCleanTexts);
       },
       "/cfg0/business_param.xml:2: error: System/Language: there is no "
       "/app/resource/language/English.xml [language-missing]\n"},
      {"language-option-missing",
       [](const DeviceRoot& device) { device.remove("/app/resource/language/German.xml"); },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.xml", kCleanTexts);
       },
       "/cfg0/business_param.xml:2: warning: System/Language: there is no "
       "/app/resource/language/German.xml [language-option-missing]\n"},
      {"port-of-two-services",
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", with(kCleanMedia, "Port=\"9000\"", "Port=\"554\""));
       },
       [](const DeviceRoot& device) {
         writeAll(device, "mpp_cfg.xml", with(kCleanMedia, "Port=\"9000\"", "Port=\"555\""));
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
                      with(kCleanTexts, "Val=\"Video\"", "Val=\"\""));
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      with(kCleanTexts, "Val=\"Video\"", "Val=\"-\""));
       },
       "/app/resource/language/German.xml:3: warning: MenuVideo: \"Val\" is empty, and has a text "
       "in "
       "/app/resource/language/English.xml at line 3 [translation-empty]\n"},
      {"translation-placeholders",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      with(kCleanTexts, "Val=\"Video\"", "Val=\"Video %d\""));
       },
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/German.xml",
                      with(kCleanTexts, "Val=\"Video\"", "Val=\"100% Video\""));
       },
       "/app/resource/language/German.xml:3: warning: MenuVideo: \"Val\" has other placeholders "
       "than "
       "the text in /app/resource/language/English.xml at line 3 [translation-placeholders]\n"},
      {"text-missing",
       [](const DeviceRoot& device) {
         device.write("/app/resource/language/Dutch.xml",
                      "<Texts><MenuLive/><MenuVideo Val=\"Video\"/></Texts>");
       },
       [](const DeviceRoot& device) { device.write("/app/resource/language/README", "no XML"); },
       "/app/resource/language/Dutch.xml:1: warning: MenuLive has no \"Val\" [text-missing]\n"},
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
         device.write(kBackup, with(kCleanMedia, "Port=\"9000\"", "Port=\"9001\""));
       },
       [](const DeviceRoot& device) {
         device.write(kBackup, with(kCleanMedia, "Port=\"9000\"", "Port='9000'"));
       },
       "/cfg0/mpp_cfg.xml:39: warning: its backup /cfg1/mpp_cfg.xml differs from here on "
       "[copies-differ]\n"},
      {"copies-differ",
       [](const DeviceRoot& device) {
         device.write(kBackup, with(kCleanMedia, "</RTSP>", "<MediaGroup Name=\"a\"/></RTSP>"));
       },
       [](const DeviceRoot& device) {
         device.write(kBackup, with(kCleanMedia, "</RTSP>", "\n</RTSP>"));
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
