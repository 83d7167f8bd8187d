#ifndef CAMCFG_TOOL_CLI_SHELL_LINE_H
#define CAMCFG_TOOL_CLI_SHELL_LINE_H

#include <string>
#include <vector>

namespace camcfg::tool::cli {

/// A command line as it is typed into a shell, up to the cursor.
struct ShellLine {
  std::vector<std::string> words;  ///< without their quotes; the last is the begun one, maybe empty
  char quote = 0;                  ///< the quote that is open at the end; 0: none
  /// What the shell leaves in place of the last word when it completes it, without quotes: all up to
  /// the last character that breaks words, or up to the open quote.
  std::string kept;
};

/// Reads a line as bash does; variables and substitutions stand for themselves.
/// @param breaks  the characters that break words when bash completes them (COMP_WORDBREAKS)
ShellLine readShellLine(const std::string& line, const std::string& breaks);

/// A text as it has to be typed after an open quote, or outside of quotes.
std::string shellQuoted(const std::string& text, char quote);

}  // namespace camcfg::tool::cli

#endif
