#include "base/text.h"
#include "camcfg/params.h"
#include "params/lookup.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

char kSystem[] = "System";
char kLanguage[] = "Language";
char kHttp[] = "WebHttp";
char kHttps[] = "WebHttps";
char kRtsp[] = "Rtsp";
char kRtspOverHttp[] = "RtspOverHttp";

int portOrZero(char* name) {
  int port = 0;
  CFG_COM_GetIntParam(kSystem, name, &port);
  return port;
}

}  // namespace

int CFG_SYSTEM_GetLanguage(char* pcOut) {
  return CFG_COM_GetTxtParam(kSystem, kLanguage, pcOut);
}

int CFG_SYSTEM_GetDeviceName(char* pcName, char* pcModel) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  if (!document) return -1;
  XMLElement* root = acquireRoot(*document.get(), CFG_FILE_BUSINESS, here());
  const XMLElement* device = findParameter(root, kSystem, "DeviceAttr");
  const char* name = textOf(device, "DeviceName");
  const char* model = textOf(device, "DeviceModel");
  if (name == nullptr || model == nullptr) return -1;
  if (pcName != nullptr) copyText(pcName, CFG_TXT_CUR_SIZE, name);
  if (pcModel != nullptr) copyText(pcModel, CFG_TXT_CUR_SIZE, model);
  return 0;
}

int CFG_SYSTEM_GetHttpPort(int* ps32Http, int* ps32Https) {
  const int http = CFG_COM_GetIntParam(kSystem, kHttp, ps32Http);
  const int https = CFG_COM_GetIntParam(kSystem, kHttps, ps32Https);
  return http | https;
}

int CFG_SYSTEM_SetHttpPort(int s32Http, int s32Https) {
  const int http = CFG_COM_SetIntParam(kSystem, kHttp, s32Http);
  const int https = CFG_COM_SetIntParam(kSystem, kHttps, s32Https);
  return http | https;
}

int CFG_SYSTEM_GetRtspPort() {
  return portOrZero(kRtsp);
}

int CFG_SYSTEM_SetRtspPort(int s32Port) {
  return CFG_COM_SetIntParam(kSystem, kRtsp, s32Port);
}

int CFG_SYSTEM_GetRtspOverHttpPort() {
  return portOrZero(kRtspOverHttp);
}

int CFG_SYSTEM_SetRtspOverHttpPort(int s32Port) {
  return CFG_COM_SetIntParam(kSystem, kRtspOverHttp, s32Port);
}
