#ifndef CAMCFG_TOOL_FRAME_RENDER_H
#define CAMCFG_TOOL_FRAME_RENDER_H

#include <string>

#include "frame/answer.h"

namespace camcfg::tool {

/// The answer as a person reads it: its layout, block by block.
std::string renderText(const Answer& answer);

/// The answer as a program reads it: its value. Bytes that are not UTF-8 become U+FFFD.
std::string renderJson(const Answer& answer);

}  // namespace camcfg::tool

#endif
