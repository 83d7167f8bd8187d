#ifndef CAMCFG_TOOL_BASE_LINE_DIFF_H
#define CAMCFG_TOOL_BASE_LINE_DIFF_H

#include <string>
#include <string_view>

namespace camcfg::tool {

/// What changes in a text, line by line: after "--- NAME" and "+++ NAME", each place as "@@ -LINE,COUNT
/// +LINE,COUNT @@" with the lines that go and those that come. Control characters are written out. Empty
/// if nothing changes.
std::string lineDiff(const std::string& name, std::string_view before, std::string_view after);

}  // namespace camcfg::tool

#endif
