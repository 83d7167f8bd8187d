#ifndef CAMCFG_TOOL_SETTINGS_FIELD_H
#define CAMCFG_TOOL_SETTINGS_FIELD_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>

namespace camcfg::tool::settings {

/// A field of one of the library's records, whatever the record: fieldOf<&Record::member>.
struct Field {
  enum class Storage { None, Integer, Text, Characters, Ids, Records };

  Storage storage = Storage::None;
  void* (*at)(void* record) = nullptr;
  std::size_t room = 0;  ///< of Characters, in bytes, with the terminator
  // Of Records.
  void (*clear)(void* list) = nullptr;
  void* (*append)(void* list) = nullptr;  ///< adds a new record
  void (*forEach)(const void* list, void (*visit)(const void* record, void* context),
                  void* context) = nullptr;

  const void* in(const void* record) const { return at(const_cast<void*>(record)); }
  std::int32_t& integer(void* record) const { return *static_cast<std::int32_t*>(at(record)); }
  std::int32_t integer(const void* record) const {
    return *static_cast<const std::int32_t*>(in(record));
  }
  std::list<int>& ids(void* record) const { return *static_cast<std::list<int>*>(at(record)); }
  const std::list<int>& ids(const void* record) const {
    return *static_cast<const std::list<int>*>(in(record));
  }
  /// The text of Text or Characters.
  std::string text(const void* record) const;
  /// @return false, with nothing changed, if there is no room
  bool setText(void* record, const std::string& text) const;
};

template <typename Owner, typename Value>
Owner ownerOf(Value Owner::*);

template <auto Member>
void* fieldAt(void* record) {
  return &(static_cast<decltype(ownerOf(Member))*>(record)->*Member);
}

template <typename Record>
struct ListOf;

template <typename Record>
struct ListOf<std::list<Record>> {
  static void clear(void* list) { static_cast<std::list<Record>*>(list)->clear(); }
  static void* append(void* list) { return &static_cast<std::list<Record>*>(list)->emplace_back(); }
  static void forEach(const void* list, void (*visit)(const void*, void*), void* context) {
    for (const Record& record : *static_cast<const std::list<Record>*>(list))
      visit(&record, context);
  }
};

template <auto Member>
Field fieldOf() {
  using Owner = decltype(ownerOf(Member));
  using Value = std::remove_reference_t<decltype(std::declval<Owner&>().*Member)>;
  Field field;
  field.at = fieldAt<Member>;
  if constexpr (std::is_same_v<Value, std::string>) {
    field.storage = Field::Storage::Text;
  } else if constexpr (std::is_array_v<Value>) {
    field.storage = Field::Storage::Characters;
    field.room = sizeof(Value);
  } else if constexpr (std::is_same_v<Value, std::list<int>>) {
    field.storage = Field::Storage::Ids;
  } else if constexpr (std::is_class_v<Value>) {
    field.storage = Field::Storage::Records;
    field.clear = ListOf<Value>::clear;
    field.append = ListOf<Value>::append;
    field.forEach = ListOf<Value>::forEach;
  } else {
    static_assert(sizeof(Value) == sizeof(std::int32_t));
    field.storage = Field::Storage::Integer;
  }
  return field;
}

}  // namespace camcfg::tool::settings

#endif
