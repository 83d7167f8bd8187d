#include <camcfg/params.h>

#include <algorithm>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

constexpr char kSuffix[] = ".xml";
constexpr std::size_t kLongestLanguage =
    CFG_PATH_SIZE - 1 - (sizeof CFG_DIR_LANGUAGE - 1) - (sizeof kSuffix - 1);

void checkPort(const Item& item, const Source& /*source*/) {
  for (const char* attribute : {"Cur", "Def"})
    if (const std::optional<int> port = settings::integerIn(item.element, attribute))
      item.requireWithin(settings::kPorts, attribute, *port);
  for (const char* attribute : {"Min", "Max"}) {
    const std::optional<int> limit = settings::integerIn(item.element, attribute);
    if (limit && !settings::kPorts.has(*limit))
      item.addOf(kPortLimits, attribute,
                 concat(" ", *limit, " lets calls set what is not a port (",
                        settings::kPorts.text(), ")"));
  }
}

void checkDevice(const Item& item, const Source& /*source*/) {
  item.checkCase({"DeviceName", "DeviceModel"});
  for (const char* attribute : {"DeviceName", "DeviceModel"}) {
    item.require({attribute, "CFG_SYSTEM_GetDeviceName needs"});
    item.requireFits(attribute, CFG_TXT_CUR_SIZE - 1);
  }
  item.checkName("DeviceName");
}

void checkLanguageSetting(const Item& item, const Source& /*source*/) {
  item.requireFits("Cur", kLongestLanguage);
}

// A setting that applications read by a call of its own.
struct Read {
  const char* name;
  const char* reader;
  void (*check)(const Item& item, const Source& source);
};

std::vector<Read> settingsRead() {
  std::vector<Read> all = {{"Language", "CFG_SYSTEM_GetLanguage", checkLanguageSetting},
                           {"DeviceAttr", "CFG_SYSTEM_GetDeviceName", checkDevice}};
  for (const settings::SystemPort& port : settings::systemPorts())
    all.push_back({port.parameter, port.reader, checkPort});
  return all;
}

bool isKnownSetting(std::string_view name) {
  const std::vector<Read> all = settingsRead();
  return std::any_of(all.begin(), all.end(), [&](const Read& read) { return name == read.name; });
}

void addMissing(const XMLElement& system, const Read& setting, Findings& findings) {
  const std::string what = concat("System has no <", setting.name, ">");
  for (const XMLElement* element : childrenOf(system))
    if (beginsWith(element->Name(), setting.name))
      return findings.add(
          kSystemShadowed, *element,
          concat(what, ", and ", setting.reader, " takes ", tag(element->Name()), " for it"));
  if (const XMLElement* near = nearChild(system, setting.name, isKnownSetting))
    return addNearName(*near, setting.name, findings);
  findings.add(kSystemMissing, system, concat(what, ", which ", setting.reader, " reads"));
}

}  // namespace

void checkSystemSettings(const Source& source, Findings& findings) {
  const XMLElement* system = source.document->FirstChildElement(settings::kSystemSection);
  if (system == nullptr) return;
  for (const Read& setting : settingsRead())
    if (const XMLElement* element = system->FirstChildElement(setting.name))
      setting.check(Item{*system, settings::kSystemSection, findings}.inner(*element), source);
    else
      addMissing(*system, setting, findings);
}

}  // namespace camcfg::tool::lint
