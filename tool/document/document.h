#ifndef CAMCFG_TOOL_DOCUMENT_DOCUMENT_H
#define CAMCFG_TOOL_DOCUMENT_DOCUMENT_H

#include <string>
#include <vector>

#include "base/json.h"
#include "device/section.h"
#include "settings/faults.h"

namespace camcfg::tool::document {

// A document is an object with its version and, below their names, the sections.

constexpr char kVersionMember[] = "version";
constexpr int kVersion = 1;

/// All sections, in the order in which they are written.
const std::vector<device::Section>& allSections();

/// Where a section is in a document: "live/srt".
std::string pathTo(const device::Section& section);

/// Whether a section is of this name, or in the group of this name: "live.srt" in "live".
bool isWithin(const device::Section& section, const std::string& name);

/// A section before an import and after it.
struct Transition {
  const device::Section* section;
  Json before;
  Json after;
};

/// Reads a document and checks it against the device; all that is wrong with it goes to `faults`.
/// @return the sections that it holds and that differ from the device
/// @throws Refusal  the text is no JSON, with line and column; the device's files are unusable
std::vector<Transition> readDocument(const std::string& text, settings::Faults& faults);

/// JSON as a person would write it: what fits on one line is on one line. Ends with a line feed.
/// Bytes that are not UTF-8 become U+FFFD.
std::string printJson(const Json& value);

}  // namespace camcfg::tool::document

#endif
