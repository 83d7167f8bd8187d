#ifndef CAMCFG_TESTS_TOOL_JSON_IN_H
#define CAMCFG_TESTS_TOOL_JSON_IN_H

#include "base/json.h"

namespace camcfg::tests {

/// The value of a text that is JSON; null for any other text.
inline tool::Json jsonIn(const std::string& text) {
  return tool::readJson(text).value;
}

}  // namespace camcfg::tests

#endif
