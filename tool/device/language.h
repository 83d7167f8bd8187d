#ifndef CAMCFG_TOOL_DEVICE_LANGUAGE_H
#define CAMCFG_TOOL_DEVICE_LANGUAGE_H

#include <string>
#include <vector>

#include "device/copy.h"

namespace camcfg::tool::device {

/// The names of all language files, without ".xml".
std::vector<std::string> languages();

/// The texts of a language.
/// @throws Refusal if there is no such language or its file is unusable
Document requireTexts(const std::string& language);

/// The keys of all texts.
std::vector<std::string> keysOf(const tinyxml2::XMLDocument& texts);

}  // namespace camcfg::tool::device

#endif
