#ifndef CAMCFG_TOOL_LINT_MEDIA_FORM_H
#define CAMCFG_TOOL_LINT_MEDIA_FORM_H

#include "lint/item.h"
#include "media/media.h"

namespace camcfg::tool::lint {

/// The elements of a section of the media file that become entries; none if it is missing.
Elements entriesIn(const tinyxml2::XMLDocument& document, const settings::Table& table);

/// Looks at all that is in a section, if it is there, by the rows of its table.
void checkForm(const tinyxml2::XMLDocument& document, const settings::Table& table,
               Findings& findings);

}  // namespace camcfg::tool::lint

#endif
