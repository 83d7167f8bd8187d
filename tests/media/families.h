#ifndef CAMCFG_TESTS_MEDIA_FAMILIES_H
#define CAMCFG_TESTS_MEDIA_FAMILIES_H

#include <ostream>
#include <string>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"

namespace camcfg::tests {

/// One of the two families that share the media file: what a test needs of its interface and its
/// console lines.
struct Family {
  const char* name;   // as part of a test's name
  const char* top;    // the family's element at the top of the file
  const char* frame;  // its name in console lines
  tinyxml2::XMLDocument*& handle;
  std::int32_t failure;
  tinyxml2::XMLElement* (*open)(const char* section, tagBU_BOOL readOnly);
  std::int32_t (*closeRead)();
  std::int32_t (*closeWrite)();

  std::string line(const std::string& level, const std::string& message) const {
    return "[" + level + "][CFG][" + frame + "]: " + message + "\n";
  }
  std::string error(const std::string& message) const { return line("Error", message); }
  std::string warning(const std::string& message) const { return line("Warning", message); }
  std::string info(const std::string& message) const { return line("Info", message); }

  /// The line about a required attribute.
  std::string required(const std::string& attribute, const std::string& path) const {
    return error("Attr `" + attribute + "` is required by " + path + " .");
  }
};

inline void PrintTo(const Family& family, std::ostream* out) {
  *out << family.name;
}

inline const Family kStreams{"Streams",   "Stream",     "MppStream",       g_STREAM_xmlDoc,
                             CFG_MPP_ERR, CFG_MPP_Open, CFG_MPP_CloseRead, CFG_MPP_CloseWrite};
inline const Family kServices{"Services", "LiveMediaService", "LiveMedia",      g_LM_xmlDoc,
                              CFG_LM_ERR, CFG_LM_Open,        CFG_LM_CloseRead, CFG_LM_CloseWrite};

}  // namespace camcfg::tests

#endif
