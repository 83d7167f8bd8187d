#ifndef CAMCFG_TESTS_PARAMS_ALL_CALLS_H
#define CAMCFG_TESTS_PARAMS_ALL_CALLS_H

#include <ostream>

#include "params/params_test.h"

namespace camcfg::tests {

constexpr char kLanguageFile[] = "/app/resource/language/thai.xml";

/// One exported call of the parameter family, made so that it succeeds on what writeAllFiles()
/// writes; a setter sets 7 or "seven".
struct Call {
  const char* name;
  int (*make)();
  int success = 0;
  int failure = -1;
  bool writes = false;
  int transactions = 1;
  const char* path = CFG_FILE_BUSINESS;
  /// What it prints, line breaks aside, when its file cannot be opened; null: nothing.
  const char* notOpened = nullptr;
};

inline void PrintTo(const Call& call, std::ostream* out) {
  *out << call.name;
}

inline void writeAllFiles(const testkit::DeviceRoot& device, const std::string& more = "") {
  device.write(CFG_FILE_BUSINESS,
               "<System><Language Cur='one' Def='one' OptTxt='one,seven'/>"
               "<DeviceAttr DeviceName='name' DeviceModel='model'/>"
               "<WebHttp Cur='1' Min='0' Max='9'/><WebHttps Cur='1' Min='0' Max='9'/>"
               "<Rtsp Cur='1' Min='0' Max='9' Step='1' Def='1'/>"
               "<RtspOverHttp Cur='1' Min='0' Max='9'/>"
               "<Parent><Child Cur='c' Def='d' OptTxt='o'/></Parent></System>" +
                   more);
  device.write(kLanguageFile, "<Language><Ok Val='text'/></Language>");
}

// Each call has an output of its own: calls are made from several threads.
template <int CallNumber>
char* outText() {
  static char out[CFG_LANG_TEXT_SIZE];
  return out;
}
template <typename Record>
Record* outRecord() {
  thread_local Record record;
  return &record;
}

inline const Call kAllCalls[] = {
    {"CFG_COM_GetTxtParam",
     [] { return CFG_COM_GetTxtParam(text("System"), text("Language"), outText<0>()); }},
    {"CFG_COM_GetIntParam",
     [] { return CFG_COM_GetIntParam(text("System"), text("Rtsp"), outRecord<int>()); }},
    {"CFG_COM_SetTxtParam",
     [] { return CFG_COM_SetTxtParam(text("System"), text("Language"), text("seven")); }, 0, -1,
     true},
    {"CFG_COM_SetIntParam", [] { return CFG_COM_SetIntParam(text("System"), text("Rtsp"), 7); }, 0,
     -1, true},
    {"CFG_COM_GetTxtParams",
     [] { return CFG_COM_GetTxtParams(text("Language"), outRecord<tagCFG_VALUE_TXT_S>()); }, 0, -1,
     false, 1, CFG_FILE_BUSINESS, "CFG_COM_GetTxtParams [0-9]+ failed"},
    {"CFG_COM_GetIntParams",
     [] { return CFG_COM_GetIntParams(text("Rtsp"), outRecord<tagCFG_VALUE_INT_S>()); }},
    {"CFG_COM_GetTxtParamByParent",
     [] {
       return CFG_COM_GetTxtParamByParent(text("Parent"), text("Child"),
                                          outRecord<tagCFG_VALUE_TXT_S>());
     },
     0, -1, false, 1, CFG_FILE_BUSINESS, "CFG_COM_GetTxtParamByParent [0-9]+ failed"},
    {"CFG_COM_SetTxtParams",
     [] { return CFG_COM_SetTxtParams(text("Language"), text("seven"), BU_TRUE); }, 0, -1, true, 1,
     CFG_FILE_BUSINESS, "CFG_COM_SetTxtParams [0-9]+ failed"},
    {"CFG_COM_SetIntParams", [] { return CFG_COM_SetIntParams(text("Rtsp"), 7, BU_TRUE); }, 0, -1,
     true, 1, CFG_FILE_BUSINESS, "CFG_COM_SetIntParams [0-9]+ failed"},
    {"CFG_SYSTEM_GetLanguage", [] { return CFG_SYSTEM_GetLanguage(outText<1>()); }},
    {"CFG_SYSTEM_GetDeviceName",
     [] { return CFG_SYSTEM_GetDeviceName(outText<2>(), outText<3>()); }},
    {"CFG_SYSTEM_GetHttpPort",
     [] { return CFG_SYSTEM_GetHttpPort(outRecord<int>(), outRecord<int>()); }, 0, -1, false, 2},
    {"CFG_SYSTEM_SetHttpPort", [] { return CFG_SYSTEM_SetHttpPort(7, 7); }, 0, -1, true, 2},
    {"CFG_SYSTEM_GetRtspPort", CFG_SYSTEM_GetRtspPort, 1, 0},
    {"CFG_SYSTEM_SetRtspPort", [] { return CFG_SYSTEM_SetRtspPort(7); }, 0, -1, true},
    {"CFG_SYSTEM_GetRtspOverHttpPort", CFG_SYSTEM_GetRtspOverHttpPort, 1, 0},
    {"CFG_SYSTEM_SetRtspOverHttpPort", [] { return CFG_SYSTEM_SetRtspOverHttpPort(7); }, 0, -1,
     true},
    {"CFG_LANG_GetString",
     [] { return CFG_LANG_GetString(text("thai"), text("Ok"), outText<4>()); }, 0, -1, false, 1,
     kLanguageFile, "CFG_LANG_GetString acLangXml = /app/resource/language/thai.xml failed"},
};

}  // namespace camcfg::tests

#endif
