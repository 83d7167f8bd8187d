#ifndef CAMCFG_TOOL_CLI_ROFF_H
#define CAMCFG_TOOL_CLI_ROFF_H

#include <string>

namespace camcfg::tool::cli {

/// A text as roff prints it unchanged: quotes, hyphens and backslashes too, and a full stop that
/// begins a line.
std::string roffText(const std::string& text);

/// The same in bold and in italics, within a line.
std::string roffBold(const std::string& text);
std::string roffItalic(const std::string& text);

/// A text of paragraphs and of lines that begin with spaces, which stay as they are, in the macros
/// of man(7). It ends with a line break.
std::string roffParagraphs(const std::string& text);

}  // namespace camcfg::tool::cli

#endif
