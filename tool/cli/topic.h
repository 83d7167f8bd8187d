#ifndef CAMCFG_TOOL_CLI_TOPIC_H
#define CAMCFG_TOOL_CLI_TOPIC_H

namespace camcfg::tool::cli {

/// Something that is explained apart from the commands.
struct Topic {
  const char* name;   ///< "exit-status"
  const char* title;  ///< one line
  /// Paragraphs with empty lines between them; lines that begin with spaces stand as they are.
  const char* text;
};

}  // namespace camcfg::tool::cli

#endif
