#include "torture/exhaustion/operations.h"

#include <cxxabi.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <set>

#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "torture/exhaustion/allocations.h"

namespace camcfg::torture {
namespace {

constexpr char kBusiness[] = "business_param.xml";
constexpr char kPreset[] = "preset_cfg.xml";
constexpr char kLanguage[] = "/app/resource/language/English.xml";

constexpr int kOtherContents = 1;  // neither of the results

char* text(const char* literal) {
  return const_cast<char*>(literal);
}

// One object of its type for all operations to fill.
template <typename Record>
Record* out() {
  static Record record;
  return &record;
}

// A document counts as loaded only if it is what the first one was.
int resultOf(const tinyxml2::XMLDocument* document) {
  if (document == nullptr) return -1;
  const PlentyOfMemory plenty;
  tinyxml2::XMLPrinter printer;
  document->Print(&printer);
  delete document;
  static const std::string first = printer.CStr();
  return first == printer.CStr() ? 0 : kOtherContents;
}

std::vector<Operation> storeOperations() {
  return {
      {"CFG_GetDocByFileName (read)", kBusiness,
       [] { return resultOf(CFG_GetDocByFileName(text(CFG_FILE_BUSINESS), BU_TRUE)); }},
      {"CFG_GetDocByFileName (write)", kBusiness,
       [] { return resultOf(CFG_GetDocByFileName(text(CFG_FILE_BUSINESS), BU_FALSE)); }, 0, -1,
       false, Either::Never, true},
      {"CFG_SaveFile", "other.xml",
       [] {
         std::optional<PlentyOfMemory> plenty(std::in_place);
         tinyxml2::XMLDocument document;
         document.Parse("<A Cur='1'/>");
         cfgLockFile("/cfg0/other.xml");
         plenty.reset();
         return CFG_SaveFile(&document, text("/cfg0/other.xml"), BU_TRUE);
       },
       0, -1, true},
      {"cfgSyncCfgFile", kBusiness,
       [] { return cfgSyncCfgFile(CFG_FILE_BUSINESS, "/cfg1/business_param.xml"); }, 0, 256, true,
       Either::AfterFirstLoad},
      {"cfgQueryFileNum", "",
       [] {
         int count = 0;
         return cfgQueryFileNum(text(CFG_DIR_DEFAULT), &count);
       },
       0, -1, false, Either::AfterFirstLoad},
      {"CFG_VerifyFileFormat", kBusiness, CFG_VerifyFileFormat, 0, -1, true, Either::Always},
  };
}

std::vector<Operation> readingParameters() {
  return {
      {"CFG_COM_GetTxtParam", kBusiness,
       [] { return CFG_COM_GetTxtParam(text("System"), text("Language"), *out<char[256]>()); }},
      {"CFG_COM_GetIntParam", kBusiness,
       [] { return CFG_COM_GetIntParam(text("System"), text("Rtsp"), out<int>()); }},
      {"CFG_COM_GetTxtParams", kBusiness,
       [] { return CFG_COM_GetTxtParams(text("Ch1Input"), out<tagCFG_VALUE_TXT_S>()); }},
      {"CFG_COM_GetIntParams", kBusiness,
       [] { return CFG_COM_GetIntParams(text("Ch1MainGop"), out<tagCFG_VALUE_INT_S>()); }},
      {"CFG_COM_GetTxtParamByParent", kBusiness,
       [] {
         return CFG_COM_GetTxtParamByParent(text("OsdClock"), text("Format"),
                                            out<tagCFG_VALUE_TXT_S>());
       }},
      {"CFG_SYSTEM_GetLanguage", kBusiness,
       [] { return CFG_SYSTEM_GetLanguage(*out<char[256]>()); }},
      {"CFG_SYSTEM_GetDeviceName", kBusiness,
       [] { return CFG_SYSTEM_GetDeviceName(*out<char[256]>(), nullptr); }},
      {"CFG_SYSTEM_GetHttpPort", kBusiness,
       [] { return CFG_SYSTEM_GetHttpPort(out<int>(), out<int>()); }, 0, -1, false,
       Either::AfterFirstLoad},
      {"CFG_SYSTEM_GetRtspPort", kBusiness, CFG_SYSTEM_GetRtspPort, 554, 0},
      {"CFG_SYSTEM_GetRtspOverHttpPort", kBusiness, CFG_SYSTEM_GetRtspOverHttpPort, 8080, 0},
      {"CFG_LANG_GetString", kLanguage,
       [] { return CFG_LANG_GetString(text("English"), text("MenuLive"), *out<char[1024]>()); }},
  };
}

std::vector<Operation> settingParameters() {
  return {
      {"CFG_COM_SetTxtParam", kBusiness,
       [] { return CFG_COM_SetTxtParam(text("System"), text("Language"), text("German")); }, 0, -1,
       true},
      {"CFG_COM_SetIntParam", kBusiness,
       [] { return CFG_COM_SetIntParam(text("System"), text("Rtsp"), 8554); }, 0, -1, true},
      {"CFG_COM_SetTxtParams", kBusiness,
       [] { return CFG_COM_SetTxtParams(text("Ch1Input"), text("SDI"), BU_TRUE); }, 0, -1, true},
      {"CFG_COM_SetIntParams", kBusiness,
       [] { return CFG_COM_SetIntParams(text("Ch1MainGop"), 7, BU_TRUE); }, 0, -1, true},
      {"CFG_SYSTEM_SetHttpPort", kBusiness, [] { return CFG_SYSTEM_SetHttpPort(81, 444); }, 0, -1,
       true, Either::AfterFirstLoad},
      {"CFG_SYSTEM_SetRtspPort", kBusiness, [] { return CFG_SYSTEM_SetRtspPort(8554); }, 0, -1,
       true},
      {"CFG_SYSTEM_SetRtspOverHttpPort", kBusiness,
       [] { return CFG_SYSTEM_SetRtspOverHttpPort(8081); }, 0, -1, true},
  };
}

std::vector<Operation> presetOperations() {
  return {
      {"cfgGetPresetCfgNode", kPreset,
       [] {
         tinyxml2::XMLDocument* document = nullptr;
         const bool found = cfgGetPresetCfgNode(&document, BU_TRUE) != nullptr;
         delete document;
         return found ? 0 : -1;
       }},
      {"CFG_PRESET_SetParam", kPreset,
       [] {
         tagPRESET_CFG_S preset{3, 1, 2, 3, 4, 5, "Lectern"};
         return CFG_PRESET_SetParam(&preset);
       },
       0, -1, true},
      {"CFG_PRESET_DeleteById", kPreset, [] { return CFG_PRESET_DeleteById(2); }, 0, -1, true},
      {"CFG_PRESET_DeleteById (unknown)", kPreset, [] { return CFG_PRESET_DeleteById(77); }, 0, -1,
       false, Either::Never, true},
      {"CFG_PRESET_DeleteByDesc", kPreset, [] { return CFG_PRESET_DeleteByDesc("Lectern"); }, 0, -1,
       true},
      {"CFG_PRESET_QueryOneById", kPreset,
       [] { return CFG_PRESET_QueryOneById(1, out<tagPRESET_CFG_S>()); }},
      {"CFG_PRESET_QueryOneByDesc", kPreset,
       [] { return CFG_PRESET_QueryOneByDesc("Wide", out<tagPRESET_CFG_S>()); }},
      {"CFG_PRESET_GetCountNum", kPreset, [] { return CFG_PRESET_GetCountNum(out<int>()); }},
      {"CFG_PRESET_GetUnusedId", kPreset, [] { return CFG_PRESET_GetUnusedId(out<int>()); }},
  };
}

// A record that was not filled is all zero.
template <void (*Get)(char*, tagNETWORK_CFG_S*)>
int readCard() {
  tagNETWORK_CFG_S settings{};
  Get(text("Lan0"), &settings);
  return settings.s32MTU == 0 ? -1 : 0;
}

int readHostname() {
  char name[32] = {};
  CFG_NETWORK_GetHostname(name, sizeof name);
  return name[0] == '\0' ? -1 : 0;
}

void getCurrent(char* card, tagNETWORK_CFG_S* settings) {
  cfgNetworkGetParam(text("Cur"), card, settings);
}

std::vector<Operation> readingNetwork() {
  return {
      {"cfgNetworkGetParam", kBusiness, readCard<getCurrent>},
      {"CFG_NETWORK_GetAllParamCur", kBusiness, readCard<CFG_NETWORK_GetAllParamCur>},
      {"CFG_NETWORK_GetAllParamDef", kBusiness, readCard<CFG_NETWORK_GetAllParamDef>},
      {"CFG_NETWORK_GetHostname", kBusiness, readHostname},
      {"CFG_NETWORK_GetCards", kBusiness,
       [] { return CFG_NETWORK_GetCards(out<tagNETWORK_CARDS_S>()); }},
      {"CFG_NETWORK_GetCardIntf", kBusiness,
       [] { return CFG_NETWORK_GetCardIntf(text("Lan0"), out<tagNETWORK_CFG_S>()); }, 0, -1, false,
       Either::AfterFirstLoad},
  };
}

// Setters of the network return nothing: what became of them shows in the files.
Operation networkSetter(const char* name, int (*run)()) {
  return {name, kBusiness, run, 0, 0, true};
}

tagNETWORK_CFG_S otherSettings() {
  tagNETWORK_CFG_S settings{};
  settings.s32MTU = 1400;
  std::strcpy(settings.acIntf, "eth1");
  return settings;
}

#define CAMCFG_NETWORK_SETTER(function, ...) \
  networkSetter(#function, [] {              \
    function(__VA_ARGS__);                   \
    return 0;                                \
  })

std::vector<Operation> settingNetwork() {
  return {
      CAMCFG_NETWORK_SETTER(cfgNetworkSetAllParam, text("Lan0"), otherSettings()),
      CAMCFG_NETWORK_SETTER(cfgNetworkSetSingleParam, text("MTU"), text("Lan0"), otherSettings()),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetAllParam, text("Lan0"), otherSettings()),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetNetMode, text("Lan0"), BU_FALSE),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetLinkAutoneg, text("Lan0"), BU_FALSE),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetLinkDuplex, text("Lan0"), LINK_DUPLEX_HALF),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetLinkSpeed, text("Lan0"), LINK_SPEED_100M),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetLinkMTU, text("Lan0"), 1400),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetIpMode, text("Lan0"), IP_MODE_STATIC),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetIpAddr, text("Lan0"), text("192.0.2.1")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetNetMask, text("Lan0"), text("255.0.0.0")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetGateWay, text("Lan0"), text("192.0.2.2")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetDnsMode, text("Lan0"), DNS_MODE_MANUAL),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetDns1, text("Lan0"), text("192.0.2.3")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetDns2, text("Lan0"), text("192.0.2.4")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetDnsSearch, text("Lan0"), text("example")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_CacheDnsFromDhcp, text("Lan0"), text("192.0.2.5"),
                            text("192.0.2.6")),
      CAMCFG_NETWORK_SETTER(CFG_NETWORK_SetHostname, text("gate")),
  };
}

#undef CAMCFG_NETWORK_SETTER

std::string demangled(const std::string& symbol) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
  const std::string whole = name == nullptr ? symbol : name.get();
  return whole.substr(0, whole.find_first_of("(["));
}

std::set<std::string> namesKnown() {
  // These work only on locks, elements or words.
  std::set<std::string> names = {"cfgGetLockByFile",
                                 "cfgLockFile",
                                 "cfgUnlockFile",
                                 "CFG_UnlockFile",
                                 "CFG_GetElementByName",
                                 "CFG_GetElementByUsage",
                                 "CFG_GetElementByNameId",
                                 "CFG_GetBrotherElementByName",
                                 "CFG_GetElementByNameRecursion",
                                 "CFG_NETWORK_IntfEthName2XmlStr",
                                 "CFG_NETWORK_IntfXmlStr2EthName"};
  for (const Operation& operation : operations())
    names.insert(operation.name.substr(0, operation.name.find(' ')));
  return names;
}

}  // namespace

std::vector<Operation> operations() {
  std::vector<Operation> all = storeOperations();
  for (const auto& more : {readingParameters(), settingParameters(), presetOperations(),
                           readingNetwork(), settingNetwork(), mediaOperations()})
    all.insert(all.end(), more.begin(), more.end());
  return all;
}

std::vector<std::string> functionsLeftOut(const std::string& symbols) {
  const std::set<std::string> known = namesKnown();
  std::vector<std::string> missing;
  std::ifstream file(symbols);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    const std::string name = demangled(line.substr(0, line.find(' ')));
    const bool isFunction = name.rfind("g_", 0) != 0;
    if (isFunction && known.count(name) == 0) missing.push_back(name);
  }
  return missing;
}

}  // namespace camcfg::torture
