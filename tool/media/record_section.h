#ifndef CAMCFG_TOOL_MEDIA_RECORD_SECTION_H
#define CAMCFG_TOOL_MEDIA_RECORD_SECTION_H

#include <list>
#include <string>
#include <vector>

#include "device/section.h"
#include "media/losses.h"
#include "media/media.h"
#include "settings/members.h"

namespace camcfg::tool::media {

using Losses = std::vector<std::string>;

/// A section of "/cfg0/mpp_cfg.xml" that is exchanged as an array of records.
template <typename Record>
struct RecordSection {
  std::string name;
  settings::Members<Record> members;
  const char* key;  ///< member by which records are told apart
  std::function<std::list<Record>()> load;
  std::function<bool(const std::list<Record>&)> store;
  std::function<Losses()> losses;
  /// What a record must fulfil beyond the limits of its members; only asked when those are kept.
  std::function<void(const settings::Node&, const Record&, device::Plan&)> check = {};
};

template <typename Record>
std::list<Record> readRecords(const RecordSection<Record>& section, const settings::Node& node,
                              device::Plan& plan) {
  const std::size_t faults = node.faults();
  std::list<Record> records = settings::fromJsonArray(node, section.members, section.key);
  if (!section.check || node.faults() != faults) return records;
  std::size_t index = 0;
  for (const Record& record : records) section.check(node.element(index++), record, plan);
  return records;
}

/// The one change that replaces all records.
template <typename Record>
device::Change changeOf(const RecordSection<Record>& section, const Json& after) {
  settings::Faults none;
  const auto records = settings::fromJsonArray(settings::Node(after, section.name, none),
                                               section.members, section.key);
  const auto arrived = [=](tinyxml2::XMLDocument&) {
    return settings::toJsonArray(section.load(), section.members) == after;
  };
  return {CFG_FILE_MPP, section.name, device::roomFor(after),
          [=] { return section.store(records); }, arrived};
}

template <typename Record>
device::Section sectionOf(const RecordSection<Record>& section) {
  return {section.name,
          [=] { return settings::toJsonArray(section.load(), section.members); },
          [=](const settings::Node& node, const Json&, device::Plan& plan) {
            return settings::toJsonArray(readRecords(section, node, plan), section.members);
          },
          [=](const Json&, const Json& after) {
            return std::vector<device::Step>{device::stepOf(changeOf(section, after))};
          },
          section.losses,
          CFG_FILE_MPP};
}

/// Copies of the records that shared pointers lead to.
template <typename Record>
std::list<Record> copiesOf(const std::list<std::shared_ptr<Record>>& shared) {
  std::list<Record> copies;
  for (const auto& record : shared) copies.push_back(*record);
  return copies;
}

template <typename Record>
std::list<std::shared_ptr<Record>> sharedCopiesOf(const std::list<Record>& records) {
  std::list<std::shared_ptr<Record>> shared;
  for (const Record& record : records) shared.push_back(std::make_shared<Record>(record));
  return shared;
}

/// What a section of the file loses when it is rewritten whole, as a remark; none if it is nothing.
/// @param more  adds what an entry loses beyond what its form tells
Losses lossNotes(const std::string& name, const MediaSection& section,
                 const std::vector<ElementForm>& forms,
                 const std::function<void(const tinyxml2::XMLElement&, Losses&)>& more = {});

}  // namespace camcfg::tool::media

#endif
