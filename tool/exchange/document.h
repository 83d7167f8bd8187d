#ifndef CAMCFG_TOOL_EXCHANGE_DOCUMENT_H
#define CAMCFG_TOOL_EXCHANGE_DOCUMENT_H

#include <string>
#include <vector>

#include "exchange/faults.h"
#include "exchange/section.h"
#include "frame/answer.h"

namespace camcfg::tool {

// A document is an object with its version and, below their names, the sections.

constexpr char kVersionMember[] = "version";
constexpr int kVersion = 1;

/// Where a section stands in a document.
Json::json_pointer pointerTo(const Section& section);

/// Whether a section is of this name, or in the group of this name: "live.srt" in "live".
bool isWithin(const Section& section, const std::string& name);

/// A section before an import and after it.
struct Transition {
  const Section* section;
  Json before;
  Json after;
};

/// Reads a document and checks it against the device; all that is wrong with it goes to `faults`.
/// @return the sections that it holds and that differ from the device
/// @throws Refusal if the device's files are unusable
std::vector<Transition> readDocument(const Json& document, Faults& faults);

}  // namespace camcfg::tool

#endif
