#ifndef CAMCFG_TOOL_BASE_ELEMENTS_H
#define CAMCFG_TOOL_BASE_ELEMENTS_H

#include <tinyxml2.h>

#include <vector>

namespace camcfg::tool {

/// The child elements of a node, in document order.
template <typename Node>
auto childrenOf(Node& parent) {
  std::vector<decltype(parent.FirstChildElement())> children;
  for (auto* child = parent.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    children.push_back(child);
  return children;
}

}  // namespace camcfg::tool

#endif
