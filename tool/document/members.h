#ifndef CAMCFG_TOOL_DOCUMENT_MEMBERS_H
#define CAMCFG_TOOL_DOCUMENT_MEMBERS_H

#include <string>
#include <vector>

#include "base/json.h"
#include "settings/setting.h"

namespace camcfg::tool::document {

/// Sets members of a record by words of a command line, "port=9001". Numbers, words and texts are
/// written as they are; switches as "yes" or "no"; nothing after the sign is null where a member may
/// have no value, and "none" is, too, in place of an id. Lists have commas between their elements: "allowed=0,2"; of records, colons between
/// the members, those first that it cannot do without, and "+" in a list inside:
/// "channels=0:video,8:audio", "streams=program:12+8". A record of a list that was there already, by its
/// key, keeps what is not said of it. Whether a value is permitted is left to whoever reads the record.
/// @param place  of the record, the beginning of a refusal: "live.srt[1]"
/// @throws Refusal  a word is not of this form, or names an unknown member, or one twice
void assign(const settings::Settings& settings, const std::vector<std::string>& words,
            const std::string& place, Json& record);

/// The setting that a word "port=9001" is about; null if it is none.
const settings::Setting* memberOf(const settings::Settings& settings, const std::string& word);

/// What such a list looks like: "ID,...", "ID:CHANNELS+...:DEFAULT,...".
std::string typedForm(const settings::Setting& list);

/// A value as a command line has it.
Json valueFromWord(const settings::Setting& setting, const std::string& text);

}  // namespace camcfg::tool::document

#endif
