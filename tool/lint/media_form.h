#ifndef CAMCFG_TOOL_LINT_MEDIA_FORM_H
#define CAMCFG_TOOL_LINT_MEDIA_FORM_H

#include <vector>

#include "lint/elements.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

/// How a loader reads an attribute.
enum class Form {
  Text,
  Integer,
  Switch,  ///< "true", in upper or lower case, is on; anything else is off
};

enum class Need {
  Required,  ///< without it the section does not load
  Carried,   ///< without it an entry takes that of the one before it
  Expected,  ///< without it an entry loads with an empty text, or a value that stands for none
  Optional,
};

struct AttributeForm {
  const char* name;
  Form form;
  Need need;
};

/// An entry of a section, as loaders read it. Names of entries are compared in upper or lower case.
struct EntryForm {
  const char* name;
  std::vector<AttributeForm> attributes;
  std::vector<EntryForm> children;
};

/// A section of the media file.
struct SectionForm {
  const char* parent;  ///< element at the top of the file
  const char* name;
  bool isSaved;  ///< there is a call that writes it anew, and drops what it does not know
  std::vector<EntryForm> entries;
};

/// The section in a document; null if it is missing.
const tinyxml2::XMLElement* sectionOf(const tinyxml2::XMLDocument& document,
                                      const SectionForm& form);

/// Looks at all that is in a section by the forms of its entries.
void checkSection(const tinyxml2::XMLElement& section, const SectionForm& form, Findings& findings);

/// The children that a loader takes for entries of this name.
Elements entriesOf(const tinyxml2::XMLElement& parent, const char* name);

/// Finds names that an earlier one of the entries has in the same attribute.
void checkEqualNames(const Elements& entries, const char* attribute, const std::string& owner,
                     Findings& findings);

}  // namespace camcfg::tool::lint

#endif
