#ifndef CAMCFG_TOOL_DOCUMENT_COPIES_H
#define CAMCFG_TOOL_DOCUMENT_COPIES_H

#include <map>
#include <string>

#include "device/file_set.h"
#include "device/section.h"

namespace camcfg::tool::document {

/// A section of some copy of its file, or why there is none.
struct CopiedSection {  // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;
  std::string fault;  ///< "/cfg1/mpp_cfg.xml is missing"; empty if there is a value
};

/// All sections, by name, as the library would read them if the backup or factory copies were the
/// main copies. It reads main copies only, so a process of its own does that in a device of its own,
/// made among the temporary files of the system that the tool was started on.
/// @throws Refusal if that device cannot be made
std::map<std::string, CopiedSection> loadFromCopies(device::Place place);

/// The same of the main copies, which need no other device.
std::map<std::string, CopiedSection> loadFromMain();

}  // namespace camcfg::tool::document

#endif
