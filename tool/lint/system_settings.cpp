#include <camcfg/params.h>

#include <algorithm>

#include "device/files.h"
#include "lint/elements.h"
#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kMissing{
    "system-missing", Severity::Warning,
    "A setting is missing that has calls of its own, which then fail or report the port 0.",
    "<System> without <Rtsp>"};
constexpr Rule kShadowed{"system-shadowed", Severity::Error,
                         "A setting is missing that has calls of its own, and they read and write "
                         "another one, since they look for the beginning of a name.",
                         "<System> with <WebHttps> but without <WebHttp>"};
constexpr Rule kLanguageMissing{
    "language-missing", Severity::Error, "There is no file of texts in the device's language.",
    R"(<Language Cur="Dutch" ...> without /app/resource/language/Dutch.xml)"};

constexpr char kSuffix[] = ".xml";
constexpr std::size_t kLongestLanguage =
    CFG_PATH_SIZE - 1 - (sizeof CFG_DIR_LANGUAGE - 1) - (sizeof kSuffix - 1);

struct Setting {
  const char* name;
  const char* reader;
  void (*check)(const XMLElement& element, const std::string& path, const Source& source,
                Findings& findings);
};

void checkPort(const XMLElement& element, const std::string& path, const Source& /*source*/,
               Findings& findings) {
  for (const char* attribute : {"Cur", "Def"}) {
    int port = 0;
    if (element.QueryIntAttribute(attribute, &port) == tinyxml2::XML_SUCCESS)
      requirePort(element, attribute, port, path, findings);
  }
}

void checkDevice(const XMLElement& element, const std::string& path, const Source& /*source*/,
                 Findings& findings) {
  const char* kAttributes[] = {"DeviceName", "DeviceModel"};
  checkAttributeCase(element, {std::begin(kAttributes), std::end(kAttributes)}, path, findings);
  for (const char* attribute : kAttributes) {
    requireAttribute(element, attribute, path, "CFG_SYSTEM_GetDeviceName needs", findings);
    requireFits(element, attribute, CFG_TXT_CUR_SIZE - 1, path, findings);
  }
}

void checkLanguage(const XMLElement& element, const std::string& path, const Source& source,
                   Findings& findings) {
  const std::string language = textOf(element, "Cur");
  requireFits(element, "Cur", kLongestLanguage, path, findings);
  if (source.copies == nullptr || language.empty()) return;
  const std::vector<std::string> files = device::filesIn(CFG_DIR_LANGUAGE);
  if (std::find(files.begin(), files.end(), language + kSuffix) == files.end())
    findings.add(kLanguageMissing, element, "Cur",
                 path + ": there is no " + CFG_DIR_LANGUAGE + clipped(language) + kSuffix);
}

constexpr Setting kSettings[] = {
    {"Language", "CFG_SYSTEM_GetLanguage", checkLanguage},
    {"DeviceAttr", "CFG_SYSTEM_GetDeviceName", checkDevice},
    {"WebHttp", "CFG_SYSTEM_GetHttpPort", checkPort},
    {"WebHttps", "CFG_SYSTEM_GetHttpPort", checkPort},
    {"Rtsp", "CFG_SYSTEM_GetRtspPort", checkPort},
    {"RtspOverHttp", "CFG_SYSTEM_GetRtspOverHttpPort", checkPort},
};

void tellMissing(const XMLElement& system, const Setting& setting, Findings& findings) {
  const std::string what = std::string("System has no <") + setting.name + ">";
  for (const XMLElement* element : childrenOf(system)) {
    if (!beginsWith(element->Name(), setting.name)) continue;
    findings.add(kShadowed, *element,
                 what + ", and " + setting.reader + " takes " + tag(element->Name()) + " for it");
    return;
  }
  findings.add(kMissing, system, what + ", which " + setting.reader + " reads");
}

void check(const Source& source, Findings& findings) {
  const XMLElement* system = childNamed(*source.document, "System");
  if (system == nullptr) return;
  for (const Setting& setting : kSettings) {
    const XMLElement* element = childNamed(*system, setting.name);
    if (element == nullptr)
      tellMissing(*system, setting, findings);
    else
      setting.check(*element, std::string("System/") + setting.name, source, findings);
  }
}

}  // namespace

Subject systemSettings() {
  return {"system settings", {&kMissing, &kShadowed, &kLanguageMissing}, Kind::Parameters, check};
}

}  // namespace camcfg::tool::lint
