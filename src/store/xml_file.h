#ifndef CAMCFG_STORE_XML_FILE_H
#define CAMCFG_STORE_XML_FILE_H

#include <tinyxml2.h>

namespace camcfg {

/// Whether `error` says that memory or descriptors ran out, which says nothing about the file.
bool isShortage(int error);

enum class Load {
  Done,
  Failed,   ///< the file is missing, no regular file, or damaged
  Shortage  ///< memory or descriptors ran out; the file may be as it should
};

/// Loads a regular file into a document.
Load loadXml(tinyxml2::XMLDocument& document, const char* path);

/// Writes a document to a file, not compact; the outcome is the document's error state.
/// @return false when memory ran out; the file is incomplete or empty then, if it could be opened
bool saveXml(tinyxml2::XMLDocument& document, const char* path);

}  // namespace camcfg

#endif
