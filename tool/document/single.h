#ifndef CAMCFG_TOOL_DOCUMENT_SINGLE_H
#define CAMCFG_TOOL_DOCUMENT_SINGLE_H

#include <string>
#include <utility>
#include <vector>

#include "base/outcome.h"
#include "document/exchange.h"

namespace camcfg::tool::document {

// Single settings by the places that a search and lists of changes print: "live.srt[1].port",
// "network.cards.Lan0.mtu", "presets[3].pan".

/// Where a document has a field of a network card that is among the parameters of its file:
/// "network.cards.Lan0.mtu" for "NetWork/Lan0/MTU"; and what lists of changes call a parameter as all
/// others call it: "System/Rtsp" for "parameters.System.Rtsp". Other words stay as they are.
std::string placeInDocument(const std::string& word);

/// A setting; or an entry, a list in one, a part of a value, of which nothing but the value is known.
/// @return "place", "value", secrets masked, "unit", "permitted" and "help"
/// @throws Refusal  the section cannot be read whole, or there is no such setting
Outcome getSingle(const std::string& place);

/// What is known of the session, preset or card that a setting is of.
/// @throws Refusal  no copy has it
device::Explanation explainSingle(const std::string& place, bool showSecrets);

/// Sets settings, with one save for each file, or none of them, and reports the changes as an import
/// does. Parameters may be among them.
/// @param assignments  places, or what a parameter goes by, each with its value as on a command line
/// @throws Refusal  before anything was written: as getSingle, a place is given twice
Outcome setSingles(const std::vector<std::pair<std::string, std::string>>& assignments,
                   const ImportOptions& options);

/// Puts the value of the factory set back, and reports that as an import does.
/// @throws Refusal  as getSingle; the factory set lacks it or is unusable
Outcome resetSingle(const std::string& place, const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
