#include "document/entries.h"

#include <algorithm>

#include "base/plain_text.h"
#include "document/keyed.h"
#include "document/members.h"
#include "document/references.h"
#include "media/media.h"
#include "settings/media.h"

namespace camcfg::tool::document {
namespace {

using settings::Setting;
using settings::Table;

bool hasNumberAsKey(const Table& table) {
  return table.find(table.key)->kind != settings::Kind::Text;
}

// The member that a word is the value of.
const char* memberFor(const Table& table, const std::string& word) {
  const bool isKey = !hasNumberAsKey(table) || decimal(word) || table.label == nullptr;
  return isKey ? table.key : table.label;
}

// Sections of entries, as they are and as they are to be.
class Edit {
 public:
  Edit() {
    for (const Table* table : settings::mediaTables())
      all_.emplace_back(table, media::loadEntries(*table));
    before_ = all_;
  }

  Entries& all() { return all_; }
  Json& entries(const Table& table) { return entriesOf(table, all_); }

  /// The entry that a word stands for.
  Json& require(const Table& table, const std::string& word) {
    const char* member = memberFor(table, word);
    const Json sought = valueFromWord(*table.find(member), word);
    std::vector<std::string> known;
    for (Json& entry : entries(table)) {
      const Json& value = entry.at(member);
      if (value == sought) return entry;
      known.push_back(value.is_string() ? value.text() : value.dump());
    }
    throw Refusal("there is no " + nameOf(table, sought) + didYouMean(word, known));
  }

  void requireSound(const Table& table, const Json& entry) {
    const Json& key = entry.at(table.key);
    const auto isSame = [&](const Json& other) { return other.at(table.key) == key; };
    const Json& list = entries(table);
    if (std::count_if(list.begin(), list.end(), isSame) > 1)
      throw Refusal("there is a " + nameOf(table, key) + " already");
    const std::vector<std::string> faults = danglingIn(table, entry, all_);
    if (!faults.empty()) throw Refusal(placeOf(table.place, key) + "." + joined(faults, "; "));
  }

  Outcome carryOut(const ImportOptions& options) {
    Target target;
    for (std::size_t i = 0; i < all_.size(); ++i)
      if (all_[i].second != before_[i].second)
        target.read(sectionOf(*all_[i].first), all_[i].second);
    return carriedOut(target, options);
  }

 private:
  static const device::Section& sectionOf(const Table& table) {
    return *std::find_if(allSections().begin(), allSections().end(),
                         [&](const device::Section& section) { return section.table == &table; });
  }

  Entries all_;
  Entries before_;
};

}  // namespace

Outcome addEntry(const Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options) {
  Edit edit;
  Json entry = Json::object();
  const char* member = memberFor(table, word);
  entry[member] = valueFromWord(*table.find(member), word);
  assign(table.settings, members, placeOf(table.place, entry.at(member)), entry);
  if (!entry.contains(table.key))
    throw Refusal("which " + std::string(table.key) + "? give " + table.key + "=NUMBER");
  edit.entries(table).push_back(entry);
  edit.requireSound(table, entry);
  return edit.carryOut(options);
}

Outcome setEntry(const Table& table, const std::string& word,
                 const std::vector<std::string>& members, const ImportOptions& options) {
  Edit edit;
  Json& entry = edit.require(table, word);
  assign(table.settings, members, placeOf(table.place, entry.at(table.key)), entry);
  edit.requireSound(table, entry);
  return edit.carryOut(options);
}

Outcome deleteEntry(const Table& table, const std::string& word, bool cascade,
                    const ImportOptions& options) {
  Edit edit;
  const Json key = edit.require(table, word).at(table.key);
  const std::vector<std::string> others = takeAway(table, key, edit.all());
  if (!others.empty() && !cascade)
    throw Refusal(nameOf(table, key) + " is used by " + joined(others) +
                  "; '--cascade' takes it out of these, and deletes those that cannot be without");
  return edit.carryOut(options);
}

}  // namespace camcfg::tool::document
