#ifndef CAMCFG_TOOL_UPGRADE_PARSED_H
#define CAMCFG_TOOL_UPGRADE_PARSED_H

#include <memory>
#include <string>

#include "device/files.h"

namespace camcfg::tool::upgrade {

/// A text as the library parses files; with an error if it is not well-formed.
inline device::Document parsed(const std::string& text) {
  auto document = std::make_unique<tinyxml2::XMLDocument>(true, tinyxml2::PRESERVE_WHITESPACE);
  document->Parse(text.data(), text.size());
  return document;
}

}  // namespace camcfg::tool::upgrade

#endif
