#include <camcfg/params.h>

#include <algorithm>
#include <cstring>

#include "commands/groups.h"
#include "device/copy.h"
#include "device/directory.h"
#include "frame/spelling.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

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
  if (std::find(known.begin(), known.end(), language) == known.end()) {
    std::string all;
    for (const std::string& name : known) all += (all.empty() ? " (there are " : ", ") + name;
    throw Refusal("there is no language '" + language + "'" + (all.empty() ? "" : all + ")"));
  }
  const std::string path = CFG_DIR_LANGUAGE + language + kSuffix;
  Copy texts = loadCopy(path);
  if (texts.state != State::Good) throw Refusal(Status::Unusable, path + " " + texts.fault);
  return std::move(texts.document);
}

// The library leaves the buffer alone when there is no such key, and otherwise writes a text with
// its terminator into it: one without any terminator was left alone.
bool findText(const std::string& language, const std::string& key, std::string& text) {
  std::vector<char> buffer(CFG_LANG_TEXT_SIZE, '?');
  if (CFG_LANG_GetString(argument(language), argument(key), buffer.data()) != 0) return false;
  const auto end = std::find(buffer.begin(), buffer.end(), '\0');
  text.assign(buffer.begin(), end);
  return end != buffer.end();
}

Answer lang(const Arguments& arguments) {
  const std::string language = arguments.text("LANGUAGE");
  const std::string key = arguments.text("KEY");
  const Document texts = requireTexts(language);
  std::string text;
  if (!findText(language, key, text))
    throw Refusal(language + " has no text '" + key + "'" + didYouMean(key, keysOf(*texts)));

  Answer answer;
  answer.value = {{"language", language}, {"key", key}, {"text", text}};
  answer.layout = {Line{"{text}"}};
  return answer;
}

}  // namespace

CommandGroup languageGroup() {
  return {"Texts",
          {{"lang",
            "Print a translated text",
            {{Option::Argument, "LANGUAGE", "Name of a language file, without .xml"},
             {Option::Argument, "KEY", "Key of the text"}},
            lang}}};
}

}  // namespace camcfg::tool
