#ifndef CAMCFG_TOOL_DOCUMENT_DOCUMENT_H
#define CAMCFG_TOOL_DOCUMENT_DOCUMENT_H

#include <map>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/save.h"
#include "device/section.h"
#include "document/stated.h"

namespace camcfg::tool::document {

// A document is an object with its version and, below their names, the sections.

constexpr char kVersionMember[] = "version";
constexpr int kVersion = 1;

// Sections that are not lists of media.
constexpr char kParameters[] = "parameters";
constexpr char kNetwork[] = "network";
constexpr char kPresets[] = "presets";

// A member of the section "network".
constexpr char kCards[] = "cards";

/// All sections, in the order in which they are written.
const std::vector<device::Section>& allSections();

/// The section of this name, which must be one.
const device::Section& sectionOf(const std::string& name);

/// Where a section is in a document: "live/srt".
std::string pathTo(const device::Section& section);

/// Whether a section is of this name, or in the group of this name: "live.srt" in "live".
bool isWithin(const device::Section& section, const std::string& name);

/// A section before an import and after it.
struct Transition {
  const device::Section* section;
  Json before;
  Json after;
  std::vector<device::Unread> replaced{};  ///< what could not be read, and makes way for the rest
};

/// What is to become of the device, gathered section by section.
struct Target {
  std::vector<Transition> transitions;  ///< of the sections that differ from the device
  settings::Faults faults;              ///< why it cannot be brought about
  device::Plan plan{allSections()};
  bool force = false;              ///< what can be forced is taken
  std::vector<std::string> notes;  ///< remarks on what it was made of

  /// Reads what a section is to be and checks it against the device and what was read before. Of a
  /// section that does not load whole, nothing stays that is not in the document.
  /// @throws Refusal if the device's files are unusable
  void read(const device::Section& section, const Json& stated);
  /// @param held  what the device has, as far as it can be read
  void read(const device::Section& section, const Json& stated, const device::Readable& held);
  void add(const device::Section& section, const Json& before, const Json& after);
};

/// Refuses texts that are not UTF-8 and not what the device has in their places.
void refuseNewBytes(const std::string& place, const Json& stated, const Json& held,
                    settings::Faults& faults);

/// Reads a document and checks it against the device.
/// @param force  takes what can be forced, and texts that are not UTF-8 and new to the device
/// @throws Refusal  the text is no JSON, with line and column; the device's files are unusable; what
///                  is to have factory values has none
Target readDocument(const std::string& text, Mode mode, bool force);

/// A section of some copy of its file, or why there is none.
struct CopiedSection {  // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;
  std::string fault;  ///< "/cfg1/mpp_cfg.xml is missing"; empty if there is a value
};

using CopiedSections = std::map<std::string, CopiedSection>;

/// All sections, by name, as the library would read them if these copies were the main copies. It
/// reads main copies only, so a process of its own does that in a device of its own, made among the
/// temporary files of the system that the tool was started on.
/// @throws Refusal if that device cannot be made
CopiedSections loadFrom(device::Place place);

/// The same of a device that has these main copies only. Of the sections of other files there are
/// none.
CopiedSections loadFrom(const std::vector<device::Contents>& files);

/// Why sections cannot be read, by name, of files that can be loaded. A section that is missing counts
/// where the factory set has it.
std::map<std::string, std::string> unreadSections();

/// What is different between two states: an array of objects of "place", "before" and "after", null
/// where there is nothing. Records in a list are distinguished by their "id", else by their "name",
/// else by their position; "live.srt[1].port" is of the one with the id 1.
Json differencesOf(const std::vector<Transition>& transitions, bool showSecrets);

/// How many entries a transition deletes. One that only has another key is not deleted.
std::size_t deletionsIn(const Transition& transition);

/// JSON as a person would write it: what fits on one line is on one line. Ends with a line feed.
/// Bytes that are not UTF-8 become U+FFFD.
std::string printJson(const Json& value);

}  // namespace camcfg::tool::document

#endif
