#include <cstdio>

#include "base/text.h"
#include "base/xml_edit.h"
#include "camcfg/params.h"
#include "params/lookup.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

template <typename Document>
XMLElement* rootOf(const Document& document) {
  return document ? document.root() : nullptr;
}

// Fills a text record from a parameter, field by field. `keyName` and `key` are what the message
// about a missing "OptTxt" calls the parameter.
int readTextValue(const XMLElement* parameter, tagCFG_VALUE_TXT_S& value, const char* keyName,
                  const char* key, const char* function) {
  const char* options = textOf(parameter, "OptTxt");
  if (options == nullptr) {
    std::printf("%s %d failed, %s = %s\n", function, here().line, keyName, key);
    return -1;
  }
  copyText(value.acOptTxt, options);

  const char* factory = textOf(parameter, "Def");
  if (factory == nullptr) {
    printFailed(here(function));
    return -1;
  }
  copyText(value.acDef, factory);

  const char* current = textOf(parameter, "Cur");
  if (current == nullptr) {
    printFailed(here(function));
    return -1;
  }
  copyText(value.acCur, current);
  return 0;
}

void printNotFound(Place place, const char* keyName, const char* key) {
  std::printf("%s %d %s = %s not found\n", place.function, place.line, keyName, key);
}

template <typename Value>
int setInAnySection(const char* name, Value value, tagBU_BOOL save, const char* function) {
  WriteDocument document(CFG_FILE_BUSINESS);
  XMLElement* root = rootOf(document);
  if (root == nullptr) {
    printFailed(here(function));
    return -1;
  }
  XMLElement* parameter = findInAnySection(root, name);
  if (parameter == nullptr) {
    printFailed(here(function));
    return -1;
  }
  // Deliberate: nothing is checked, and unless `save` is 1 the change is lost with the document.
  // [set-unchecked]
  if (!setAttribute(*parameter, "Cur", value)) return -1;
  return save != BU_TRUE || document.saveKeepingLock() ? 0 : -1;
}

}  // namespace

int CFG_COM_GetTxtParams(char* pcName, tagCFG_VALUE_TXT_S* pstValue) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  XMLElement* root = rootOf(document);
  if (root == nullptr || pcName == nullptr || pstValue == nullptr) {
    printFailed(here());
    return -1;
  }
  const XMLElement* parameter = findInAnySection(root, pcName);
  if (parameter == nullptr) {
    printNotFound(here(), "pcParamNameIndex", pcName);
    return -1;
  }
  return readTextValue(parameter, *pstValue, "pcParamNameIndex", pcName, __func__);
}

int CFG_COM_GetIntParams(char* pcName, tagCFG_VALUE_INT_S* pstValue) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  if (!document) return -1;
  XMLElement* root = acquireRoot(*document.get(), CFG_FILE_BUSINESS, here());
  if (root == nullptr || pcName == nullptr || pstValue == nullptr) return -1;
  const XMLElement* parameter = findInAnySection(root, pcName);
  if (parameter == nullptr) {
    printNotFound(here(), "pcParamNameIndex", pcName);
    return -1;
  }
  const bool complete = readInt(parameter, "Min", &pstValue->s32Min) &&
                        readInt(parameter, "Max", &pstValue->s32Max) &&
                        readInt(parameter, "Step", &pstValue->s32Step) &&
                        readInt(parameter, "Def", &pstValue->s32Def) &&
                        readInt(parameter, "Cur", &pstValue->s32Cur);
  return complete ? 0 : -1;
}

int CFG_COM_GetTxtParamByParent(char* pcParentName, char* pcChildName,
                                tagCFG_VALUE_TXT_S* pstValue) {
  const ReadDocument document(CFG_FILE_BUSINESS);
  XMLElement* root = rootOf(document);
  if (root == nullptr || pcParentName == nullptr || pcChildName == nullptr || pstValue == nullptr) {
    printFailed(here());
    return -1;
  }
  XMLElement* parent = findInAnySection(root, pcParentName);
  if (parent == nullptr) {
    printNotFound(here(), "pcParentName", pcParentName);
    return -1;
  }
  const XMLElement* child = CFG_GetElementByName(parent, pcChildName);
  if (child == nullptr) {
    printNotFound(here(), "pcChildName", pcChildName);
    return -1;
  }
  return readTextValue(child, *pstValue, "pcChildName", pcChildName, __func__);
}

int CFG_COM_SetTxtParams(char* pcName, char* pcText, tagBU_BOOL enSave) {
  if (pcText == nullptr) {
    printFailed(here());
    return -1;
  }
  return setInAnySection<const char*>(pcName, pcText, enSave, __func__);
}

int CFG_COM_SetIntParams(char* pcName, int s32Value, tagBU_BOOL enSave) {
  return setInAnySection(pcName, s32Value, enSave, __func__);
}
