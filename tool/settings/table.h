#ifndef CAMCFG_TOOL_SETTINGS_TABLE_H
#define CAMCFG_TOOL_SETTINGS_TABLE_H

#include <list>
#include <memory>
#include <utility>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// Writes a setting down in one line of a table: integer<&Record::port>("port", "Port", ...).in("s").
class Row : public Setting {
 public:
  /// @param attribute  null: the setting is read from elsewhere
  Row(const char* name, const char* attribute, Kind what, Need whenMissing, const char* line,
      const Field& where = {})
      : Setting{name, {}, what, whenMissing, line, where} {
    // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject): all are, the line before
    if (attribute != nullptr) attributes = {{attribute}};
  }

  Row& from(std::vector<Attribute> all) { return with(&Setting::attributes, std::move(all)); }
  Row& fromChannel(const char* type) {
    return with(&Setting::channelType, type).channel().noneIsNull();
  }
  Row& within(const Range& range) { return with(&Setting::limits, range); }
  Row& within(std::int64_t least, std::int64_t most) { return within({least, most}); }
  Row& of(std::vector<Word> all) { return with(&Setting::words, std::move(all)); }
  Row& of(const Table& table) { return with(&Setting::inner, &table); }
  Row& in(const char* what) { return with(&Setting::unit, what); }
  Row& secret(std::string (*mask)(const std::string&)) { return with(&Setting::masked, mask); }
  Row& channel() { return with(&Setting::isChannel, true); }
  Row& optional() { return with(&Setting::isOptional, true); }
  Row& assumed(Json (*value)(const Json& entry)) { return with(&Setting::assumed, value); }
  Row& noneIsNull() { return with(&Setting::isNullWhenNone, true).optional(); }
  /// In a column that shows its value.
  Row& listed(const char* heading, int rank = 0) {
    return listed(heading, "{" + std::string(member) + "}", rank);
  }
  Row& listed(const char* heading, std::string cell, int rank = 0) {
    return with(&Setting::column, ListedAs{heading, std::move(cell), rank});
  }
  Row& refersTo(const Table& table) { return with(&Setting::refersTo, &table); }
  Row& notSaved() { return with(&Setting::isSaved, false); }
  Row& by(Json (*writer)(const void*), void (*reader)(const Node&, void*)) {
    return with(&Setting::write, writer).with(&Setting::read, reader);
  }
  Row& madeOf(const Settings& all) { return with(&Setting::parts, &all); }
  Row& typed(Json (*parse)(const std::string&), const char* form) {
    return with(&Setting::typed, parse).with(&Setting::typedForm, form);
  }
  Row& checked(std::string (*why)(const std::string&)) { return with(&Setting::whyNotUsable, why); }
  Row& neededIf(const char* element, const char* word) {
    return with(&Setting::neededIf, Condition{element, word});
  }
  Row& called(const char* name) { return with(&Setting::plain, name); }
  Row& onlyWith(const char* element, const char* word) {
    return with(&Setting::onlyWith, Condition{element, word});
  }
  Row& prefixSets(const char* element) { return with(&Setting::prefixSets, element); }
  Row& byWholeName() { return with(&Setting::isWrittenByWholeName, true); }
  Row& option(const char* name) { return with(&Setting::option, name); }
  Row& labelled(const char* name) { return with(&Setting::label, name); }

 private:
  template <typename Value>
  Row& with(Value Setting::*what, Value value) {
    this->*what = std::move(value);
    return *this;
  }
};

constexpr Need kRequired = Need::Required;
constexpr Need kCarried = Need::Carried;
constexpr Need kExpected = Need::Expected;
constexpr Need kOptional = Need::Optional;

/// A row of a kind, with its field in the record.
template <auto Member, Kind What>
Row rowOf(const char* name, const char* attribute, Need whenMissing, const char* line) {
  return Row(name, attribute, What, whenMissing, line, fieldOf<Member>());
}

template <auto Member>
constexpr auto integer = rowOf<Member, Kind::Integer>;
template <auto Member>
constexpr auto id = rowOf<Member, Kind::Id>;
template <auto Member>
constexpr auto text = rowOf<Member, Kind::Text>;
template <auto Member>
constexpr auto word = rowOf<Member, Kind::Word>;
template <auto Member>
constexpr auto onOff = rowOf<Member, Kind::Switch>;
template <auto Member>
constexpr auto flag = rowOf<Member, Kind::Flag>;
template <auto Member>
constexpr auto ids = rowOf<Member, Kind::Ids>;
template <auto Member>
constexpr auto list = rowOf<Member, Kind::List>;

/// Records inside others.
inline Table innerTable(const char* entry, const char* element, const char* key, const char* label,
                        Settings settings) {
  return {"", "", entry, key, label, nullptr, nullptr, {element}, std::move(settings)};
}

/// Reads a new record from a document; what does not fit is a fault of the node.
void fromJson(const Node& node, const Settings& settings, void* record);

/// Reads an array of records, no two of which may have the same key.
/// @param append  adds a new record to a list
void fromJsonArray(const Node& node, const Table& table, void* list, void* (*append)(void* list));

/// An entry in which settings that may be missing in a file, and are left out, are what loaders assume.
/// What cannot be assumed stays left out: the allowed sources of a cache.
Json withAssumed(const Table& table, const Json& entry);

/// Different ids in an array, each read by a call.
std::list<int> readIds(const Node& node, std::int32_t (*read)(const Node& id));

/// Replaces a section of the live media services by entries, written by the rows of the table. For
/// the entries that the library does not save as it loads them.
/// @return 0, or the library's failure
int storeElements(const Table& table, const Json& entries);

// An entry of one of the library's lists, held by value or shared.

template <typename Record>
const Record& plain(const Record& entry) {
  return entry;
}
template <typename Record>
const Record& plain(const std::shared_ptr<Record>& entry) {
  return *entry;
}
template <typename Entry>
using Plain = std::decay_t<decltype(plain(std::declval<const Entry&>()))>;

template <typename Entry>
Entry entryOf(const Plain<Entry>& record) {
  if constexpr (std::is_same_v<Entry, Plain<Entry>>)
    return record;
  else
    return std::make_shared<Plain<Entry>>(record);
}

/// The library's calls for the entries of a section.
template <typename Entry, int (*Load)(std::list<Entry>&), int (*Dump)(const std::list<Entry>&),
          Entry (*Make)(const Plain<Entry>&)>
struct CallsOf {
  using Records = std::list<Plain<Entry>>;

  static int load(const Table& table, Json& entries) {
    std::list<Entry> loaded;
    const int result = Load(loaded);
    entries = Json::array();
    for (const Entry& entry : loaded) entries.push_back(toJson(table.settings, &plain(entry)));
    return result;
  }
  static Records recordsOf(const Table& table, const Node& entries) {
    Records records;
    fromJsonArray(entries, table, &records, ListOf<Plain<Entry>>::append);
    return records;
  }
  static Json read(const Table& table, const Node& entries) {
    const Records records = recordsOf(table, entries);
    return ListOf<Plain<Entry>>::toJson(&records, table.settings);
  }
  static int store(const Table& table, const Json& entries) {
    Faults none;
    std::list<Entry> made;
    for (const auto& record : recordsOf(table, Node(entries, table.place, none, &entries)))
      made.push_back(Make(record));
    return Dump(made);
  }
};

/// A section of the media file. What the parameters are is at the members of Table.
/// @param Make  makes an entry of the library's list from a record
template <typename Entry, int (*Load)(std::list<Entry>&), int (*Dump)(const std::list<Entry>&),
          Entry (*Make)(const Plain<Entry>&) = entryOf<Entry>>
Table tableOf(const char* place, const char* word, const char* entry, const char* key,
              const char* label, const char* parent, const char* section,
              std::vector<const char*> elements, int (*closeRead)(), Settings settings,
              void (*check)(const Node& entry) = nullptr,
              std::string (*sessionName)(const Json& entry) = nullptr) {
  using Library = CallsOf<Entry, Load, Dump, Make>;
  const Calls calls = {Library::load, Library::store, Library::read,
                       ListOf<Plain<Entry>>::newRecord, closeRead};
  Table table = {
      place, word, entry, key, label, parent, section, std::move(elements), std::move(settings),
      calls, check};
  table.sessionName = sessionName;
  return table;
}

/// An attribute as a loader reads it.
struct AttributeForm {
  const char* name;
  Kind kind;  ///< Integer, Text or Switch
  Range limits;
  Need need;
  bool isSaved;  ///< the library writes it when it saves the section
};

/// An element as loaders read it and the library writes it.
struct ElementForm {
  const char* name;
  std::vector<AttributeForm> attributes;
  std::vector<ElementForm> children;
};

/// The forms of a table's entries, one for each name.
std::vector<ElementForm> formsOf(const Table& table);

/// The "Type" of each channel that an entry may have once.
std::vector<const char*> channelTypesOf(const Table& table);

}  // namespace camcfg::tool::settings

#endif
