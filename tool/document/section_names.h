#ifndef CAMCFG_TOOL_DOCUMENT_SECTION_NAMES_H
#define CAMCFG_TOOL_DOCUMENT_SECTION_NAMES_H

#include <string>
#include <vector>

namespace camcfg::tool::document {

// What somebody calls a section: that of a document, "live.srt", or a group of them, "live"; or a
// section of parameters, "System", of which "NetWork" is the cards and the host name.

/// The sections of a document, and their groups.
std::vector<std::string> exportNames();

/// The sections of parameters; none if they cannot be read.
std::vector<std::string> parameterSections();

/// All of them.
std::vector<std::string> sectionNames();

/// Why a name is none of them, with the nearest.
std::string whyNoSection(const std::string& name);

}  // namespace camcfg::tool::document

#endif
