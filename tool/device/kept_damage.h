#ifndef CAMCFG_TOOL_DEVICE_KEPT_DAMAGE_H
#define CAMCFG_TOOL_DEVICE_KEPT_DAMAGE_H

#include <string>

namespace camcfg::tool::device {

/// Keeps the bytes of a damaged copy, "/cfg0/x.xml", as "/cfg1/.camcfg/damaged/cfg0-x.xml.1", with the
/// next number if that is taken by other bytes. Of each copy the last few are kept. They are on the
/// medium when this returns.
/// @return where they are
/// @throws Refusal  they cannot be read or written
std::string keepDamaged(const std::string& path);

}  // namespace camcfg::tool::device

#endif
