#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "camcfg/livemedia.h"
#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"

namespace {

using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

// What a header declares, and the name under which programs built long ago look for it.
struct Export {
  template <typename Declared>
  Export(const char* symbolName, Declared* declared)
      : symbol(symbolName), address(reinterpret_cast<const void*>(declared)) {}

  const char* symbol;
  const void* address;
};

const Export kExports[] = {
    {"_Z11cfgLockFilePKc", &cfgLockFile},
    {"_Z12CFG_SaveFilePN8tinyxml211XMLDocumentEPc10tagBU_BOOL", &CFG_SaveFile},
    {"_Z13cfgUnlockFilePKc", &cfgUnlockFile},
    {"_Z13g_mapFileLockB5cxx11", &g_mapFileLock},
    {"_Z14CFG_UnlockFilePc", &CFG_UnlockFile},
    {"_Z14cfgSyncCfgFilePKcS0_", &cfgSyncCfgFile},
    {"_Z15cfgQueryFileNumPcPi", &cfgQueryFileNum},
    {"_Z16cfgGetLockByFilePKc", &cfgGetLockByFile},
    {"_Z20CFG_GetDocByFileNamePc10tagBU_BOOL", &CFG_GetDocByFileName},
    {"_Z20CFG_GetElementByNamePN8tinyxml210XMLElementEPKc", &CFG_GetElementByName},
    {"_Z20CFG_VerifyFileFormatv", &CFG_VerifyFileFormat},
    {"_Z21CFG_GetElementByUsagePN8tinyxml210XMLElementEPKcPc", &CFG_GetElementByUsage},
    {"_Z22CFG_GetElementByNameIdPN8tinyxml210XMLElementEPKci", &CFG_GetElementByNameId},
    {"_Z27CFG_GetBrotherElementByNamePN8tinyxml210XMLElementEPKc", &CFG_GetBrotherElementByName},
    {"_Z29CFG_GetElementByNameRecursionPN8tinyxml210XMLElementEPKc",
     &CFG_GetElementByNameRecursion},
    {"g_lockMapFileLock", &g_lockMapFileLock},
    {"CFG_COM_GetIntParam", &CFG_COM_GetIntParam},
    {"CFG_COM_GetIntParams", &CFG_COM_GetIntParams},
    {"CFG_COM_GetTxtParam", &CFG_COM_GetTxtParam},
    {"CFG_COM_GetTxtParams", &CFG_COM_GetTxtParams},
    {"CFG_COM_SetTxtParam", &CFG_COM_SetTxtParam},
    {"_Z18CFG_LANG_GetStringPcS_S_", &CFG_LANG_GetString},
    {"_Z19CFG_COM_SetIntParamPcS_i", &CFG_COM_SetIntParam},
    {"_Z20CFG_COM_SetIntParamsPci10tagBU_BOOL", &CFG_COM_SetIntParams},
    {"_Z20CFG_COM_SetTxtParamsPcS_10tagBU_BOOL", &CFG_COM_SetTxtParams},
    {"_Z22CFG_SYSTEM_GetHttpPortPiS_", &CFG_SYSTEM_GetHttpPort},
    {"_Z22CFG_SYSTEM_GetLanguagePc", &CFG_SYSTEM_GetLanguage},
    {"_Z22CFG_SYSTEM_GetRtspPortv", &CFG_SYSTEM_GetRtspPort},
    {"_Z22CFG_SYSTEM_SetHttpPortii", &CFG_SYSTEM_SetHttpPort},
    {"_Z22CFG_SYSTEM_SetRtspPorti", &CFG_SYSTEM_SetRtspPort},
    {"_Z24CFG_SYSTEM_GetDeviceNamePcS_", &CFG_SYSTEM_GetDeviceName},
    {"_Z27CFG_COM_GetTxtParamByParentPcS_P18tagCFG_VALUE_TXT_S", &CFG_COM_GetTxtParamByParent},
    {"_Z30CFG_SYSTEM_GetRtspOverHttpPortv", &CFG_SYSTEM_GetRtspOverHttpPort},
    {"_Z30CFG_SYSTEM_SetRtspOverHttpPorti", &CFG_SYSTEM_SetRtspOverHttpPort},
    {"_Z12CFG_MPP_OpenPKc10tagBU_BOOL", &CFG_MPP_Open},
    {"_Z17CFG_MPP_CloseReadv", &CFG_MPP_CloseRead},
    {"_Z18CFG_MPP_CloseWritev", &CFG_MPP_CloseWrite},
    {"_Z29CFG_MPP_DumpStreamCacheConfigRKNSt7__cxx114listISt10shared_ptrI22tag_CFG_STREAM_CACHE_"
     "TESaIS3_EEE",
     &CFG_MPP_DumpStreamCacheConfig},
    {"_Z29CFG_MPP_LoadStreamCacheConfigRNSt7__cxx114listISt10shared_ptrI22tag_CFG_STREAM_CACHE_"
     "TESaIS3_EEE",
     &CFG_MPP_LoadStreamCacheConfig},
    {"_Z30CFG_MPP_DumpStreamSourceConfigRKNSt7__cxx114listISt10shared_ptrI23tag_CFG_STREAM_SOURCE_"
     "TESaIS3_EEE",
     &CFG_MPP_DumpStreamSourceConfig},
    {"_Z30CFG_MPP_LoadStreamSourceConfigRNSt7__cxx114listISt10shared_ptrI23tag_CFG_STREAM_SOURCE_"
     "TESaIS3_EEE",
     &CFG_MPP_LoadStreamSourceConfig},
    {"_Z44CFG_MPP_UpdateStreamCacheAllowedStreamSourceSt10shared_ptrI22tag_CFG_STREAM_CACHE_TE",
     &CFG_MPP_UpdateStreamCacheAllowedStreamSource},
    {"_Z44CFG_MPP_UpdateStreamCacheEnabledStreamSourceii",
     &CFG_MPP_UpdateStreamCacheEnabledStreamSource},
    {"g_STREAM_xmlDoc", &g_STREAM_xmlDoc},
    {"_Z11CFG_LM_OpenPKc10tagBU_BOOL", &CFG_LM_Open},
    {"_Z16CFG_LM_CloseReadv", &CFG_LM_CloseRead},
    {"_Z17CFG_LM_CloseWritev", &CFG_LM_CloseWrite},
    {"_Z20CFG_LM_DumpNdiConfigRKNSt7__cxx114listI21tag_CFG_NDI_SESSION_TSaIS1_EEE",
     &CFG_LM_DumpNdiConfig},
    {"_Z20CFG_LM_DumpSrtConfigRKNSt7__cxx114listI22tag_CFG_SRT_INSTANCE_TSaIS1_EEE",
     &CFG_LM_DumpSrtConfig},
    {"_Z20CFG_LM_LoadNdiConfigRNSt7__cxx114listI21tag_CFG_NDI_SESSION_TSaIS1_EEE",
     &CFG_LM_LoadNdiConfig},
    {"_Z20CFG_LM_LoadSrtConfigRNSt7__cxx114listI22tag_CFG_SRT_INSTANCE_TSaIS1_EEE",
     &CFG_LM_LoadSrtConfig},
    {"_Z21CFG_LM_DumpRtmpConfigRKNSt7__cxx114listI22tag_CFG_RTMP_SESSION_TSaIS1_EEE",
     &CFG_LM_DumpRtmpConfig},
    {"_Z21CFG_LM_DumpRtspConfigRKNSt7__cxx114listISt10shared_ptrI22tag_CFG_RTSP_SESSION_TESaIS3_"
     "EEE",
     &CFG_LM_DumpRtspConfig},
    {"_Z21CFG_LM_LoadRtmpConfigRNSt7__cxx114listI22tag_CFG_RTMP_SESSION_TSaIS1_EEE",
     &CFG_LM_LoadRtmpConfig},
    {"_Z21CFG_LM_LoadRtspConfigRNSt7__cxx114listISt10shared_ptrI22tag_CFG_RTSP_SESSION_TESaIS3_EEE",
     &CFG_LM_LoadRtspConfig},
    {"_Z26CFG_LM_DumpWebsocketConfigRKNSt7__cxx114listI27tag_CFG_WEBSOCKET_SESSION_TSaIS1_EEE",
     &CFG_LM_DumpWebsocketConfig},
    {"_Z26CFG_LM_LoadWebsocketConfigRNSt7__cxx114listI27tag_CFG_WEBSOCKET_SESSION_TSaIS1_EEE",
     &CFG_LM_LoadWebsocketConfig},
    {"g_LM_xmlDoc", &g_LM_xmlDoc},
    {"_Z19CFG_PRESET_SetParamP15tagPRESET_CFG_S", &CFG_PRESET_SetParam},
    {"_Z19cfgGetPresetCfgNodePPN8tinyxml211XMLDocumentE10tagBU_BOOL", &cfgGetPresetCfgNode},
    {"_Z21CFG_PRESET_DeleteByIdi", &CFG_PRESET_DeleteById},
    {"_Z22CFG_PRESET_GetCountNumPi", &CFG_PRESET_GetCountNum},
    {"_Z22CFG_PRESET_GetUnusedIdPi", &CFG_PRESET_GetUnusedId},
    {"_Z23CFG_PRESET_DeleteByDescPKc", &CFG_PRESET_DeleteByDesc},
    {"_Z23CFG_PRESET_QueryOneByIdiP15tagPRESET_CFG_S", &CFG_PRESET_QueryOneById},
    {"_Z25CFG_PRESET_QueryOneByDescPKcP15tagPRESET_CFG_S", &CFG_PRESET_QueryOneByDesc},
    {"CFG_NETWORK_GetAllParamCur", &CFG_NETWORK_GetAllParamCur},
    {"_Z18cfgNetworkGetParamPcS_P16tagNETWORK_CFG_S", &cfgNetworkGetParam},
    {"_Z19CFG_NETWORK_SetDns1PcS_", &CFG_NETWORK_SetDns1},
    {"_Z19CFG_NETWORK_SetDns2PcS_", &CFG_NETWORK_SetDns2},
    {"_Z20CFG_NETWORK_GetCardsP18tagNETWORK_CARDS_S", &CFG_NETWORK_GetCards},
    {"_Z21CFG_NETWORK_SetIpAddrPcS_", &CFG_NETWORK_SetIpAddr},
    {"_Z21CFG_NETWORK_SetIpModePc12tagIP_MODE_E", &CFG_NETWORK_SetIpMode},
    {"_Z21cfgNetworkSetAllParamPc16tagNETWORK_CFG_S", &cfgNetworkSetAllParam},
    {"_Z22CFG_NETWORK_SetDnsModePc13tagDNS_MODE_E", &CFG_NETWORK_SetDnsMode},
    {"_Z22CFG_NETWORK_SetGateWayPcS_", &CFG_NETWORK_SetGateWay},
    {"_Z22CFG_NETWORK_SetLinkMTUPci", &CFG_NETWORK_SetLinkMTU},
    {"_Z22CFG_NETWORK_SetNetMaskPcS_", &CFG_NETWORK_SetNetMask},
    {"_Z22CFG_NETWORK_SetNetModePc10tagBU_BOOL", &CFG_NETWORK_SetNetMode},
    {"_Z23CFG_NETWORK_GetCardIntfPcP16tagNETWORK_CFG_S", &CFG_NETWORK_GetCardIntf},
    {"_Z23CFG_NETWORK_GetHostnamePci", &CFG_NETWORK_GetHostname},
    {"_Z23CFG_NETWORK_SetAllParamPc16tagNETWORK_CFG_S", &CFG_NETWORK_SetAllParam},
    {"_Z23CFG_NETWORK_SetHostnamePc", &CFG_NETWORK_SetHostname},
    {"_Z24CFG_NETWORK_SetDnsSearchPcS_", &CFG_NETWORK_SetDnsSearch},
    {"_Z24CFG_NETWORK_SetLinkSpeedPc15tagLINK_SPEED_E", &CFG_NETWORK_SetLinkSpeed},
    {"_Z24cfgNetworkSetSingleParamPcS_16tagNETWORK_CFG_S", &cfgNetworkSetSingleParam},
    {"_Z25CFG_NETWORK_SetLinkDuplexPc11tagDUPLEX_E", &CFG_NETWORK_SetLinkDuplex},
    {"_Z26CFG_NETWORK_GetAllParamDefPcP16tagNETWORK_CFG_S", &CFG_NETWORK_GetAllParamDef},
    {"_Z26CFG_NETWORK_SetLinkAutonegPc10tagBU_BOOL", &CFG_NETWORK_SetLinkAutoneg},
    {"_Z28CFG_NETWORK_CacheDnsFromDhcpPcS_S_", &CFG_NETWORK_CacheDnsFromDhcp},
    {"_Z30CFG_NETWORK_IntfEthName2XmlStrPKc", &CFG_NETWORK_IntfEthName2XmlStr},
    {"_Z30CFG_NETWORK_IntfXmlStr2EthNamePKc", &CFG_NETWORK_IntfXmlStr2EthName},
};

std::vector<std::string> listedSymbols() {
  std::vector<std::string> symbols;
  std::ifstream list(CAMCFG_SYMBOLS_FILE);
  for (std::string line; std::getline(list, line);)
    if (!line.empty() && line[0] != '#') symbols.push_back(line.substr(0, line.find(' ')));
  return symbols;
}

std::vector<std::string> declaredSymbols() {
  std::vector<std::string> symbols;
  for (const Export& entry : kExports) symbols.emplace_back(entry.symbol);
  return symbols;
}

TEST(LinkageTest, EveryDeclarationIsFoundUnderItsSymbol) {
  for (const Export& entry : kExports)
    EXPECT_EQ(dlsym(RTLD_DEFAULT, entry.symbol), entry.address) << entry.symbol;
}

TEST(LinkageTest, EveryListedSymbolIsDeclaredInAHeader) {
  EXPECT_THAT(declaredSymbols(), UnorderedElementsAreArray(listedSymbols()));
}

TEST(LinkageTest, SixFunctionsAndThreeVariablesCarryNoTypesInTheirNames) {
  std::vector<std::string> bare;
  for (const std::string& symbol : listedSymbols())
    if (symbol.rfind("_Z", 0) != 0) bare.push_back(symbol);
  EXPECT_THAT(bare, UnorderedElementsAre("CFG_COM_SetTxtParam", "CFG_COM_GetTxtParam",
                                         "CFG_COM_GetIntParam", "CFG_COM_GetIntParams",
                                         "CFG_COM_GetTxtParams", "CFG_NETWORK_GetAllParamCur",
                                         "g_lockMapFileLock", "g_STREAM_xmlDoc", "g_LM_xmlDoc"));
}

}  // namespace
