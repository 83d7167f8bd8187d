#include <camcfg/params.h>

#include <cstring>
#include <vector>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {

// A language and a key; the texts of "English".
void language(const Input& input) {
  writeFile(std::string(CFG_DIR_LANGUAGE) + "English.xml", input.part(1));
  std::string language = input.line(0);
  std::string key = input.line(1);
  constexpr char kUntouched = 'x';
  std::vector<char> text(CFG_LANG_TEXT_SIZE, kUntouched);
  const int result = CFG_LANG_GetString(language.data(), key.data(), text.data());
  const std::size_t length = strnlen(text.data(), text.size());
  const bool untouched = length == text.size() && text.front() == kUntouched;
  require(untouched || result == 0, "a text comes only with success");
  require(untouched || length < text.size(), "a text has its terminator");
}

}  // namespace camcfg::fuzz
