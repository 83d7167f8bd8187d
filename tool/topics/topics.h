#ifndef CAMCFG_TOOL_TOPICS_TOPICS_H
#define CAMCFG_TOOL_TOPICS_TOPICS_H

#include <vector>

#include "cli/topic.h"

namespace camcfg::tool {

/// All topics, by name: the text files of this folder, which the build puts into the tool. The first
/// line of a file is the topic's title, an empty line follows.
const std::vector<cli::Topic>& allTopics();

}  // namespace camcfg::tool

#endif
