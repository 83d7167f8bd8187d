#include <cstring>

#include "base/text.h"
#include "base/xml_edit.h"
#include "camcfg/params.h"
#include "params/lookup.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

// Sets a parameter's "Cur" and saves, if `accepts` finds the value permitted by its attributes.
template <typename Value, typename Accepts>
int setCurrent(const char* section, const char* name, Value value, Accepts accepts, Place place) {
  WriteDocument document(CFG_FILE_BUSINESS);
  if (!document) return -1;
  XMLElement* root = acquireRoot(*document.get(), CFG_FILE_BUSINESS, place);
  XMLElement* parameter = findParameter(root, section, name);
  if (parameter == nullptr || !accepts(parameter)) return -1;
  return setAttribute(*parameter, "Cur", value) && document.save() ? 0 : -1;
}

}  // namespace

int CFG_COM_GetTxtParam(char* pcSection, char* pcName, char* pcOut) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  if (!document) return -1;
  XMLElement* root = acquireRoot(*document.get(), CFG_FILE_BUSINESS, here());
  if (root == nullptr) return -1;
  const char* current = textOf(findParameter(root, pcSection, pcName), "Cur");
  if (current == nullptr || pcOut == nullptr) {
    printFailed(here());
    return -1;
  }
  // Deliberate: no terminator. Callers hand in a zeroed buffer; an older, longer text in it keeps
  // its tail. [no-terminator]
  copyCharacters(pcOut, CFG_TXT_CUR_SIZE, current);
  return 0;
}

int CFG_COM_GetIntParam(char* pcSection, char* pcName, int* ps32Out) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  if (!document) return -1;
  XMLElement* root = acquireRoot(*document.get(), CFG_FILE_BUSINESS, here());
  return readInt(findParameter(root, pcSection, pcName), "Cur", ps32Out) ? 0 : -1;
}

int CFG_COM_SetTxtParam(char* pcSection, char* pcName, char* pcText) {
  // Deliberate: any text that occurs inside "OptTxt" is accepted, a fragment of an entry included.
  // [fragment-accepted]
  const auto permitted = [pcText](const XMLElement* parameter) {
    const char* options = textOf(parameter, "OptTxt");
    return options != nullptr && pcText != nullptr && std::strstr(options, pcText) != nullptr;
  };
  return setCurrent<const char*>(pcSection, pcName, pcText, permitted, here());
}

int CFG_COM_SetIntParam(char* pcSection, char* pcName, int s32Value) {
  const auto permitted = [s32Value](const XMLElement* parameter) {
    int min = 0;
    int max = 0;
    return readInt(parameter, "Min", &min) && readInt(parameter, "Max", &max) && min <= s32Value &&
           s32Value <= max;
  };
  return setCurrent(pcSection, pcName, s32Value, permitted, here());
}
