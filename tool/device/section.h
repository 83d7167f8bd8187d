#ifndef CAMCFG_TOOL_DEVICE_SECTION_H
#define CAMCFG_TOOL_DEVICE_SECTION_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "device/change.h"
#include "settings/node.h"
#include "settings/setting.h"

namespace camcfg::tool::device {

struct Section;

/// What sections will hold after an import, by name: those of the document that were read already,
/// the device's own otherwise.
class Plan {
 public:
  /// @param sections  all there are; must outlive this object
  explicit Plan(const std::vector<Section>& sections) : sections_(sections) {}

  void set(const std::string& section, Json value) { values_[section] = std::move(value); }
  /// @throws Refusal if the section is unusable on the device
  const Json& of(const std::string& name);
  /// What the device has now.
  /// @throws Refusal if the section is unusable on the device
  const Json& present(const std::string& name);

 private:
  const std::vector<Section>& sections_;
  std::map<std::string, Json> values_;
  std::map<std::string, Json> present_;
};

/// Something in a file that keeps a section, or an entry of it, from being read.
struct Unread {
  std::string fault;  ///< where it is and why: "/cfg0/mpp_cfg.xml:57: ..."
  std::string was;    ///< as the file has it, passwords masked; empty if the section is missing
};

/// As much of a section as can be read.
struct Readable {  // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;
  std::vector<Unread> unread;  ///< what is left out; none if this is all
};

/// A part of the device's settings that is exported and imported by itself. Its JSON has one form
/// for one state of the device: two states are the same if their JSON is.
struct Section {
  std::string name;  ///< "live.srt", which is also its place in a document

  /// The section as the device has it.
  /// @throws Refusal if the files are unusable
  std::function<Json()> load;

  /// Reads the section from a document and checks it; faults go to the node.
  /// @param before  the section as the device has it
  /// @return the section as it will be on the device
  std::function<Json(const settings::Node&, const Json& before, Plan&)> read;

  /// The changes, in their order, that bring the section from one state to another.
  /// @param force  makes those that can be forced
  std::function<std::vector<Change>(const Json& before, const Json& after, bool force)> changes;

  const char* path;                        ///< main copy of the file that it is in
  const settings::Table* table = nullptr;  ///< of its entries, where it has any

  /// What can be read if not all can; none: all or nothing.
  /// @throws Refusal if the file cannot be loaded
  std::function<Readable()> readable{};

  /// The changes that bring the section to a state whatever the file has in its place.
  std::function<std::vector<Change>(const Json& after)> replacement{};

  /// What changing it will lose, a remark each; none: nothing.
  std::function<std::vector<std::string>()> losses{};
};

/// As much of a section as can be read.
/// @throws Refusal if that is nothing
Readable readableOf(const Section& section);

/// What a new device has for the parameters and cards of "/cfg0/business_param.xml": what its factory
/// copy holds. Where that is missing or broken, or lacks the element, its "Def" is used instead.
class FactoryValues {
 public:
  FactoryValues();

  /// The factory value of an element of the main copy; none if neither has one.
  std::optional<std::string> of(const tinyxml2::XMLElement& element) const;
  /// The same for an attribute that has no "Def".
  std::optional<std::string> attributeOf(const tinyxml2::XMLElement& element,
                                         const char* attribute) const;

  /// Why the factory copy cannot be asked, with its path; empty if it can.
  const std::string& fault() const { return fault_; }

 private:
  Document document_;
  std::string fault_;
};

}  // namespace camcfg::tool::device

#endif
