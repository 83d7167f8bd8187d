#ifndef CAMCFG_MEDIA_SECTION_H
#define CAMCFG_MEDIA_SECTION_H

#include <list>

#include "media/document.h"
#include "media/entries.h"
#include "media/entry_writer.h"

namespace camcfg {

// Texts of these tables are kept in place: a pointer would cost a relocation when the library is
// loaded.

/// What is said of an element that holds no record.
enum class Others : char { Nothing, Skipped, Ignored };

/// Which elements hold records.
struct Entries {
  char names[3][11];  ///< in upper or lower case
  Others others = Others::Nothing;
  char place[16] = "";  ///< where other elements are, as their warning says

  /// The name, where there is only one.
  constexpr const char* name() const { return names[0]; }
};

/// Whether a load or a dump that succeeded says so.
enum class Success : char { Printed, Silent };

/// What becomes of the document once a reader has reported a fault. No lock is held.
enum class AfterFault : char { StaysOpen, Closed, LeftToReader };

/// Whether a section that a dumper has rewritten is saved.
enum class Ending : char { Save, DiscardAndStayLocked };

/// When a loader empties the caller's list.
enum class Emptied : char { OnceOpen, BeforeOpening };

/// What a section is called and in what it differs from others. Values that are left out are those
/// of most sections.
struct Rules {
  char section[13];
  Entries entries;
  Success success = Success::Printed;
  AfterFault afterFault = AfterFault::StaysOpen;
  Ending ending = Ending::Save;
  Emptied emptied = Emptied::OnceOpen;
};

/// One section of the media file, whose entries are read and written as records.
template <typename Record>
struct Section {
  const MediaDocument& document;
  const Rules& rules;
  /// Reads an entry into a new record at the list's end, or reports what is wrong with it and
  /// returns false with the list as it was.
  bool (*read)(const tinyxml2::XMLElement& entry, std::list<Record>& records);
  /// Writes an entry; none for a record that cannot be written.
  void (*write)(EntryWriter& section, const Record& record);
};

/// The first element that holds a record among an element and its followers; null when there is
/// none. What is skipped is reported as `entries` says.
const tinyxml2::XMLElement* entryFrom(const MediaDocument& document,
                                      const tinyxml2::XMLElement* element, const Entries& entries);

/// load() and dump() for a list of any records.
/// @param clear  empties the list
/// @param read   reads an entry into a new record at the list's end; false on a fault
/// @param write  writes an entry for each record of the list
std::int32_t loadList(const MediaDocument& document, const Rules& rules, void (*clear)(void* list),
                      bool (*read)(const tinyxml2::XMLElement& entry, void* list), void* list);
std::int32_t dumpList(const MediaDocument& document, const Rules& rules,
                      void (*write)(EntryWriter& section, const void* list), const void* list);

/// Section::read of sections whose entries are read each by itself.
/// @tparam kRead  fills in a record, or reports what is wrong with its entry and returns false
template <auto kRead, typename Record>
bool readEach(const tinyxml2::XMLElement& entry, std::list<Record>& records) {
  std::list<Record> one(1);
  if (!kRead(entry, one.front())) return false;
  records.splice(records.end(), one);
  return true;
}

/// Replaces the list by the records of a section. On a fault the records before it stay in the
/// list.
/// @return what the family's calls return
template <const auto& kSection, typename Record>
std::int32_t load(std::list<Record>& records) {
  using List = std::list<Record>;
  return loadList(
      kSection.document, kSection.rules, [](void* list) { static_cast<List*>(list)->clear(); },
      [](const tinyxml2::XMLElement& entry, void* list) {
        return kSection.read(entry, *static_cast<List*>(list));
      },
      &records);
}

/// Replaces the records of a section, and whatever else is in it, by the list.
/// @return what the family's calls return
template <const auto& kSection, typename Record>
std::int32_t dump(const std::list<Record>& records) {
  using List = std::list<Record>;
  return dumpList(
      kSection.document, kSection.rules,
      [](EntryWriter& section, const void* list) {
        for (const Record& record : *static_cast<const List*>(list))
          kSection.write(section, record);
      },
      &records);
}

}  // namespace camcfg

#endif
