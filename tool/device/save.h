#ifndef CAMCFG_TOOL_DEVICE_SAVE_H
#define CAMCFG_TOOL_DEVICE_SAVE_H

#include <string>
#include <vector>

namespace camcfg::tool::device {

/// A main copy and all that it holds.
struct Contents {
  std::string path;
  std::string bytes;
};

/// The bytes of a file.
/// @throws Refusal (unusable) if it cannot be read
std::string bytesOf(const std::string& path);

/// Saves files byte for byte through the library, as it saves a document: main copy, flush, backup,
/// flush. Several are saved side by side, since most of the time goes into waiting for the medium.
/// The library does not report a failed write, so the caller reads them back.
void saveContents(const std::vector<Contents>& files);

/// Whether main copy and backup hold exactly these bytes.
bool holds(const Contents& file);

}  // namespace camcfg::tool::device

#endif
