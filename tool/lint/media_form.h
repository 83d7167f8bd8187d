#ifndef CAMCFG_TOOL_LINT_MEDIA_FORM_H
#define CAMCFG_TOOL_LINT_MEDIA_FORM_H

#include "lint/elements.h"
#include "lint/findings.h"
#include "settings/media.h"

namespace camcfg::tool::lint {

/// A section of the media file in a document; null if it is missing.
const tinyxml2::XMLElement* sectionOf(const tinyxml2::XMLDocument& document,
                                      const settings::Table& table);

/// The elements of a section that become entries.
Elements entriesOf(const tinyxml2::XMLDocument& document, const settings::Table& table);

/// Looks at all that is in a section by the rows of its table.
void checkSection(const tinyxml2::XMLElement& section, const settings::Table& table,
                  Findings& findings);

/// The children that a loader takes for entries of this name.
Elements entriesOf(const tinyxml2::XMLElement& parent, const char* name);

/// Finds names that an earlier one of the entries has in the same attribute.
void checkEqualNames(const Elements& entries, const char* attribute, const std::string& owner,
                     Findings& findings);

}  // namespace camcfg::tool::lint

#endif
