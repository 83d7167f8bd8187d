#include <cctype>
#include <map>
#include <string_view>

#include "lint/item.h"
#include "lint/lint.h"
#include "lint/rules.h"

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

}  // namespace camcfg::tool::lint
