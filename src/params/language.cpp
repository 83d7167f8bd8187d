#include <cstdio>

#include "base/text.h"
#include "camcfg/params.h"
#include "params/lookup.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLElement;

int CFG_LANG_GetString(char* pcLanguage, char* pcKey, char* pcOut) {
  if (pcLanguage == nullptr) return -1;
  char path[CFG_PATH_SIZE] = {};
  std::snprintf(path, sizeof path, "%s%s.xml", CFG_DIR_LANGUAGE, pcLanguage);
  const ReadDocument document(path);
  if (!document) {
    std::printf("%s acLangXml = %s failed\n", __func__, path);
    return -1;
  }
  XMLElement* root = acquireRoot(*document.get(), path, here());
  if (root == nullptr) return -1;

  // Deliberate: a key that is not there is no failure; the caller's fallback text stays.
  // [missing-text]
  const XMLElement* entry = CFG_GetBrotherElementByName(root->FirstChildElement(), pcKey);
  if (entry == nullptr || pcOut == nullptr) return 0;
  const char* text = textOf(entry, "Val");
  copyText(pcOut, CFG_LANG_TEXT_SIZE, text == nullptr ? "" : text);
  return 0;
}
