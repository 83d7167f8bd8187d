#include "device/language.h"

#include <camcfg/types.h>

#include <cstring>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "device/file_set.h"

namespace camcfg::tool::device {

constexpr char kSuffix[] = ".xml";

std::vector<std::string> languages() {
  std::vector<std::string> names;
  for (const std::string& name : namesIn(CFG_DIR_LANGUAGE))
    if (isXmlName(name)) names.push_back(name.substr(0, name.size() - std::strlen(kSuffix)));
  return names;
}

std::vector<std::string> keysOf(const tinyxml2::XMLDocument& texts) {
  std::vector<std::string> keys;
  for (const auto* entry = texts.FirstChildElement()->FirstChildElement(); entry != nullptr;
       entry = entry->NextSiblingElement())
    keys.emplace_back(entry->Value());
  return keys;
}

Document requireTexts(const std::string& language) {
  const std::vector<std::string> known = languages();
  if (!isAmong(known, language))
    throw Refusal("there is no language '" + language + "'" +
                  (known.empty() ? "" : " (there are " + joined(known) + ")") +
                  didYouMean(language, known));
  const std::string path = CFG_DIR_LANGUAGE + language + kSuffix;
  Copy texts = loadCopy(path);
  if (texts.state != State::Good) throw Refusal(Status::Unusable, path + " " + texts.fault);
  return std::move(texts.document);
}

}  // namespace camcfg::tool::device
