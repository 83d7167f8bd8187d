#ifndef CAMCFG_TOOL_PRESETS_PRESET_H
#define CAMCFG_TOOL_PRESETS_PRESET_H

#include <tinyxml2.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "device/change.h"
#include "device/explanation.h"
#include "device/section.h"

namespace camcfg::tool::presets {

/// Its place in a document, and the elements in the file.
constexpr char kSection[] = "presets";
constexpr char kGroup[] = "PresetCfg";
constexpr char kElement[] = "preset";

/// The values of a preset in their documented shape, with every member: null is what a preset of the
/// file lacks, or what is not an integer there, and what is not given of one that is asked for.
using Values = Json;

inline bool isText(const settings::Setting& setting) {
  return setting.kind == settings::Kind::Text;
}

/// Those of a preset of which nothing is known.
Values noValues();

/// A preset of the file.
struct Preset {
  Values values;
  tinyxml2::XMLElement* element;

  std::optional<int> id() const;
  std::optional<std::string> description() const;
  /// "preset 3 'Dock'"
  std::string label() const;
};

/// Finds the presets of a group as the library does: the first of an id counts, and one without a
/// readable "Id" has that of the one before it.
class PresetIndex {
 public:
  explicit PresetIndex(tinyxml2::XMLElement& group);

  /// Null if there is none.
  tinyxml2::XMLElement* find(int id) const;

 private:
  std::map<int, tinyxml2::XMLElement*> elements_;
};

/// The presets of "/cfg0/preset_cfg.xml".
class Presets {
 public:
  /// @throws Refusal if the file is unusable
  Presets();

  /// In the order of the file.
  const std::vector<Preset>& all() const { return all_; }
  Json json() const;

  /// What the library finds by id; null if it finds none. It always has this id itself.
  const Preset* lookup(int id) const;
  /// What the library finds by the beginning of a description; null if it finds none.
  const Preset* lookup(const std::string& description) const;

  /// The preset that a word stands for: a word of digits is an id, any other a whole description.
  /// @throws Refusal if there is none, or more than one of this description
  const Preset& require(const std::string& word) const;

  /// The id by which the library changes a preset of the file.
  /// @throws Refusal if it would change another one
  int requireReachableId(const Preset& preset) const;

  /// What applications get instead when they ask for a preset by its description, as a note; empty
  /// if they get this one.
  std::string shadowOf(const Preset& preset) const;

 private:
  const Preset& requireDescription(const std::string& description) const;

  device::Document document_;
  PresetIndex index_;
  std::vector<Preset> all_;
  std::map<const tinyxml2::XMLElement*, std::size_t> places_;
};

/// The preset group of a document; null if it has none.
tinyxml2::XMLElement* presetGroupOf(tinyxml2::XMLDocument& document);

/// The same.
/// @throws Refusal if there is none
tinyxml2::XMLElement& requirePresetGroup(tinyxml2::XMLDocument& document);

/// Why there is none.
std::string whyNoGroup();

/// The presets of a group, in their order.
std::vector<Preset> presetsIn(tinyxml2::XMLElement& group);

/// What a preset element holds.
Preset presetOf(tinyxml2::XMLElement& element);

/// Whether a word stands for an id, whatever it is: no description is found by it.
bool isDigits(const std::string& word);

/// The id that a word stands for, if it is one of digits.
/// @throws Refusal  no preset can have this id, or the word is empty, as an unset variable of a script is
std::optional<int> idIn(const std::string& word);

/// Lookups are tried in the main copy, or else in the next good one.
/// @param word  a word of digits is an id, any other a description
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainPreset(const std::string& word);

/// Creates or updates a preset: what is not given stays, or is zero and empty for a new one. One that
/// is so already is not written.
/// @param given     the values, among them an id that the library accepts
/// @param rehearse  write nothing
/// @return the preset as it is now, and "before": as it was, null if it is new
/// @throws Refusal  a present value would not survive this; or see makeChange
Json storePreset(const Values& given, bool rehearse);

/// Deletes a preset of the file, and no other one.
/// @param rehearse  write nothing
/// @throws Refusal  see makeChange; or no call of the library would hit this one
void deletePreset(const Presets& presets, const Preset& preset, bool rehearse);

/// All presets, for export and import.
device::Section presetsSection();

/// A preset that is to be stored.
struct PresetUpdate {
  Values values;      ///< each with a value
  std::string fault;  ///< why it cannot be stored; empty if it can
};

/// A preset with the values given, and for the rest those that it has already, or zero and empty.
/// The library always writes all of them: a present value that would not survive this is a fault.
/// @param existing  what the library finds by the id; null: the preset is new
/// @param given     the values, among them an id that the library accepts
PresetUpdate updateOf(const Preset* existing, const Values& given);

/// The change that creates or updates presets.
/// @param what  what is changed, the beginning of a refusal
device::Change storing(const std::string& what, const std::vector<Values>& presets);

/// The change after which there are these presets and no others.
device::Change replacing(const std::vector<Values>& presets);

/// The change that deletes the presets of ids.
device::Change deletion(const std::vector<int>& ids);

// Presets from files and to files.

/// A preset of a file that is to be imported.
struct PresetRow {
  std::string place;                ///< "line 3"
  Values values;                    ///< null where nothing is given
  std::vector<std::string> faults;  ///< what makes no sense in it
};

/// Reads presets: JSON if the text begins with "[" or "{", CSV otherwise. Columns and members are
/// named as in answers, in any order; only the id must be there.
/// @throws Refusal  where the text makes no sense as a whole
std::vector<PresetRow> readPresetRows(const std::string& text);

/// Reads presets as readPresetRows does, checks every row against the others and the presets that are
/// there, and stores what is created and updated, all or none. Presets that are in no row stay as
/// they are.
/// @return the ids that are created, updated and found unchanged, none if there are faults; the
///         faults, with which nothing is stored
/// @throws Refusal  the text makes no sense as a whole; or see makeChange
Outcome importPresets(const std::string& text, bool isDryRun);

/// What a device without presets would find wrong with these.
std::vector<std::string> faultsOf(const std::vector<Preset>& presets);

/// The presets in CSV.
std::string presetsAsCsv(const std::vector<Preset>& presets);

}  // namespace camcfg::tool::presets

#endif
