#ifndef CAMCFG_TOOL_REPORT_PAGE_H
#define CAMCFG_TOOL_REPORT_PAGE_H

#include <string>
#include <vector>

#include "report/parts.h"

namespace camcfg::tool::report {

/// A whole page in HTML, in one file: no script, nothing that is loaded, and a policy that holds browsers to
/// it. Its style is for light and dark screens of any width, and for paper.
/// @param title  a text
/// @param lead   what comes before the parts
std::string pageOf(const std::string& title, const std::string& lead,
                   const std::vector<Part>& parts);

/// The report of a device.
/// @param facts  see factsOf
std::string reportOf(const Json& facts);

}  // namespace camcfg::tool::report

#endif
