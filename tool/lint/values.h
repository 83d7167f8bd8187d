#ifndef CAMCFG_TOOL_LINT_VALUES_H
#define CAMCFG_TOOL_LINT_VALUES_H

#include <optional>
#include <string>

#include "lint/elements.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

// What several subjects look for. `owner` is how a finding calls the element: "System/Rtsp".

/// The integer that readers get of an attribute; none if it is missing or no integer to them. What
/// they read otherwise than it looks is found.
std::optional<int> checkInteger(const tinyxml2::XMLElement& element, const char* attribute,
                                const std::string& owner, Findings& findings);

/// Finds that an attribute is missing which a reader needs.
/// @param reader  "CFG_COM_GetIntParams"
void requireAttribute(const tinyxml2::XMLElement& element, const char* attribute,
                      const std::string& owner, const char* reader, Findings& findings);

/// Finds an attribute that is longer than what readers have room for, in bytes.
void requireFits(const tinyxml2::XMLElement& element, const char* attribute, std::size_t room,
                 const std::string& owner, Findings& findings);

/// Finds a port, given by what is read of it, that does not exist.
void requirePort(const tinyxml2::XMLElement& element, const char* attribute,
                 const std::optional<int>& port, const std::string& owner, Findings& findings);

/// Finds attributes whose names differ from ones that readers know only in upper and lower case.
void checkAttributeCase(const tinyxml2::XMLElement& element, const std::vector<const char*>& known,
                        const std::string& owner, Findings& findings);

/// Looks at entries whose "Id" distinguishes them, in document order: one without takes the id
/// of the one before it in searches by id, and of equal ids only the first is found.
/// @param owner  how findings call an entry: "preset"
void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings);

/// Finds ids that an earlier one of the entries has. Entries without a readable "Id" are passed by.
void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
