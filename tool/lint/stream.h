#ifndef CAMCFG_TOOL_LINT_STREAM_H
#define CAMCFG_TOOL_LINT_STREAM_H

#include <string>

#include "lint/elements.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

/// The stream sources and caches of a media file that loaders take for such.
Elements sourcesIn(const tinyxml2::XMLDocument& document);
Elements cachesIn(const tinyxml2::XMLDocument& document);

/// How findings call a cache: "cache 3".
std::string labelOf(const tinyxml2::XMLElement& cache);

/// Finds a source id, in "Id", that whitelists cannot hold.
void checkSourceId(const tinyxml2::XMLElement& element, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
