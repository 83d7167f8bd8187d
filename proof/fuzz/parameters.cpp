#include <camcfg/params.h>

#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

struct Arguments {
  std::string section;
  std::string name;
  std::string child;
  std::string text;
  int number;
};

void describe(Arguments& given) {
  const auto text = std::make_unique<tagCFG_VALUE_TXT_S>();
  std::memset(text.get(), 'x', sizeof *text);
  if (CFG_COM_GetTxtParams(given.name.data(), text.get()) == 0)
    require(isTerminated(text->acOptTxt) && isTerminated(text->acDef) && isTerminated(text->acCur),
            "the fields of a text parameter have their terminators");
  CFG_COM_GetTxtParamByParent(given.name.data(), given.child.data(), text.get());
  tagCFG_VALUE_INT_S number{};
  CFG_COM_GetIntParams(given.name.data(), &number);
}

void readAndWrite(Arguments& given) {
  char* section = given.section.data();
  char* name = given.name.data();
  std::vector<char> text(CFG_TXT_CUR_SIZE);
  CFG_COM_GetTxtParam(section, name, text.data());
  CFG_COM_SetTxtParam(section, name, given.text.data());
  int number = 0;
  CFG_COM_GetIntParam(section, name, &number);
  if (CFG_COM_SetIntParam(section, name, given.number) != 0) return;
  require(CFG_COM_GetIntParam(section, name, &number) == 0 && number == given.number,
          "a number is read as it was set");
}

void writeByName(Arguments& given) {
  char* name = given.name.data();
  tagCFG_VALUE_INT_S number{};
  CFG_COM_SetIntParams(name, given.number, BU_FALSE);
  if (CFG_COM_SetIntParams(name, given.number, BU_TRUE) == 0 &&
      CFG_COM_GetIntParams(name, &number) == 0)
    require(number.s32Cur == given.number, "a number is read as it was set by its name only");
  const auto text = std::make_unique<tagCFG_VALUE_TXT_S>();
  CFG_COM_SetTxtParams(name, given.text.data(), BU_FALSE);
  if (CFG_COM_SetTxtParams(name, given.text.data(), BU_TRUE) == 0 &&
      CFG_COM_GetTxtParams(name, text.get()) == 0)
    require(text->acCur == asReadBack(given.text).substr(0, CFG_TXT_CUR_SIZE - 1),
            "a text is read as it was set by its name only");
}

void setSystem(Arguments& given) {
  std::vector<char> first(CFG_TXT_CUR_SIZE);
  std::vector<char> second(CFG_TXT_CUR_SIZE);
  CFG_SYSTEM_GetLanguage(first.data());
  CFG_SYSTEM_GetDeviceName(first.data(), second.data());
  int http = 0;
  int https = 0;
  CFG_SYSTEM_GetHttpPort(&http, &https);
  CFG_SYSTEM_SetHttpPort(given.number, https);
  if (CFG_SYSTEM_SetRtspPort(given.number) == 0)
    require(CFG_SYSTEM_GetRtspPort() == given.number, "the RTSP port is read as it was set");
  CFG_SYSTEM_SetRtspOverHttpPort(given.number);
  CFG_SYSTEM_GetRtspOverHttpPort();
}

}  // namespace

// A section, a parameter, one below it, a text, a number; the parameter file.
void parameters(const Input& input) {
  Arguments given{input.line(0), input.line(1), input.line(2), input.line(3), input.number(4)};
  writeFile(CFG_FILE_BUSINESS, input.part(1));
  describe(given);
  readAndWrite(given);
  writeByName(given);
  setSystem(given);
}

}  // namespace camcfg::fuzz
