#ifndef CAMCFG_TOOL_DOCUMENT_PLACED_H
#define CAMCFG_TOOL_DOCUMENT_PLACED_H

#include <functional>
#include <string>

#include "device/section.h"
#include "settings/setting.h"

namespace camcfg::tool::document {

/// A setting where a document has it. All but the parameters, which have no settings of ours, are.
struct Placed {
  std::string place;  ///< "live.srt[1].port"
  const settings::Setting& setting;
  Json& value;
  std::string of;  ///< what says which entry it is of: a label, a preset's description, a card
};

/// Calls something for each setting of a section, in the order of a document. A list of records is
/// not a setting; those of its records are.
/// @param value  the section
void forEachSetting(const device::Section& section, Json& value,
                    const std::function<void(const Placed&)>& visit);

/// The same for the setting at one place.
/// @return false if there is none
bool forOne(const device::Section& section, Json& value, const std::string& place,
            const std::function<void(const Placed&)>& use);

/// The same.
/// @throws Refusal if there is none
void at(const device::Section& section, Json& value, const std::string& place,
        const std::function<void(const Placed&)>& use);

/// What is at a place that is no setting: an entry, a list of records, a part of a value. Null if nothing
/// is.
/// @param own  the place of the value
const Json* partAt(const std::string& own, const Json& value, const std::string& place);

/// Whether a word begins like a place in a section of a document other than the parameters.
bool isInDocument(const std::string& word);

/// The section that a place is in.
/// @throws Refusal if it is in none
const device::Section& requireSection(const std::string& place);

/// "network.cards.Lan0.mtu"
std::string placeOfCard(const std::string& card, const settings::Setting& setting);

/// The member that distinguishes the entries of a section; null if it has none.
const char* keyOf(const device::Section& section);

/// Gives the places of faults the keys of entries, where a document that was read counts them:
/// "stream.caches[12].size" instead of "stream.caches[10].size".
/// @param value  the section that was read
void nameByKeys(const device::Section& section, const Json& value, settings::Faults& faults);

}  // namespace camcfg::tool::document

#endif
