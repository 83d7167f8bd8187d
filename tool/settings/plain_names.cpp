#include <string_view>

#include "base/plain_text.h"
#include "settings/network.h"

namespace camcfg::tool::settings {

Settings plainCardSettings() {
  Settings plain;
  for (const Setting& setting : cardSettings()) {
    const char* name = plainNameOf(setting);
    if (!plain.empty() && plain.back().member == std::string_view(name)) {
      plain.back().typedForm = "ADDRESS,ADDRESS";
      plain.back().help = "Name servers set by hand";
      continue;
    }
    plain.push_back(setting);
    plain.back().member = name;
    for (Word& word : plain.back().words) word.text = word.plainText();
    if (setting.kind == Kind::Switch) plain.back().kind = Kind::Word;
    if (setting.onlyWith.element != nullptr) plain.back().typedForm = "ADDRESS";
    if (setting.prefixSets != nullptr) plain.back().typedForm = "ADDRESS or ADDRESS/PREFIX";
  }
  return plain;
}

std::vector<const Setting*> cardSettingsCalled(std::string_view name) {
  std::vector<const Setting*> called;
  for (const Setting& setting : cardSettings()) {
    if (isSameWord(name, elementOf(setting)) || isSameWord(name, setting.member)) return {&setting};
    if (isSameWord(name, plainNameOf(setting))) called.push_back(&setting);
  }
  return called;
}

std::vector<std::string> plainWordsOf(const Setting& setting) {
  std::vector<std::string> words;
  for (const Word& word : setting.words) words.emplace_back(word.plainText());
  return words;
}

std::string fromPlain(const Setting& setting, const std::string& text) {
  for (const Word& word : setting.words)
    if (isSameWord(word.plainText(), text)) return word.written();
  return spelt(setting, text);
}

}  // namespace camcfg::tool::settings
