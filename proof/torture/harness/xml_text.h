#ifndef CAMCFG_TORTURE_HARNESS_XML_TEXT_H
#define CAMCFG_TORTURE_HARNESS_XML_TEXT_H

#include <optional>
#include <string>

namespace camcfg::torture {

/// The settings that a file's text holds, in one form however it is laid out and commented; none for
/// a text that does not parse.
std::optional<std::string> settingsOf(const std::string& text);

}  // namespace camcfg::torture

#endif
