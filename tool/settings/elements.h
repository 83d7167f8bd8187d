#ifndef CAMCFG_TOOL_SETTINGS_ELEMENTS_H
#define CAMCFG_TOOL_SETTINGS_ELEMENTS_H

#include <vector>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// Replaces a section of the live media services by entries, written by the rows of the table. For
/// the entries that the library does not save as it loads them.
/// @return 0, or the library's failure
int storeElements(const Table& table, const Json& entries);

/// An attribute as a loader reads it.
struct AttributeForm {
  const char* name;
  Kind kind;  ///< Integer, Text or Switch
  Need need;
  bool isSaved;  ///< the library writes it when it saves the section
};

/// An element as loaders read it and the library writes it.
struct ElementForm {
  const char* name;
  std::vector<AttributeForm> attributes;
  std::vector<ElementForm> children;
};

/// The forms of a table's entries, one for each name.
std::vector<ElementForm> formsOf(const Table& table);

/// The "Type" of each channel that an entry may have once.
std::vector<const char*> channelTypesOf(const Table& table);

}  // namespace camcfg::tool::settings

#endif
