#include <camcfg/params.h>

#include <algorithm>

#include "base/refusal.h"
#include "base/spelling.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "device/files.h"

namespace camcfg::tool::commands {
namespace {

// The library leaves the buffer alone when there is no such key, and otherwise writes a text with
// its terminator into it: one without any terminator was left alone.
bool findText(const std::string& language, const std::string& key, std::string& text) {
  std::vector<char> buffer(CFG_LANG_TEXT_SIZE, '?');
  if (CFG_LANG_GetString(device::argument(language), device::argument(key), buffer.data()) != 0)
    return false;
  const auto end = std::find(buffer.begin(), buffer.end(), '\0');
  text.assign(buffer.begin(), end);
  return end != buffer.end();
}

cli::Answer lang(const cli::Arguments& arguments) {
  const std::string language = arguments.text(kLanguage);
  const std::string key = arguments.text(kKey);
  const device::Document texts = device::requireTexts(language);
  std::string text;
  if (!findText(language, key, text))
    throw Refusal(language + " has no text '" + key + "'" +
                  didYouMean(key, device::keysOf(*texts)));
  return {Json{{"language", language}, {"key", key}, {"text", text}}, {cli::Line{"{text}"}}};
}

}  // namespace

cli::CommandGroup languageGroup() {
  return {"Texts",
          {{"lang",
            "Print a translated text",
            {{cli::Option::Argument, kLanguage, "Name of a language file, without .xml"},
             {cli::Option::Argument, kKey, "Key of the text"}},
            lang}}};
}

}  // namespace camcfg::tool::commands
