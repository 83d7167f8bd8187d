#include <camcfg/params.h>

#include "base/name_matches.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

void checkElsewhere(const XMLElement& parent, Findings& findings) {
  for (const XMLElement* element : childrenOf(parent)) {
    if (has(*element, "Val"))
      findings.add(
          kTextNotFound, *element,
          clipped(element->Name()) + " is not right inside the first element, and so is not found");
    checkElsewhere(*element, findings);
  }
}

void checkTexts(const XMLElement& top, Findings& findings) {
  const Elements texts = childrenOf(top);
  const std::vector<NameMatches> matches = matchNames(namesOf(texts));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const Item text{*texts[i], clipped(texts[i]->Name()), findings};
    text.checkCase({"Val"});
    text.requireFits("Val", CFG_LANG_TEXT_SIZE - 1);
    if (matches[i].same != i)
      text.add(kTextTwice, ": a lookup finds the one" + atLine(*texts[matches[i].same]));
    if (!text.has("Val") && text.element.FirstChildElement() == nullptr)
      text.add(kTextMissing, " has no \"Val\"");
    checkElsewhere(text.element, findings);
  }
}

}  // namespace

void checkLanguage(const Source& source, Findings& findings) {
  const Elements tops = childrenOf(*source.document);
  checkTexts(*tops.front(), findings);
  for (std::size_t i = 1; i < tops.size(); ++i) checkElsewhere(*tops[i], findings);
}

}  // namespace camcfg::tool::lint
