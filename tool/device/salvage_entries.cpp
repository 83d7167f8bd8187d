#include "device/salvage_entries.h"

#include <algorithm>
#include <map>

#include "base/concat.h"
#include "base/elements.h"
#include "base/plain_text.h"
#include "settings/media.h"
#include "settings/presets.h"
#include "settings/secrets.h"
#include "settings/table.h"

namespace camcfg::tool::device {
namespace {

using settings::ElementForm;
using settings::Table;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr char kPreset[] = "preset";  // the beginning of the name of a preset's element
constexpr char kPresets[] = "PresetCfg";

void addNames(const std::vector<ElementForm>& forms, std::vector<std::string>& names) {
  for (const ElementForm& form : forms) {
    names.emplace_back(form.name);
    addNames(form.children, names);
  }
}

std::vector<EntryList> listsOf(const XMLDocument& document) {
  std::vector<EntryList> lists;
  if (document.FirstChildElement(kPresets) != nullptr)
    lists.push_back({"presets", settings::kPresetId, {kPresets}, &settings::presetSettings()});
  for (const Table* table : settings::mediaTables()) {
    const XMLElement* top = document.FirstChildElement(table->parent);
    if (top == nullptr || top->FirstChildElement(table->section) == nullptr) continue;
    lists.push_back(
        {table->place, table->key, {table->section, table->parent}, &table->settings, table});
    addNames(formsOf(*table), lists.back().names);
  }
  return lists;
}

XMLElement* sectionOf(XMLDocument& document, const EntryList& list) {
  tinyxml2::XMLNode* node = &document;
  for (auto name = list.outer.rbegin(); name != list.outer.rend(); ++name)
    node = node->FirstChildElement(std::string(*name).c_str());
  return node->ToElement();
}

// What one copy has of a list: what is permitted, once for each key.
struct Entries {
  std::vector<const Candidate*> all;
  std::map<Json, const Candidate*> byKey;  // null: two claim it
  bool isWhole = false;                    // nothing that the copy had is missing

  const Candidate* find(const Json& key) const {
    const auto found = byKey.find(key);
    return found == byKey.end() ? nullptr : found->second;
  }
};

class EntrySalvage {
 public:
  EntrySalvage(XMLDocument& document, const std::vector<EntryList>& lists,
               const SalvageCopies& copies, SalvageReport& report)
      : copies_(copies), report_(report), lists_(lists) {
    for (std::size_t i = 0; i < copies.size(); ++i) addCandidates(i);
    judge(candidates_);
    for (const EntryList& list : lists_) salvage(list, *sectionOf(document, list));
  }

 private:
  void addCandidates(std::size_t copy) {
    std::map<const EntryList*, std::size_t> numbers;
    for (const FoundElement& element : copies_[copy].elements) {
      if (!element.isWhole()) continue;
      std::vector<const EntryList*> mayHave;
      for (const EntryList& list : lists_)
        if (element.parent == FoundElement::Unknown
                ? list.knows(element.name)
                : list.isEntry(element.name) && copies_[copy].isIn(element, list.outer))
          mayHave.push_back(&list);
      if (mayHave.empty()) continue;
      const EntryList& list = *mayHave.front();
      if (mayHave.size() > 1 || !list.isEntry(element.name))
        report_.refuse(copies_[copy], element, std::string(element.name), kUnknownPlace);
      else if (++numbers[&list] > kMostEntries)
        report_.refuse(copies_[copy], element, list.place, kTooMany);
      else
        candidates_.push_back({&list, copy, &element});
    }
  }

  void salvage(const EntryList& list, XMLElement& section) {
    std::vector<Entries> entries;
    for (std::size_t i = 0; i < copies_.size(); ++i) entries.push_back(entriesIn(i, list));
    const Entries& main = entries[0];
    const Entries& backup = entries[1];
    std::vector<const Candidate*> taken = main.all;
    if (!main.isWhole) insertMissing(taken, backup.all, list.key);
    if (!main.isWhole && !backup.isWhole) insertMissing(taken, entries[2].all, list.key);
    for (XMLElement* child : childrenOf(section))
      if (list.isEntry(child->Name())) section.DeleteChild(child);
    for (const Candidate* entry : taken) {
      const Json& key = entry->record.at(list.key);
      add(list, *entry, main.find(key), backup.find(key));
      const Document document = parsedElement(entry->element->all);
      section.InsertEndChild(document->FirstChildElement()->DeepClone(section.GetDocument()));
    }
  }

  void add(const EntryList& list, const Candidate& entry, const Candidate* main,
           const Candidate* backup) {
    const auto shown = [&](const Json& record) {
      return settings::withMaskedSecrets(record, *list.settings);
    };
    const Json& key = entry.record.at(list.key);
    report_.add(concat(list.place, "[", key.is_string() ? key.text() : key.dump(), "]"),
                sourceOf(main == nullptr ? nullptr : &main->record,
                         backup == nullptr ? nullptr : &backup->record),
                shown(entry.record), backup == nullptr ? Json() : shown(backup->record));
  }

  Entries entriesIn(std::size_t copy, const EntryList& list) {
    Entries entries;
    entries.isWhole = isWhole(copies_[copy], list);
    std::vector<const Candidate*> permitted;
    for (const Candidate& candidate : candidates_) {
      if (candidate.list != &list || candidate.copy != copy) continue;
      const std::string fault =
          candidate.fault.empty() ? addTo(entries, permitted, candidate) : candidate.fault;
      if (fault.empty()) continue;
      entries.isWhole = false;
      report_.refuse(copies_[copy], *candidate.element, list.place, fault);
    }
    for (const Candidate* candidate : permitted)
      if (entries.find(candidate->record.at(list.key)) != nullptr) entries.all.push_back(candidate);
    return entries;
  }

  // Of two that are the same, one counts; of two that differ, neither does.
  static std::string addTo(Entries& entries, std::vector<const Candidate*>& permitted,
                           const Candidate& candidate) {
    const auto [first, isNew] =
        entries.byKey.emplace(candidate.record.at(candidate.list->key), &candidate);
    if (isNew) permitted.push_back(&candidate);
    if (isNew || (first->second != nullptr && first->second->record == candidate.record)) return "";
    first->second = nullptr;
    return kTwice;
  }

  // Whether the element around the entries is whole.
  static bool isWhole(const SalvageCopy& copy, const EntryList& list) {
    const std::vector<std::string_view> outer(list.outer.begin() + 1, list.outer.end());
    return 1 == std::count_if(copy.elements.begin(), copy.elements.end(),
                              [&](const FoundElement& element) {
                                return element.isWhole() && element.name == list.outer.front() &&
                                       copy.isIn(element, outer);
                              });
  }

  // Each after the one that it comes after in its own copy.
  static void insertMissing(std::vector<const Candidate*>& taken,
                            const std::vector<const Candidate*>& others, const std::string& key) {
    std::map<Json, std::size_t> there;
    for (std::size_t i = 0; i < taken.size(); ++i) there.emplace(taken[i]->record.at(key), i);
    std::map<std::size_t, std::vector<const Candidate*>> after;  // 0: before the first one
    std::size_t last = 0;
    for (const Candidate* other : others) {
      const auto same = there.find(other->record.at(key));
      if (same != there.end())
        last = same->second + 1;
      else
        after[last].push_back(other);
    }
    std::vector<const Candidate*> merged;
    for (std::size_t i = 0; i <= taken.size(); ++i) {
      if (i != 0) merged.push_back(taken[i - 1]);
      merged.insert(merged.end(), after[i].begin(), after[i].end());
    }
    taken = std::move(merged);
  }

  const SalvageCopies& copies_;
  SalvageReport& report_;
  const std::vector<EntryList>& lists_;
  std::vector<Candidate> candidates_;
};

}  // namespace

bool EntryList::isEntry(std::string_view name) const {
  if (table == nullptr) return beginsWith(name, kPreset);
  return std::any_of(table->elements.begin(), table->elements.end(),
                     [&](const char* element) { return isSameWord(element, name); });
}

bool EntryList::knows(std::string_view name) const {
  return isEntry(name) || std::any_of(names.begin(), names.end(), [&](const std::string& known) {
           return isSameWord(known, name);
         });
}

bool salvageEntries(XMLDocument& document, const SalvageCopies& copies, SalvageReport& report) {
  const std::vector<EntryList> lists = listsOf(document);
  if (!lists.empty()) const EntrySalvage salvage(document, lists, copies, report);
  return !lists.empty();
}

}  // namespace camcfg::tool::device
