#ifndef CAMCFG_TOOL_EXCHANGE_MEDIA_SECTION_H
#define CAMCFG_TOOL_EXCHANGE_MEDIA_SECTION_H

#include <list>
#include <string>
#include <vector>

#include "device/media.h"
#include "device/media_losses.h"
#include "exchange/members.h"
#include "exchange/section.h"

namespace camcfg::tool {

using Losses = std::vector<std::string>;

/// A section of "/cfg0/mpp_cfg.xml" that is exchanged as an array of records.
template <typename Record>
struct RecordSection {
  std::string name;
  Members<Record> members;
  const char* key;  ///< member by which records are told apart
  std::function<std::list<Record>()> load;
  std::function<bool(const std::list<Record>&)> store;
  std::function<Losses()> losses;
  /// What a record must fulfil beyond the limits of its members; only asked when those are kept.
  std::function<void(const Node&, const Record&, Plan&)> check = {};
};

template <typename Record>
std::list<Record> readRecords(const RecordSection<Record>& section, const Node& node, Plan& plan) {
  const std::size_t faults = node.faults();
  std::list<Record> records = fromJsonArray(node, section.members, section.key);
  if (!section.check || node.faults() != faults) return records;
  std::size_t index = 0;
  for (const Record& record : records) section.check(node.element(index++), record, plan);
  return records;
}

/// The one change that replaces all records.
template <typename Record>
Change changeOf(const RecordSection<Record>& section, const Json& after) {
  Faults none;
  const auto records = fromJsonArray(Node(after, section.name, none), section.members, section.key);
  const auto arrived = [=](tinyxml2::XMLDocument&) {
    return toJsonArray(section.load(), section.members) == after;
  };
  return {CFG_FILE_MPP, section.name, roomFor(after), [=] { return section.store(records); },
          arrived};
}

template <typename Record>
Section sectionOf(const RecordSection<Record>& section) {
  return {section.name,
          [=] { return toJsonArray(section.load(), section.members); },
          [=](const Node& node, const Json&, Plan& plan) {
            return toJsonArray(readRecords(section, node, plan), section.members);
          },
          [=](const Json&, const Json& after) {
            return std::vector<Step>{stepOf(changeOf(section, after))};
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

}  // namespace camcfg::tool

#endif
