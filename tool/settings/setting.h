#ifndef CAMCFG_TOOL_SETTINGS_SETTING_H
#define CAMCFG_TOOL_SETTINGS_SETTING_H

#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "settings/node.h"

namespace camcfg::tool::settings {

struct Setting;
using Settings = std::vector<Setting>;

/// A field of one of the library's records, whatever the record: fieldOf<&Record::member>.
struct Field {
  void* (*at)(void* record) = nullptr;
  bool isString = false;  ///< its text is a std::string, not an array of characters
  std::size_t room = 0;   ///< of an array of characters, in bytes, with the terminator
  // Of a list of records.
  void* (*append)(void* list) = nullptr;  ///< adds a new record
  Json (*toJson)(const void* list, const Settings& settings) = nullptr;
  Json (*newRecord)(const Settings& settings) = nullptr;

  /// The field itself, which must be of this type.
  template <typename Value>
  Value& as(void* record) const {
    return *static_cast<Value*>(at(record));
  }
  template <typename Value>
  const Value& as(const void* record) const {
    return as<Value>(const_cast<void*>(record));
  }
  std::string text(const void* record) const;
  /// @return false, with nothing changed, if there is no room
  bool setText(void* record, const std::string& text) const;
};

/// A record as a document has it.
Json toJson(const Settings& settings, const void* record);

/// A list of records as a document has it.
template <typename Record>
struct ListOf {
  static Json toJson(const void* list, const Settings& settings) {
    Json array = Json::array();
    for (const Record& record : *static_cast<const std::list<Record>*>(list))
      array.push_back(settings::toJson(settings, &record));
    return array;
  }
  static Json newRecord(const Settings& settings) {
    const std::list<Record> one(1);
    return settings::toJson(settings, &one.front());
  }
  static void* append(void* list) { return &static_cast<std::list<Record>*>(list)->emplace_back(); }
};

template <typename Owner, typename Value>
Owner ownerOf(Value Owner::*);

template <auto Member>
Field fieldOf() {
  using Owner = decltype(ownerOf(Member));
  using Value = std::remove_reference_t<decltype(std::declval<Owner&>().*Member)>;
  Field field;
  field.at = [](void* record) -> void* { return &(static_cast<Owner*>(record)->*Member); };
  field.isString = std::is_same_v<Value, std::string>;
  if constexpr (std::is_array_v<Value>) {
    field.room = sizeof(Value);
  } else if constexpr (std::is_class_v<Value> && !std::is_same_v<Value, std::string> &&
                       !std::is_same_v<Value, std::list<int>>) {
    field.append = ListOf<typename Value::value_type>::append;
    field.toJson = ListOf<typename Value::value_type>::toJson;
    field.newRecord = ListOf<typename Value::value_type>::newRecord;
  } else if constexpr (!std::is_class_v<Value>) {
    static_assert(sizeof(Value) == sizeof(std::int32_t));
  }
  return field;
}

/// What the value of a setting is.
enum class Kind {
  Integer,  ///< a whole number within limits
  Id,       ///< any number of 32 bits but -1, which stands for none
  Text,
  Word,    ///< one of a few words
  Switch,  ///< true or false, in files by these words: only "true" is on
  Flag,    ///< true or false, in files as a number: only 0 is off
  Ids,     ///< a list of different ids
  List     ///< a list of records
};

/// What happens when the setting is missing in a file.
enum class Need {
  Required,  ///< nothing of its section loads
  Carried,   ///< an entry takes that of the one before it
  Expected,  ///< it is an empty text, or a value that stands for none
  Optional   ///< it is what a new record has
};

/// That another element of the same card has a word; without an element it always holds.
struct Condition {
  const char* element{};
  const char* word{};
};

/// A word of a setting.
struct Word {
  const char* text;      ///< in documents and on the command line
  std::int32_t value;    ///< in the library's record
  const char* inFile{};  ///< null: as in documents
  const char* plain{};   ///< what people call it: "dhcp"; null: as in documents
  Condition brings{};    ///< what follows from it for another element

  const char* written() const { return inFile == nullptr ? text : inFile; }
  const char* plainText() const { return plain == nullptr ? text : plain; }
};

/// An attribute of a file that a setting is read from.
struct Attribute {
  const char* name;
  const char* element{};  ///< only in elements of this name; null: in all of the table's
};

/// The column of a listing that a setting is in, with places for members as in "{id} {name}".
struct ListedAs {
  const char* heading = nullptr;
  std::string cell;
  int rank = 0;  ///< columns of a higher rank come later
};

struct Table;

/// One setting: all that the tool knows of it. Readers, writers, listings, checks, masks and help
/// go by these rows; what a row cannot say is a function that it names.
struct Setting {
  const char* member;                 ///< in documents and answers: "port"
  std::vector<Attribute> attributes;  ///< in the file: "Port"; none: it is read from elsewhere
  Kind kind;
  Need need;
  const char* help;  ///< one line
  Field field{};     ///< in the library's record
  Range limits{};    ///< of an Integer, unless the file has its own
  std::vector<Word> words{};
  const char* unit{};
  const char* channelType{};  ///< it is the "Id" of the <Channel> of this "Type"
  const Table* inner{};       ///< of a List: its records; of other kinds: elements inside the entry
  ListedAs column{};          ///< in listings; without a heading: not listed by itself
  bool isChannel = false;     ///< it is the id of a stream cache
  bool isSaved = true;        ///< the library writes it when it saves the section
  const Table* refersTo{};    ///< it is the key of an entry of this table
  bool isOptional = false;    ///< may be left out of a document, or null
  bool isNullWhenNone = false;  ///< -1, or the empty text, is null in documents
  /// What loaders assume where it is missing in an entry; null: what a new record has.
  Json (*assumed)(const Json& entry) = nullptr;

  /// What an answer shows in place of a secret; null for what is no secret.
  std::string (*masked)(const std::string& secret) = nullptr;
  /// Why a text of the right form is not permitted; empty if it is. Null: every text is.
  std::string (*whyNotUsable)(const std::string& text) = nullptr;
  /// For a value that is made of several fields, in place of `field`.
  Json (*write)(const void* record) = nullptr;
  void (*read)(const Node& node, void* record) = nullptr;
  const Settings* parts{};  ///< of a value that is an object in documents
  /// The same of a command line, as documents have it: of "2MiB"; anything else stays a text.
  Json (*typed)(const std::string& word) = nullptr;
  const char* typedForm{};  ///< what such a word looks like: "BYTES, or NUMBER KB"

  const char* option{};               ///< on the command line: "--focus-mode"
  const char* label{};                ///< next to its value: "focus mode"; null: as in documents
  Condition neededIf{};               ///< unless this holds, the empty text is permitted, too
  bool isWrittenByWholeName = false;  ///< setters of whole cards pass longer names by
  /// What people call it: "gateway"; settings of one such name are a list. Null: as in documents.
  const char* plain{};
  Condition onlyWith{};      ///< whoever sets it means that, too
  const char* prefixSets{};  ///< the element that "/24" after it sets
};

/// What values a setting takes, for people: "1..65535"; empty if any text is permitted.
std::string permittedFor(const Setting& setting);

/// The setting of a member; null if there is none.
const Setting* settingOf(const Settings& settings, std::string_view member);

/// What people call a setting.
inline const char* plainNameOf(const Setting& setting) {
  return setting.plain == nullptr ? setting.member : setting.plain;
}

/// What an answer calls a setting, next to its value: "focus mode".
inline const char* labelOf(const Setting& setting) {
  return setting.label == nullptr ? setting.member : setting.label;
}

/// How the library loads and saves the entries of a section, as JSON by the rows of its table.
struct Calls {
  /// Loads the entries; over a fault, those before the faulty one.
  /// @return the library's result
  int (*load)(const Table& table, Json& entries) = nullptr;
  int (*store)(const Table& table, const Json& entries) = nullptr;
  /// Reads the entries of a document, with what is left out filled in.
  Json (*read)(const Table& table, const Node& entries) = nullptr;
  Json (*newRecord)(const Settings& settings) = nullptr;
  int (*closeRead)() = nullptr;  ///< drops the document that a failed load leaves open
};

/// The entries of one section, and the section itself.
struct Table {
  const char* place;   ///< in documents: "live.srt"; of an inner table: the member
  const char* word;    ///< on the command line: "srt"
  const char* entry;   ///< what an entry is called, the service first: "SRT instance"
  const char* key;     ///< member that distinguishes entries; null: none does
  const char* label;   ///< member that says which one an entry is; null: the key does
  const char* parent;  ///< element at the top of the file
  const char* section;
  std::vector<const char*> elements;  ///< of entries, in upper or lower case; the first is written
  Settings settings;
  Calls calls{};
  /// What must be true of an entry beyond each of its settings; asked when those are fine.
  void (*check)(const Node& entry) = nullptr;
  bool isSaved = true;  ///< the library saves the section whole, and drops what it does not know
  /// What an entry is called as a session of its service; null: by its label, or else its key.
  std::string (*sessionName)(const Json& entry) = nullptr;

  const Setting* find(std::string_view member) const { return settingOf(settings, member); }
};

}  // namespace camcfg::tool::settings

#endif
