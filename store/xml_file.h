#ifndef CAMCFG_STORE_XML_FILE_H
#define CAMCFG_STORE_XML_FILE_H

#include <tinyxml2.h>

namespace camcfg {

/// Tells a call that failed for want of memory or descriptors, which says nothing about its file,
/// from other failures.
/// @throws std::bad_alloc  if `error` says so
void throwIfShort(int error);

/// Loads a regular file into a document. The file is closed again even when memory runs out.
/// @throws std::bad_alloc  also when the file cannot be opened because memory or descriptors ran
///                         out, which says nothing about the file
bool loadXml(tinyxml2::XMLDocument& document, const char* path);

/// Writes a document to a file, not compact; the outcome stands in the document's error state.
/// @throws std::bad_alloc  with the file closed: incomplete if memory ran out while it was written,
///                         untouched if memory ran out before
void saveXml(tinyxml2::XMLDocument& document, const char* path);

}  // namespace camcfg

#endif
