#include "document/entries.h"

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "document/members.h"
#include "document/placed.h"
#include "document/references.h"
#include "media/media.h"
#include "settings/media.h"
#include "settings/table.h"

namespace camcfg::tool::document {
namespace {

using settings::Table;

bool hasNumberAsKey(const Table& table) {
  return table.find(table.key)->kind != settings::Kind::Text;
}

// The member that a word is the value of. An address that is given in place of an id is not repeated.
const char* memberFor(const Table& table, const std::string& word) {
  if (word.empty())
    throw Refusal(Status::Usage, concat("which ", table.entry, "? the argument is empty"));
  if (hasNumberAsKey(table) && table.label == nullptr && !decimal(word))
    throw Refusal(Status::Usage, concat("which ", table.entry, "? an ", table.key,
                                        " is a number, and the first argument"));
  const bool isKey = !hasNumberAsKey(table) || decimal(word) || table.label == nullptr;
  return isKey ? table.key : table.label;
}

const Json& keyIn(const Table& table, const Json& entry) {
  return entry.at(table.key);
}

// Sections of entries, as they are and as they are to be.
class EntriesEdit {
 public:
  EntriesEdit() {
    for (const Table* table : settings::mediaTables())
      all_.emplace_back(table, media::loadEntries(*table));
    before_ = all_;
  }

  Entries& all() { return all_; }
  Json& entries(const Table& table) { return entriesOf(table, all_); }

  /// The index of the entry that a word stands for.
  std::size_t require(const Table& table, const std::string& word) {
    const char* member = memberFor(table, word);
    const Json sought = valueFromWord(*table.find(member), word);
    const Json& list = entries(table);
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < list.size(); ++i)
      if (list[i].at(member) == sought) found.push_back(i);
    if (found.size() == 1 || (found.size() > 1 && member == table.key)) return found.front();
    if (found.empty())
      throw Refusal(
          concat("there is no ", nameOf(table, sought), nearestEntry(table, sought, list)));
    std::vector<std::string> keys;
    keys.reserve(found.size());
    for (const std::size_t i : found) keys.push_back(keyIn(table, list[i]).dump());
    throw Refusal(concat("there is more than one ", nameOf(table, sought), "; give one of the ",
                         table.key, "s ", joined(keys)));
  }

  /// Brings the device to what was edited, if one entry of it, which is new or changed, makes sense.
  Outcome carryOut(const Table& table, std::size_t index, const ImportOptions& options) {
    Target target = read();
    const Json& entry = entries(table)[index];
    const std::string place = placeOf(table.place, keyIn(table, entry));
    nameByKeys(sectionOf(table), entries(table), target.faults);
    for (const settings::Fault& fault : danglingIn(table, place, entry, all_)) {
      const auto isSame = [&](const settings::Fault& other) { return other.place == fault.place; };
      target.faults.erase(std::remove_if(target.faults.begin(), target.faults.end(), isSame),
                          target.faults.end());
      target.faults.push_back(fault);
    }
    return carriedOut(target, options);
  }

  Outcome carryOut(const ImportOptions& options) { return carriedOut(read(), options); }

 private:
  Target read() const {
    Target target;
    for (std::size_t i = 0; i < all_.size(); ++i)
      if (all_[i].second != before_[i].second)
        target.read(sectionOf(*all_[i].first), all_[i].second, {before_[i].second, {}});
    return target;
  }

  static const device::Section& sectionOf(const Table& table) {
    return *std::find_if(allSections().begin(), allSections().end(),
                         [&](const device::Section& section) { return section.table == &table; });
  }

  Entries all_;
  Entries before_;
};

void requireNew(const Table& table, const Json& key, const Json& entries) {
  if (std::any_of(entries.begin(), entries.end(),
                  [&](const Json& entry) { return keyIn(table, entry) == key; }))
    throw Refusal("there is already " + nameOf(table, key));
}

// An entry that others refer to keeps its key.
void requireUnused(const Table& table, const Json& key, Entries all) {
  const std::vector<std::string> others = takeAway(table, key, all);
  if (!others.empty())
    throw Refusal(concat(nameOf(table, key), " is used by ", joined(others),
                         ", which would not find it by another ", table.key));
}

}  // namespace

Outcome addEntry(const Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options) {
  EntriesEdit edit;
  Json entry = Json::object();
  const char* member = memberFor(table, word);
  for (const std::string& given : members)
    if (const settings::Setting* setting = memberOf(table.settings, given);
        setting != nullptr && setting->member == std::string_view(member))
      throw Refusal(
          concat(member, ": it is given twice, as ", quoted(word), " and by '", member, "='"));
  entry[member] = valueFromWord(*table.find(member), word);
  assign(table.settings, members, placeOf(table.place, entry.at(member)), entry);
  if (!entry.contains(table.key))
    throw Refusal(Status::Usage, concat("which ", table.key, "? give ", table.key, "=NUMBER"));
  Json& entries = edit.entries(table);
  resolveNames(table.settings, edit.all(), entry);
  requireNew(table, keyIn(table, entry), entries);
  entries.push_back(settings::withAssumed(table, entry));
  return edit.carryOut(table, entries.size() - 1, options);
}

Outcome setEntry(const Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options) {
  EntriesEdit edit;
  const std::size_t index = edit.require(table, word);
  Json& entry = edit.entries(table)[index];
  const Json key = keyIn(table, entry);
  Json changed = entry;
  assign(table.settings, members, placeOf(table.place, key), changed);
  resolveNames(table.settings, edit.all(), changed);
  if (keyIn(table, changed) != key) {
    requireNew(table, keyIn(table, changed), edit.entries(table));
    requireUnused(table, key, edit.all());
  }
  entry = settings::withAssumed(table, changed);
  return edit.carryOut(table, index, options);
}

Outcome deleteEntry(const Table& table, const std::string& word, bool cascade,
                    const ImportOptions& options) {
  EntriesEdit edit;
  const Json key = keyIn(table, edit.entries(table)[edit.require(table, word)]);
  const std::vector<std::string> others = takeAway(table, key, edit.all());
  if (!others.empty() && !cascade)
    throw Refusal(
        concat(nameOf(table, key), " is used by ", joined(others),
               "; '--cascade' takes it out of these, and deletes those that cannot be without"));
  return edit.carryOut(options);
}

}  // namespace camcfg::tool::document
