#include <camcfg/types.h>

#include <cctype>
#include <map>
#include <optional>
#include <string_view>

#include "lint/item.h"
#include "lint/lint.h"
#include "lint/rules.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

// What a program puts values in for: "%d", "%5.1f", "{0}", in order of their spelling.
std::map<std::string, int> placeholdersIn(const std::string& text) {
  constexpr char kFlags[] = "0123456789.+#lhzjt$";
  constexpr std::string_view kEnds = "disouxXcfgGeEp";
  const auto isAfterNumber = [&](std::size_t at) {
    return at > 0 && std::isdigit(static_cast<unsigned char>(text[at - 1])) != 0;
  };
  std::map<std::string, int> all;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '%' && !isAfterNumber(at)) {
      const std::size_t end = text.find_first_not_of(kFlags, at + 1);
      if (end == std::string::npos) break;
      if (kEnds.find(text[end]) != std::string_view::npos) ++all[text.substr(at, end - at + 1)];
      at = end;
    } else if (text[at] == '{') {
      const std::size_t end = text.find('}', at);
      if (end == std::string::npos) break;
      if (text.find_first_not_of("0123456789", at + 1) == end) ++all[text.substr(at, end - at + 1)];
    }
  }
  return all;
}

// A text as the first of the files has it that has it with a value.
struct Known {
  const Source* source = nullptr;
  const XMLElement* element = nullptr;
};

using Texts = std::map<std::string, const XMLElement*>;

Texts textsOf(const Source& source) {
  Texts texts;
  for (const XMLElement* text : childrenOf(*source.document->FirstChildElement()))
    texts.emplace(text->Name(), text);
  return texts;
}

void checkText(const Known& known, const XMLElement& text, Findings& findings) {
  if (known.element == &text || !has(text, "Val")) return;
  const std::string value = textOf(text, "Val");
  const std::string other = textOf(*known.element, "Val");
  const std::string where = known.source->name + atLine(*known.element);
  const Item item{text, clipped(text.Name()), findings};
  if (value.empty() && !other.empty())
    item.addOf(kTranslationEmpty, "Val", " is empty, and has a text in " + where);
  else if (placeholdersIn(value) != placeholdersIn(other))
    item.addOf(kTranslationPlaceholders, "Val",
               " has other placeholders than the text in " + where);
}

constexpr char kSuffix[] = ".xml";

// The files of texts that go with a file of parameters: a device's, or those given with it.
struct TextFiles {
  std::string directory;
  std::vector<std::string> names;

  std::string whyMissing(const std::string& language) const {
    const std::string name = language + kSuffix;
    return isAmong(names, name) ? "" : ": there is no " + directory + clipped(name);
  }
};

std::optional<TextFiles> textFilesFor(const Source& parameters,
                                      const std::vector<Source>& sources) {
  if (parameters.isOfDevice) return TextFiles{CFG_DIR_LANGUAGE, device::filesIn(CFG_DIR_LANGUAGE)};
  TextFiles files;
  for (const Source& source : sources)
    if (source.kind == FileKind::Language)
      files.names.push_back(source.name.substr(source.name.rfind('/') + 1));
  return files.names.empty() ? std::nullopt : std::optional(files);
}

void checkLanguage(const Item& item, const TextFiles& files) {
  const std::string language = item.text("Cur");
  for (const std::string& option : settings::optionsIn(item.text("OptTxt"))) {
    const std::string why = files.whyMissing(option);
    if (option != language && !why.empty()) item.addAt(kLanguageOptionMissing, "OptTxt", why);
  }
  const std::string why = files.whyMissing(language);
  if (!language.empty() && !why.empty()) item.addAt(kLanguageMissing, "Cur", why);
}

}  // namespace

void checkTranslations(const std::vector<Source>& sources, std::vector<Findings>& findings) {
  std::map<std::string, Known> known;
  std::map<std::size_t, Texts> languages;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (!sources[i].isWhole() || sources[i].kind != FileKind::Language) continue;
    languages[i] = textsOf(sources[i]);
    for (const auto& [key, text] : languages[i]) {
      Known& first = known[key];
      if (first.element == nullptr || textOf(*first.element, "Val").empty())
        first = {&sources[i], text};
    }
  }
  for (const auto& [i, texts] : languages)
    for (const auto& [key, first] : known) {
      const auto text = texts.find(key);
      if (text == texts.end())
        findings[i].add(kTranslationMissing, 1,
                        clipped(key) + " has no text here; it has one in " + first.source->name +
                            atLine(*first.element));
      else
        checkText(first, *text->second, findings[i]);
    }
}

void checkLanguages(const std::vector<Source>& sources, std::vector<Findings>& findings) {
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (!sources[i].isWhole() || sources[i].kind != FileKind::Parameters) continue;
    const XMLElement* system = sources[i].document->FirstChildElement(settings::kSystemSection);
    const XMLElement* element = system == nullptr ? nullptr : system->FirstChildElement("Language");
    const std::optional<TextFiles> files = textFilesFor(sources[i], sources);
    if (element != nullptr && files)
      checkLanguage(Item{*system, settings::kSystemSection, findings[i]}.inner(*element), *files);
  }
}

}  // namespace camcfg::tool::lint
