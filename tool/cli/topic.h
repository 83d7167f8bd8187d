#ifndef CAMCFG_TOOL_CLI_TOPIC_H
#define CAMCFG_TOOL_CLI_TOPIC_H

#include <vector>

namespace camcfg::tool::cli {

/// Something that is explained apart from the commands.
struct Topic {
  const char* name;   ///< "exit-status"
  const char* title;  ///< one line
  /// Paragraphs with empty lines between them; lines that begin with spaces stay as they are.
  const char* text;
};

/// All topics, by name: the text files in tool/topics, which the build puts into the tool. The first
/// line of a file is the topic's title, an empty line follows.
const std::vector<Topic>& allTopics();

}  // namespace camcfg::tool::cli

#endif
