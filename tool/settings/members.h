#ifndef CAMCFG_TOOL_SETTINGS_MEMBERS_H
#define CAMCFG_TOOL_SETTINGS_MEMBERS_H

#include <algorithm>
#include <cstring>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "settings/node.h"

namespace camcfg::tool::settings {

/// One member of a record in JSON: it is written and read by the same line of the record's table.
template <typename Record>
struct Member {
  const char* name;
  std::function<Json(const Record&)> write;
  std::function<void(const Node&, Record&)> read;
  /// May be left out or null: the record keeps what a new one has.
  bool optional = false;
  // What it is in a file, for records that are written element by element.
  const char* attribute = nullptr;
  const char* channel = nullptr;  ///< Type of the channel whose "Id" it is
};

template <typename Record>
using Members = std::vector<Member<Record>>;

template <typename Record>
Json toJson(const Record& record, const Members<Record>& members) {
  Json object = Json::object();
  for (const Member<Record>& member : members) object[member.name] = member.write(record);
  return object;
}

template <typename Records, typename Record>
Json toJsonArray(const Records& records, const Members<Record>& members) {
  Json array = Json::array();
  for (const Record& record : records) array.push_back(toJson(record, members));
  return array;
}

template <typename Record>
void fromJson(const Node& node, const Members<Record>& members, Record& record) {
  std::vector<std::string> names;
  for (const Member<Record>& member : members) names.emplace_back(member.name);
  if (!node.isObjectOf(names)) return;
  for (const Member<Record>& member : members) {
    const auto found = node.value().find(member.name);
    const bool given = found != node.value().end();
    if (given && !(member.optional && found->is_null()))
      member.read(node.member(member.name), record);
    else if (!member.optional)
      node.refuseMissing(member.name);
  }
}

/// Reads an array of records. No two of them may have one value in the member of this name, if one
/// is given.
template <typename Record>
std::list<Record> fromJsonArray(const Node& node, const Members<Record>& members,
                                const char* key = nullptr) {
  std::list<Record> records;
  if (!node.isArray()) return records;
  std::vector<Json> keys;
  for (std::size_t i = 0; i < node.value().size(); ++i) {
    const Node element = node.element(i);
    fromJson(element, members, records.emplace_back());
    if (key == nullptr || !element.value().is_object() || !element.value().contains(key)) continue;
    const Node id = element.member(key);
    const auto same = std::find(keys.begin(), keys.end(), id.value());
    if (!id.value().is_null() && same != keys.end())
      id.refuse("there is another one with this " + std::string(key));
    keys.push_back(id.value());
  }
  return records;
}

// The kinds of member, each named by a pointer to the record's field.

template <typename Record>
Member<Record> number(const char* name, std::int32_t Record::*field, Range range) {
  return {name, [=](const Record& record) { return Json(record.*field); },
          [=](const Node& node, Record& record) { record.*field = node.number(range); }};
}

template <typename Record>
Member<Record> id(const char* name, std::int32_t Record::*field) {
  return {name, [=](const Record& record) { return Json(record.*field); },
          [=](const Node& node, Record& record) { record.*field = node.id(); }};
}

/// An id, or null where there is none.
template <typename Record>
Member<Record> idOrNone(const char* name, std::int32_t Record::*field) {
  return {name,
          [=](const Record& record) { return record.*field == -1 ? Json() : Json(record.*field); },
          [=](const Node& node, Record& record) { record.*field = node.id(); }, true};
}

template <typename Record, typename Flag>
Member<Record> flag(const char* name, Flag Record::*field) {
  return {name, [=](const Record& record) { return Json(record.*field != 0); },
          [=](const Node& node, Record& record) { record.*field = Flag(node.flag()); }};
}

template <typename Record>
Member<Record> text(const char* name, std::string Record::*field) {
  return {name, [=](const Record& record) { return Json(record.*field); },
          [=](const Node& node, Record& record) { record.*field = node.text(); }};
}

/// A text that is null when it is empty.
template <typename Record>
Member<Record> textOrNone(const char* name, std::string Record::*field) {
  return {
      name,
      [=](const Record& record) { return (record.*field).empty() ? Json() : Json(record.*field); },
      [=](const Node& node, Record& record) { record.*field = node.text(); }, true};
}

/// A text in a field of the record's own, with its terminator.
template <typename Record, std::size_t Size>
Member<Record> text(const char* name, char (Record::*field)[Size]) {
  return {name,
          [=](const Record& record) {
            return Json(std::string(record.*field, strnlen(record.*field, Size)));
          },
          [=](const Node& node, Record& record) {
            const std::string text = node.text(Size - 1);
            std::memset(record.*field, 0, Size);
            std::memcpy(record.*field, text.data(), std::min(text.size(), Size - 1));
          }};
}

// Not the word of setting.h, until these tables are gone.
inline namespace members {

/// A word, or a number, that stands for a value of the record.
struct Word {
  Json json;
  std::int32_t value;
};

using Words = std::vector<Word>;

}  // namespace members

/// Null where the record has a value without a word.
Json wordFor(const Words& words, std::int32_t value);

/// The value of a word; the first word's if it is none of them, which is a fault.
std::int32_t valueOf(const Words& words, const Node& node);

template <typename Record, typename Value>
Member<Record> word(const char* name, Value Record::*field, Words words) {
  return {name, [=](const Record& record) { return wordFor(words, record.*field); },
          [=](const Node& node, Record& record) {
            record.*field = static_cast<Value>(valueOf(words, node));
          }};
}

template <typename Record, typename Inner>
Member<Record> records(const char* name, std::list<Inner> Record::*field, Members<Inner> members,
                       const char* key) {
  return {
      name, [=](const Record& record) { return toJsonArray(record.*field, members); },
      [=](const Node& node, Record& record) { record.*field = fromJsonArray(node, members, key); }};
}

/// Different ids in an array, each read by a call.
std::list<int> readIds(const Node& node, const std::function<int(const Node&)>& read = &Node::id);

template <typename Record>
Member<Record> ids(const char* name, std::list<int> Record::*field) {
  return {name, [=](const Record& record) { return Json(record.*field); },
          [=](const Node& node, Record& record) { record.*field = readIds(node); }};
}

/// A member that may be left out.
template <typename Record>
Member<Record> optional(Member<Record> member) {
  member.optional = true;
  return member;
}

/// A member that is an attribute of the record's element.
template <typename Record>
Member<Record> attribute(const char* name, Member<Record> member) {
  member.attribute = name;
  return member;
}

/// A member that is a channel of this Type in the record's element.
template <typename Record>
Member<Record> channel(const char* type, Member<Record> member) {
  member.channel = type;
  return member;
}

}  // namespace camcfg::tool::settings

#endif
