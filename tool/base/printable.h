#ifndef CAMCFG_TOOL_BASE_PRINTABLE_H
#define CAMCFG_TOOL_BASE_PRINTABLE_H

#include <string>

namespace camcfg::tool {

/// The text with its control characters written as "\n", "\t", "\x1b" or "\u009b": it stays on its
/// line and cannot steer a terminal.
std::string printable(const std::string& text);

/// The text with its endless words cut, so that a line about one can still be read.
std::string withShortWords(const std::string& text);

/// How many characters a UTF-8 text has.
std::size_t characters(const std::string& text);

}  // namespace camcfg::tool

#endif
