#ifndef CAMCFG_TOOL_BASE_HOST_FILE_H
#define CAMCFG_TOOL_BASE_HOST_FILE_H

#include <string>

namespace camcfg::tool {

/// A file named on the command line, as it was before the device's root was entered.
struct HostFile {
  std::string path;      ///< as the caller named it
  std::string contents;  ///< all of it
  std::string fault;     ///< why it could not be read; empty if it could
};

}  // namespace camcfg::tool

#endif
