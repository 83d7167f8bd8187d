#ifndef CAMCFG_STORE_XML_FILE_H
#define CAMCFG_STORE_XML_FILE_H

#include <tinyxml2.h>

namespace camcfg {

/// Loads a file into a document. The file is closed again even when memory runs out.
/// @throws std::bad_alloc
bool loadXml(tinyxml2::XMLDocument& document, const char* path);

/// Writes a document to a file, not compact; the outcome stands in the document's error state.
/// @throws std::bad_alloc with the file closed and incomplete
void saveXml(tinyxml2::XMLDocument& document, const char* path);

}  // namespace camcfg

#endif
