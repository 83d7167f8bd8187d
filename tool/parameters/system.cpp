#include "parameters/system.h"

#include <camcfg/params.h>

#include "device/files.h"
#include "settings/system.h"

namespace camcfg::tool::parameters {
namespace {

// Neither text need be there; the library writes no terminator after the language.
Json languageOrNull() {
  char language[CFG_TXT_CUR_SIZE + 1] = {};
  return CFG_SYSTEM_GetLanguage(language) == 0 ? Json(language) : Json();
}

}  // namespace

Json systemJson() {
  device::requireDocument(CFG_FILE_BUSINESS);
  char name[CFG_TXT_CUR_SIZE] = {};
  char model[CFG_TXT_CUR_SIZE] = {};
  const bool named = CFG_SYSTEM_GetDeviceName(name, model) == 0;
  Json system = {{"name", named ? Json(name) : Json()},
                 {"model", named ? Json(model) : Json()},
                 {"language", languageOrNull()}};
  for (const settings::SystemPort& port : settings::systemPorts())
    system["ports"][port.member] = port.read();
  return system;
}

}  // namespace camcfg::tool::parameters
