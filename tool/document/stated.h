#ifndef CAMCFG_TOOL_DOCUMENT_STATED_H
#define CAMCFG_TOOL_DOCUMENT_STATED_H

#include <map>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/section.h"
#include "document/keyed.h"
#include "settings/setting.h"

namespace camcfg::tool::document {

/// How a document is meant.
enum class Mode {
  Merge,     ///< what it names is added or changed, and nothing else
  Replace,   ///< a list that it names becomes what it says
  Override,  ///< and what it does not name gets its factory value, the network excepted
};

/// "merge", "replace", "override": in the order of the modes.
extern const std::vector<std::string> kModes;

/// Of an entry that is not to be there.
constexpr char kAbsent[] = "absent";

/// What a document says of a section, as a whole that can be read: lists without the entries that are to
/// be absent and, if they are merged, with those of the device. Entries are found by their keys; one
/// that has a label and no key, by its label. New ones may leave out what can be assumed.
class Stated {
 public:
  /// @param held    the section as the device has it
  /// @param faults  where entries are to be absent, or found, and cannot
  Stated(const device::Section& section, const Json& stated, const Json& held, Mode mode,
         settings::Faults& faults);

  const Json& value() const { return value_; }

  /// Gives faults of the value the places that the document has, and those of the device's own
  /// entries their keys: "live.srt[0].port" for "live.srt[7].port".
  /// @param from  the first of them
  void locate(settings::Faults& faults, std::size_t from) const;

 private:
  struct List {
    const char* key;
    const char* label;  // null: none
    const settings::Settings& settings;
  };
  // An entry of the device, of the document, or both.
  struct Slot {
    const Json* held = nullptr;
    const Json* stated = nullptr;
    std::size_t position = 0;  // in the document
    bool isAbsent = false;
  };
  // Where a list is: as it is read, and in the document.
  struct Places {
    std::string read;
    std::string stated;
  };

  Json list(const List& form, const Json& stated, const Json& held, const Places& places);
  std::vector<Slot> slots(const List& form, const Json& stated, const Json& held,
                          const std::string& place);
  Json record(const settings::Settings& settings, const Slot& slot, const Places& places);

  const Json* find(const List& form, const Json& entry, const Keyed& byKey, const Json& held,
                   const std::string& place);
  bool isToBeAbsent(const List& form, const Json& entry, const std::string& place);

  const Mode mode_;
  settings::Faults& faults_;
  Json value_;
  std::map<std::string, std::string> places_;  // as they are read, and in the document
};

}  // namespace camcfg::tool::document

#endif
