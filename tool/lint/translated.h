#ifndef CAMCFG_TOOL_LINT_TRANSLATED_H
#define CAMCFG_TOOL_LINT_TRANSLATED_H

#include <string>
#include <vector>

#include "lint/item.h"

namespace camcfg::tool::lint {

/// A text in one of the languages.
struct Translated {
  Item item;
  std::string text;
  std::string place;  ///< " in German.xml at line 7"
};

/// Looks at one text in all languages that have it, for what only some of them have.
void checkTranslated(const std::vector<Translated>& all);

/// How many words a text has.
std::size_t wordsIn(std::string_view text);

}  // namespace camcfg::tool::lint

#endif
