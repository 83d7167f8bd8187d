#ifndef CAMCFG_TESTS_MEDIA_EVERY_SOURCE_H
#define CAMCFG_TESTS_MEDIA_EVERY_SOURCE_H

#include <string>

namespace camcfg::tests {

/// The entries of a cache that allows sources 0 to 30 and carries the last, which has this mark.
inline std::string everySource(const std::string& mark) {
  std::string entries;
  for (int id = 0; id < 30; ++id)
    entries += "    <AllowedStreamSource Id=\"" + std::to_string(id) + "\"/>\n";
  return entries + "    <AllowedStreamSource Id=\"30\" " + mark + "=\"1\"/>\n";
}

}  // namespace camcfg::tests

#endif
