#ifndef CAMCFG_TOOL_REPORT_SOURCES_H
#define CAMCFG_TOOL_REPORT_SOURCES_H

#include <string>

#include "base/json.h"
#include "document/document.h"

namespace camcfg::tool::report {

// What facts are gathered from.

/// What `status` and `lint` find, worst first: "severity" (unusable, error, degraded or warning), "text",
/// "place" of the setting or the file, "why" it matters, the "fix" in words, the "command", the "rule", "file"
/// and "line"; null where there is nothing.
/// @param health    as `status` has it
/// @param isDevice  see factsOf
Json findingsOf(const Json& health, bool isDevice);

/// All sections of a document: "name", "fault" if they cannot be read, "unread" entries, and
/// "rows" of settings ("name", "value", "factory", "permitted", "unit", "help"), or, of lists, "members" with
/// the last three and "entries", with "factory", those of the factory set; null where there is none.
/// @param factory  see factorySet
Json sectionsOf(const document::CopiedSections& factory);

/// The sections of the factory set, as far as they can be read.
document::CopiedSections factorySet();

/// What the services send: "service", "name", the "address" as a player has it, what else it "needs", and
/// "enabled".
/// @param facts  as far as they are known
Json servicesOf(const Json& facts);

}  // namespace camcfg::tool::report

#endif
