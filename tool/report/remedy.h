#ifndef CAMCFG_TOOL_REPORT_REMEDY_H
#define CAMCFG_TOOL_REPORT_REMEDY_H

#include <string>

namespace camcfg::tool::report {

/// The command for a finding: one that its rule names, about this place, or one that sets what is there.
/// What its reader has to decide is in capital letters. Empty if there is none.
/// @param place  "live.srt[1].port"; empty: a file as a whole
/// @param fix    what the rule says of it
std::string remedyFor(const std::string& place, const std::string& fix);

}  // namespace camcfg::tool::report

#endif
