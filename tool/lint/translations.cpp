#include <camcfg/types.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <string_view>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/rules.h"
#include "lint/translated.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

/// What a program puts values in for.
struct Placeholders {
  std::vector<std::string> inOrder{};     ///< "%d", "%5.1f": each takes the next value
  std::map<std::string, int> byNumber{};  ///< "%1$d", "{0}": wherever they are in the text

  bool operator!=(const Placeholders& other) const {
    return inOrder != other.inOrder || byNumber != other.byNumber;
  }
};

Placeholders placeholdersIn(const std::string& text) {
  constexpr char kFlags[] = "0123456789.+#lhzjt$";
  constexpr std::string_view kEnds = "disouxXcfgGeEp";
  const auto isAfterNumber = [&](std::size_t at) {
    return at > 0 && std::isdigit(static_cast<unsigned char>(text[at - 1])) != 0;
  };
  Placeholders all;
  int loose = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '%' && !isAfterNumber(at)) {
      const std::size_t end = std::min(text.find_first_not_of(kFlags, at + 1), text.size());
      const std::string found = text.substr(at, end - at + 1);
      const bool isOne = end < text.size() && kEnds.find(text[end]) != std::string_view::npos;
      if (isOne && found.find('$') == std::string::npos)
        all.inOrder.push_back(found);
      else if (isOne)
        ++all.byNumber[found];
      else if (found != "%%")
        ++loose;
      at = end;
    } else if (text[at] == '{') {
      const std::size_t end = text.find('}', at);
      if (end == std::string::npos) break;
      if (text.find_first_not_of("0123456789", at + 1) == end)
        ++all.byNumber[text.substr(at, end - at + 1)];
    }
  }
  // Where no values are put in, it is a sign like others.
  if (!all.inOrder.empty() && loose > 0) all.byNumber["%"] = loose;
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

void checkTranslation(const Known& known, const XMLElement& text, Findings& findings) {
  if (known.element == &text || !has(text, "Val")) return;
  const std::string value = textOf(text, "Val");
  const std::string other = textOf(*known.element, "Val");
  const std::string where = known.source->name + atLine(*known.element);
  const Item item{text, clipped(text.Name()), findings};
  if (isBlank(value) && !isBlank(other))
    item.addOf(kTranslationEmpty, "Val", " is empty, and has a text in " + where);
  else if (placeholdersIn(value) != placeholdersIn(other))
    item.addOf(kTranslationPlaceholders, "Val",
               " has other placeholders than the text in " + where);
}

using KnownTexts = std::map<std::string, Known>;
using Languages = std::map<std::size_t, Texts>;  // by the positions of their files

// Finds which languages miss a text that is known from this file: each next to the text before it.
void checkMissing(const Source& source, const KnownTexts& known, const Languages& languages,
                  std::vector<Findings>& findings) {
  const XMLElement& top = *source.document->FirstChildElement();
  std::map<std::size_t, int> lines;
  for (const XMLElement* element : childrenOf(top)) {
    const bool isKnown = known.at(element->Name()).element == element;
    for (const auto& [i, texts] : languages) {
      const auto text = texts.find(element->Name());
      if (text != texts.end())
        lines[i] = text->second->GetLineNum();
      else if (isKnown)
        findings[i].add(kTranslationMissing, std::max(lines[i], 1),
                        concat(clipped(element->Name()), " has no text here; it has one in ",
                               source.name, atLine(*element)));
    }
  }
}

// Names and single words are the same in many languages, and all texts in two of one family.
constexpr std::size_t kSentence = 4;

void checkUntranslated(const Texts& texts, const KnownTexts& known, Findings& findings) {
  std::vector<std::pair<const XMLElement*, const Known*>> same;
  std::size_t others = 0;
  for (const auto& [key, text] : texts) {
    const Known& first = known.at(key);
    const std::string value = textOf(*text, "Val");
    if (first.element == text || wordsIn(value) < kSentence) continue;
    if (value == textOf(*first.element, "Val"))
      same.emplace_back(text, &first);
    else
      ++others;
  }
  if (same.size() > others) return;
  for (const auto& [text, first] : same)
    Item{*text, clipped(text->Name()), findings}.addOf(
        kTranslationSame, "Val",
        concat(" is not translated: it is that in ", first->source->name, atLine(*first->element)));
}

std::vector<Translated> translationsOf(const std::string& key, const Languages& languages,
                                       const std::vector<Source>& sources,
                                       std::vector<Findings>& findings) {
  std::vector<Translated> all;
  for (const auto& [i, texts] : languages) {
    const auto text = texts.find(key);
    if (text != texts.end())
      all.push_back({{*text->second, clipped(key), findings[i]},
                     textOf(*text->second, "Val"),
                     concat(" in ", sources[i].name, atLine(*text->second))});
  }
  return all;
}

constexpr char kFileSuffix[] = ".xml";

// The files of texts that go with a file of parameters: a device's, or those given with it.
struct TextFiles {
  std::string directory;
  std::vector<std::string> names;

  std::string whyMissing(const std::string& language) const {
    const std::string name = language + kFileSuffix;
    return isAmong(names, name) ? "" : concat(": there is no ", directory, clipped(name));
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

void checkOffered(const Item& item, const TextFiles& files) {
  const std::vector<std::string> options = settings::optionsIn(item.text("OptTxt"));
  if (options.empty()) return;
  for (const std::string& name : files.names)
    if (device::isXmlName(name) && !isAmong(options, name.substr(0, name.rfind('.'))))
      item.addOf(kLanguageNotOffered, "OptTxt",
                 concat(" does not list ", quoted(name.substr(0, name.rfind('.'))), ", which ",
                        files.directory, clipped(name), " has the texts of"));
}

void checkTextFile(const Item& item, const TextFiles& files) {
  const std::string language = item.text("Cur");
  for (const std::string& option : settings::optionsIn(item.text("OptTxt"))) {
    const std::string why = files.whyMissing(option);
    if (option != language && !why.empty()) item.addAt(kLanguageOptionMissing, "OptTxt", why);
  }
  checkOffered(item, files);
  const std::string why = files.whyMissing(language);
  if (!language.empty() && !why.empty()) item.addAt(kLanguageMissing, "Cur", why);
}

}  // namespace

void checkTranslations(const std::vector<Source>& sources, std::vector<Findings>& findings) {
  Languages languages;
  KnownTexts known;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (!sources[i].isWhole() || sources[i].kind != FileKind::Language) continue;
    languages[i] = textsOf(sources[i]);
    for (const auto& [key, text] : languages[i]) {
      Known& first = known[key];
      if (first.element == nullptr || isBlank(textOf(*first.element, "Val")))
        first = {&sources[i], text};
    }
  }
  for (const auto& [i, texts] : languages) {
    checkMissing(sources[i], known, languages, findings);
    checkUntranslated(texts, known, findings[i]);
    for (const auto& [key, text] : texts) checkTranslation(known.at(key), *text, findings[i]);
  }
  for (const auto& [key, first] : known)
    checkTranslated(translationsOf(key, languages, sources, findings));
}

void checkLanguages(const std::vector<Source>& sources, std::vector<Findings>& findings) {
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (!sources[i].isWhole() || sources[i].kind != FileKind::Parameters) continue;
    const XMLElement* system = sources[i].document->FirstChildElement(settings::kSystemSection);
    const XMLElement* element = system == nullptr ? nullptr : system->FirstChildElement("Language");
    const std::optional<TextFiles> files = textFilesFor(sources[i], sources);
    if (element != nullptr && files)
      checkTextFile(Item{*system, settings::kSystemSection, findings[i]}.inner(*element), *files);
  }
}

}  // namespace camcfg::tool::lint
