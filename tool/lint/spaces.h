#ifndef CAMCFG_TOOL_LINT_SPACES_H
#define CAMCFG_TOOL_LINT_SPACES_H

#include <string_view>
#include <vector>

namespace camcfg::tool::lint {

/// White space that can go: each is a part of the bytes. Doubled between the parts of a tag, or at the
/// end of a line in a tag or between two of them; never in comments, texts or values.
/// @param bytes  of a document that the library loads
std::vector<std::string_view> extraSpacesIn(std::string_view bytes);

}  // namespace camcfg::tool::lint

#endif
