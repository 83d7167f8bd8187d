#ifndef CAMCFG_STORE_XML_FILE_H
#define CAMCFG_STORE_XML_FILE_H

#include <sys/types.h>
#include <tinyxml2.h>

namespace camcfg {

/// Whether `error` says that memory or descriptors ran out, which says nothing about the file.
bool isShortage(int error);

enum class Load {
  Done,
  Failed,   ///< the file is missing, no regular file, or damaged
  Shortage  ///< memory or descriptors ran out; the file may be as it should
};

/// Which file a path led to; zero when it led to none.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
};

/// Loads a regular file into a document.
/// @param file  receives which file that was; null: not wanted
Load loadXml(tinyxml2::XMLDocument& document, const char* path, FileIdentity* file = nullptr);

/// Writes a document to a file, not compact; the outcome is the document's error state.
/// @return false when memory ran out; the file is incomplete or empty then, if it could be opened
bool saveXml(tinyxml2::XMLDocument& document, const char* path);

}  // namespace camcfg

#endif
