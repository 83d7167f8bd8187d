#ifndef CAMCFG_TOOL_LINT_NEAR_NAMES_H
#define CAMCFG_TOOL_LINT_NEAR_NAMES_H

#include <tinyxml2.h>

#include <string_view>

#include "lint/findings.h"
#include "settings/network.h"
#include "settings/system.h"

namespace camcfg::tool::lint {

/// Whether a name is another one except for upper and lower case, or one letter. Names that differ by
/// a digit are of different things.
bool isNearMiss(std::string_view name, std::string_view meant);

/// Adds that nobody reads an element whose name is nearly one that is looked for.
void addNearName(const tinyxml2::XMLElement& element, std::string_view meant, Findings& findings);

/// What its author meant to be the network section: null if there is one, or nothing comes near.
const tinyxml2::XMLElement* nearNetwork(const tinyxml2::XMLDocument& document);

/// The child that is meant to be one of this name: null if there is one, or nothing comes near.
/// @param isKnown  whether a name is one that readers look for
const tinyxml2::XMLElement* nearChild(const tinyxml2::XMLNode& parent, std::string_view meant,
                                      bool (*isKnown)(std::string_view name));

/// The names of top elements that readers look for.
inline constexpr const char* kTops[] = {settings::kSystemSection, settings::kNetworkSection,
                                        "PresetCfg", "Stream", "LiveMediaService"};

/// Whether readers look for a top element of exactly this name.
bool isKnownTop(std::string_view name);

/// The element that all is wrapped into, where no reader looks; null if there is no such element.
const tinyxml2::XMLElement* wrapperIn(const tinyxml2::XMLDocument& document);

}  // namespace camcfg::tool::lint

#endif
