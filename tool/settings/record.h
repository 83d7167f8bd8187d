#ifndef CAMCFG_TOOL_SETTINGS_RECORD_H
#define CAMCFG_TOOL_SETTINGS_RECORD_H

#include <list>
#include <memory>
#include <utility>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// A record as a document has it.
Json toJson(const Settings& settings, const void* record);

/// Reads a record from a document; what does not fit is a fault of the node.
void fromJson(const Node& node, const Settings& settings, void* record);

/// Reads an array of records, no two of which may have the same key.
/// @param append  adds a new record to a list
void fromJsonArray(const Node& node, const Table& table, void* list, void* (*append)(void* list));

/// Different ids in an array, each read by a call.
std::list<int> readIds(const Node& node, std::int32_t (*read)(const Node& id));

/// An entry of one of the library's lists, held by value or shared.
template <typename Record>
struct Entry {
  using Plain = Record;
  static const Record& plain(const Record& entry) { return entry; }
  static Record made(const Record& record) { return record; }
};

template <typename Record>
struct Entry<std::shared_ptr<Record>> {
  using Plain = Record;
  static const Record& plain(const std::shared_ptr<Record>& entry) { return *entry; }
  static std::shared_ptr<Record> made(const Record& record) {
    return std::make_shared<Record>(record);
  }
};

template <typename Record>
std::list<typename Entry<Record>::Plain> recordsOf(const Table& table, const Node& entries) {
  using Plain = typename Entry<Record>::Plain;
  std::list<Plain> records;
  fromJsonArray(entries, table, &records, ListOf<std::list<Plain>>::append);
  return records;
}

/// The library's calls for the entries of a section.
/// @param Make  makes an entry of the library's list from a record
template <typename Record, int (*Load)(std::list<Record>&), int (*Dump)(const std::list<Record>&),
          Record (*Make)(const typename Entry<Record>::Plain&) = Entry<Record>::made>
struct CallsOf {
  static int load(const Table& table, Json& entries) {
    std::list<Record> records;
    const int result = Load(records);
    entries = Json::array();
    for (const Record& record : records)
      entries.push_back(toJson(table.settings, &Entry<Record>::plain(record)));
    return result;
  }
  static Json read(const Table& table, const Node& entries) {
    Json values = Json::array();
    for (const auto& record : recordsOf<Record>(table, entries))
      values.push_back(toJson(table.settings, &record));
    return values;
  }
  static int store(const Table& table, const Json& entries) {
    Faults none;
    std::list<Record> made;
    for (const auto& record : recordsOf<Record>(table, Node(entries, table.place, none)))
      made.push_back(Make(record));
    return Dump(made);
  }
  static Calls calls(int (*closeRead)()) { return {load, store, read, closeRead}; }
};

}  // namespace camcfg::tool::settings

#endif
