#include <cstdlib>

#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "torture/harness/device.h"
#include "torture/threads/family.h"

namespace camcfg::torture {
namespace {

constexpr char kCounter[] = "/cfg0/counter.xml";

std::string numbered(const char* name, int cell) {
  return name + std::to_string(cell);
}

bool writeInteger(int cell, int value) {
  std::string section = "Cells";
  std::string name = numbered("Number", cell);
  return CFG_COM_SetIntParam(section.data(), name.data(), value) == 0;
}

int readInteger(int cell) {
  std::string name = numbered("Number", cell);
  tagCFG_VALUE_INT_S value{};
  if (CFG_COM_GetIntParams(name.data(), &value) != 0) return kFailed;
  return value.s32Min == 0 && value.s32Max == kHighest ? value.s32Cur : kTorn;
}

bool writeText(int cell, int value) {
  std::string name = numbered("Word", cell);
  return CFG_COM_SetTxtParams(name.data(), longText(value).data(), BU_TRUE) == 0;
}

int readText(int cell) {
  std::string section = "Cells";
  std::string name = numbered("Word", cell);
  char text[CFG_TXT_CUR_SIZE] = {};
  if (CFG_COM_GetTxtParam(section.data(), name.data(), text) != 0) return kFailed;
  return valueOfLongText(text);
}

bool writePort(int cell, int value) {
  if (cell == 0) return CFG_SYSTEM_SetRtspPort(value) == 0;
  if (cell == 1) return CFG_SYSTEM_SetRtspOverHttpPort(value) == 0;
  return CFG_SYSTEM_SetHttpPort(value, value) == 0;
}

int readPort(int cell) {
  if (cell == 0) return CFG_SYSTEM_GetRtspPort();
  if (cell == 1) return CFG_SYSTEM_GetRtspOverHttpPort();
  // Each of the two is read in a transaction of its own: a writer may come between.
  int http = 0;
  int https = 0;
  return CFG_SYSTEM_GetHttpPort(&http, &https) == 0 ? https : kFailed;
}

bool writePreset(int cell, int value) {
  tagPRESET_CFG_S preset{cell, value, value, value, value, value, {}};
  std::to_string(value).copy(preset.s8Description, sizeof preset.s8Description);
  return CFG_PRESET_SetParam(&preset) == 0;
}

int readPreset(int cell) {
  tagPRESET_CFG_S preset{};
  if (CFG_PRESET_QueryOneById(cell, &preset) != 0) return kFailed;
  const int value = preset.s32PanPos;
  const bool agrees = preset.s32TiltPos == value && preset.s32ZoomPos == value &&
                      preset.s32FocusPos == value && preset.s32FocusMode == value &&
                      preset.s8Description == std::to_string(value);
  return agrees ? value : kTorn;
}

template <std::size_t Size>
void put(char (&field)[Size], int value) {
  std::to_string(value).copy(field, Size - 1);
}

bool writeCard(int cell, int value) {
  std::string card = numbered("Lan", cell);
  tagNETWORK_CFG_S settings{};
  put(settings.acIpAddr, value);
  put(settings.acNetMask, value);
  put(settings.acGateWay, value);
  put(settings.acDns1, value);
  settings.s32MTU = value;
  CFG_NETWORK_SetAllParam(card.data(), settings);
  return true;
}

int readCard(int cell) {
  std::string card = numbered("Lan", cell);
  tagNETWORK_CFG_S settings{};
  CFG_NETWORK_GetAllParamCur(card.data(), &settings);
  const std::string text = std::to_string(settings.s32MTU);
  const bool agrees = settings.acIpAddr == text && settings.acNetMask == text &&
                      settings.acGateWay == text && settings.acDns1 == text;
  if (settings.s32MTU == 0) return kFailed;
  return agrees ? settings.s32MTU : kTorn;
}

int readLanguage(int /*cell*/) {
  char language[] = "Test";
  char key[] = "Key";
  char text[CFG_LANG_TEXT_SIZE] = {};
  if (CFG_LANG_GetString(language, key, text) != 0) return kFailed;
  return valueOfLongText(text);
}

tinyxml2::XMLDocument* openCounter(tagBU_BOOL readOnly) {
  return CFG_GetDocByFileName(const_cast<char*>(kCounter), readOnly);
}

bool incrementCounter() {
  tinyxml2::XMLDocument* document = openCounter(BU_FALSE);
  if (document == nullptr) return false;
  tinyxml2::XMLElement* root = document->FirstChildElement();
  root->SetAttribute("Count", root->IntAttribute("Count") + 1);
  const int result = CFG_SaveFile(document, const_cast<char*>(kCounter), BU_TRUE);
  delete document;
  return result == 0;
}

int readCounter() {
  tinyxml2::XMLDocument* document = openCounter(BU_TRUE);
  if (document == nullptr) return kFailed;
  const int count = document->FirstChildElement()->IntAttribute("Count", kTorn);
  delete document;
  return count;
}

bool writeDocument(int cell, int value) {
  tinyxml2::XMLDocument* document = openCounter(BU_FALSE);
  if (document == nullptr) return false;
  tinyxml2::XMLElement* root = document->FirstChildElement();
  const std::string name = numbered("Cell", cell);
  root->FirstChildElement(name.c_str())->SetAttribute("A", value);
  root->LastChildElement(name.c_str())->SetAttribute("A", value);
  const int result = CFG_SaveFile(document, const_cast<char*>(kCounter), BU_TRUE);
  delete document;
  return result == 0;
}

int readDocument(int cell) {
  tinyxml2::XMLDocument* document = openCounter(BU_TRUE);
  if (document == nullptr) return kFailed;
  const tinyxml2::XMLElement* root = document->FirstChildElement();
  const std::string name = numbered("Cell", cell);
  const int first = root->FirstChildElement(name.c_str())->IntAttribute("A");
  const int last = root->LastChildElement(name.c_str())->IntAttribute("A");
  delete document;
  return first == last ? first : kTorn;
}

std::string perCell(const std::string& before, const std::string& after) {
  std::string text;
  for (int cell = 0; cell < kThreads; ++cell)
    text.append(before).append(std::to_string(cell)).append(after);
  return text;
}

std::string businessFile() {
  const std::string port = " Cur='1' Min='0' Max='60000'/>";
  const std::string card =
      "><IpAddr Cur='1'/><NetMask Cur='1'/><GateWay Cur='1'/><Dns1 Cur='1'/><MTU Cur='1'/>";
  std::string cards;
  for (int cell = 0; cell < kThreads; ++cell)
    cards += "<" + numbered("Lan", cell) + card + "</" + numbered("Lan", cell) + ">";
  return "<System><WebHttp" + port + "<WebHttps" + port + "<Rtsp" + port + "<RtspOverHttp" + port +
         "</System><Cells>" +
         perCell("<Number", " Cur='1' Def='1' Min='0' Max='60000' Step='1'/>") +
         perCell("<Word", " Def='1' OptTxt='' Cur='" + longText(1) + "'/>") + "</Cells><NetWork>" +
         cards + "</NetWork>";
}

}  // namespace

std::vector<Family> reentrantFamilies() {
  return {
      {"CFG_COM (integers)", true, kThreads, writeInteger, readInteger, nullptr, nullptr},
      {"CFG_COM (texts)", true, kThreads, writeText, readText, nullptr, nullptr},
      {"CFG_SYSTEM", true, 3, writePort, readPort, nullptr, nullptr},
      {"CFG_LANG", true, 0, nullptr, readLanguage, nullptr, nullptr},
      {"CFG_PRESET", true, kThreads, writePreset, readPreset, nullptr, nullptr},
      {"CFG_NETWORK", true, kThreads, writeCard, readCard, nullptr, nullptr},
      {"store", true, kThreads, writeDocument, readDocument, incrementCounter, readCounter},
  };
}

void layOutFamilies() {
  Device::writeHere(CFG_FILE_BUSINESS, businessFile());
  Device::writeHere(CFG_FILE_PRESET,
                    "<PresetCfg>" +
                        perCell("<preset Id='",
                                "' Description='1' PanPos='1' TiltPos='1' ZoomPos='1' "
                                "FocusPos='1' FocusMode='1'/>") +
                        "</PresetCfg>");
  Device::writeHere(CFG_FILE_MPP, mediaFile());
  // Each cell occurs twice, far apart.
  Device::writeHere(kCounter, "<Root Count='0'>" + perCell("<Cell", " A='1'/>") + "<Pad>" +
                                  std::string(20000, '.') + "</Pad>" +
                                  perCell("<Cell", " A='1'/>") + "</Root>");
  Device::writeHere("/app/resource/language/Test.xml",
                    "<Texts><Key Val='" + longText(1) + "'/></Texts>");
}

std::string longText(int value) {
  std::string text = std::to_string(value);
  return text + std::string(200, static_cast<char>('a' + value % 26)) + text;
}

int valueOfLongText(const std::string& text) {
  const int value = static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
  return text == longText(value) ? value : kTorn;
}

}  // namespace camcfg::torture
