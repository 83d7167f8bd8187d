#ifndef CAMCFG_TOOL_CLI_MAN_PAGE_H
#define CAMCFG_TOOL_CLI_MAN_PAGE_H

#include <string>
#include <vector>

#include "cli/command.h"

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

/// The manual page camcfg(1), for man(1): all commands that are not hidden, with what they take, and
/// all topics. The topics exit-status, environment, files and examples become the sections of these
/// names, the others are in a section of notes.
std::string manPage(const std::vector<CommandGroup>& groups, const std::vector<Topic>& topics);

}  // namespace camcfg::tool::cli

#endif
