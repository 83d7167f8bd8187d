#include <camcfg/params.h>

#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kTextMissing{"text-missing", Severity::Warning,
                            "A text has no \"Val\" and is found as the empty text.",
                            R"(<MenuLive Value="Live view"/>)"};
constexpr Rule kTextTwice{"text-twice", Severity::Error,
                          "A key occurs twice in a language file: the first is found.",
                          R"(<MenuLive Val="Live"/> and after it <MenuLive Val="Live view"/>)"};
constexpr Rule kTextNotFound{
    "text-not-found", Severity::Error,
    "Texts are looked up right inside the first element of the file: this one is elsewhere.",
    R"(<Texts><Menu><MenuLive Val="Live view"/></Menu></Texts>)"};

void checkElsewhere(const XMLElement& parent, Findings& findings) {
  for (const XMLElement* element : childrenOf(parent)) {
    if (has(*element, "Val"))
      findings.add(kTextNotFound, *element,
                   clipped(element->Name()) +
                       " is not right inside the first element, and so is "
                       "not found");
    checkElsewhere(*element, findings);
  }
}

void checkTexts(const XMLElement& top, Findings& findings) {
  const Elements texts = childrenOf(top);
  const std::vector<std::string_view> keys = namesOf(texts);
  const std::vector<NameMatches> matches = matchNames(keys);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string key = clipped(keys[i]);
    checkAttributeCase(*texts[i], {"Val"}, key, findings);
    requireFits(*texts[i], "Val", CFG_LANG_TEXT_SIZE - 1, key, findings);
    if (matches[i].same != i)
      findings.add(kTextTwice, *texts[i],
                   key + ": a lookup finds the one" + atLine(*texts[matches[i].same]));
    if (!has(*texts[i], "Val") && texts[i]->FirstChildElement() == nullptr)
      findings.add(kTextMissing, *texts[i], key + " has no \"Val\"");
    checkElsewhere(*texts[i], findings);
  }
}

void check(const Source& source, Findings& findings) {
  const Elements tops = childrenOf(*source.document);
  checkTexts(*tops.front(), findings);
  for (std::size_t i = 1; i < tops.size(); ++i) checkElsewhere(*tops[i], findings);
}

}  // namespace

Subject language() {
  return {"language files", {&kTextMissing, &kTextTwice, &kTextNotFound}, Kind::Language, check};
}

}  // namespace camcfg::tool::lint
