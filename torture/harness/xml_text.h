#ifndef CAMCFG_TORTURE_HARNESS_XML_TEXT_H
#define CAMCFG_TORTURE_HARNESS_XML_TEXT_H

#include <optional>
#include <string>

namespace camcfg::torture {

/// What a file's text says, in one form however it is laid out; none for a text that does not parse.
std::optional<std::string> settingsOf(const std::string& text);

}  // namespace camcfg::torture

#endif
