#ifndef CAMCFG_TOOL_DOCUMENT_SCHEMA_H
#define CAMCFG_TOOL_DOCUMENT_SCHEMA_H

#include "base/json.h"
#include "document/stated.h"

namespace camcfg::tool::document {

/// The versions of JSON Schema. What is printed keeps to what both have; only some names differ.
enum class Dialect { Draft202012, Draft07 };

/// "2020-12", "draft-07": in the order of the dialects.
extern const std::vector<std::string> kDialects;

/// The schema of documents that an import takes on this device: its limits, options, sections and cards. It
/// follows from the descriptions of settings.
/// @param mode  how documents are meant: those that are merged may leave out members of entries
/// @throws Refusal if the device's parameters are unusable
Json schemaOf(Dialect dialect, Mode mode);

}  // namespace camcfg::tool::document

#endif
