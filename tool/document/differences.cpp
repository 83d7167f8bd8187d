#include "document/differences.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "base/plain_text.h"
#include "document/copies.h"
#include "document/document.h"
#include "document/secrets.h"

namespace camcfg::tool::document {
namespace {

using Sections = std::map<std::string, CopiedSection>;

const Json kNothing;

bool isListOfObjects(const Json& value) {
  return value.is_array() && std::all_of(value.begin(), value.end(),
                                         [](const Json& element) { return element.is_object(); });
}

const Json& memberOrNothing(const Json& object, const std::string& name) {
  const auto found = object.find(name);
  return found == object.end() ? kNothing : *found;
}

// A list whose elements are found by a member, or by their position.
class Keyed {
 public:
  Keyed(const Json& list, const char* name) : list_(list) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      const Json key = *name == '\0' ? Json(i) : memberOrNothing(list[i], name);
      if (!key.is_null() && places_.emplace(key, i).second) keys_.push_back(key);
    }
  }

  /// Whether every element has a key of its own.
  bool works() const { return keys_.size() == list_.size(); }
  const std::vector<Json>& keys() const { return keys_; }
  const Json& at(const Json& key) const {
    const auto found = places_.find(key);
    return found == places_.end() ? kNothing : list_[found->second];
  }
  std::vector<Json> keysIn(const Keyed& other) const {
    std::vector<Json> common;
    for (const Json& key : keys_)
      if (!other.at(key).is_null()) common.push_back(key);
    return common;
  }

 private:
  const Json& list_;
  std::vector<Json> keys_;
  std::map<Json, std::size_t> places_;
};

void add(const std::string& place, const Json& before, const Json& after, Json& found) {
  found.push_back({{"place", place}, {"before", before}, {"after", after}});
}

void addElements(const std::string& place, const Keyed& before, const Keyed& after, Json& found) {
  const auto compare = [&](const Json& key) {
    const std::string name = key.is_string() ? key.text() : key.dump();
    addDifferences(place + "[" + name + "]", before.at(key), after.at(key), found);
  };
  for (const Json& key : before.keys()) compare(key);
  for (const Json& key : after.keys())
    if (before.at(key).is_null()) compare(key);
  const std::vector<Json> former = before.keysIn(after);
  const std::vector<Json> latter = after.keysIn(before);
  if (former != latter) add(place + " (order)", former, latter, found);
}

void addMembers(const std::string& place, const Json& before, const Json& after, Json& found) {
  for (const auto& [name, member] : before.items())
    addDifferences(memberPlace(place, name), member, memberOrNothing(after, name), found);
  for (const auto& [name, member] : after.items())
    if (!before.contains(name)) addDifferences(memberPlace(place, name), kNothing, member, found);
}

Outcome outcomeOf(const std::string& other, const Json& differences, bool showSecrets) {
  Outcome outcome;
  outcome.value = {{"with", other}, {"differences", Json::array()}, {"notCompared", Json::array()}};
  for (const Json& difference : showSecrets ? differences : withMaskedSides(differences))
    outcome.value["differences"].push_back({{"place", difference["place"]},
                                            {"device", difference["before"]},
                                            {"other", difference["after"]}});
  if (!differences.empty()) outcome.status = Status::Refused;
  return outcome;
}

void addTrouble(Outcome& outcome, Status status, const std::string& place,
                const std::string& reason) {
  outcome.status = status;
  outcome.value["notCompared"].push_back({{"place", place}, {"reason", reason}});
}

// One fault often keeps several sections from being compared.
void noteTrouble(Outcome& outcome) {
  Json places;
  for (const Json& trouble : outcome.value["notCompared"])
    places[trouble["reason"].text()].push_back(trouble["place"]);
  for (const auto& [reason, list] : places.items()) {
    std::vector<std::string> names;
    for (const Json& place : list) names.push_back(place.text());
    outcome.notes.push_back("not compared: " + joined(names) + ": " + reason);
  }
}

std::string faultOf(const CopiedSection& main, const CopiedSection& other) {
  return main.fault.empty() ? other.fault : main.fault;
}

// Files whose settings are the same may hold different limits, comments or unread elements.
void noteUnlikeFiles(Outcome& outcome, const std::set<std::string>& compared, device::Place other) {
  for (const std::string& path : compared) {
    const std::string copy = device::pathOf(other, device::nameOf(path));
    if (!device::sameContents(device::loadCopy(path), device::loadCopy(copy)))
      outcome.notes.push_back(
          std::string("note: ").append(path).append(" and ").append(copy).append(
              " have the same settings, but differ in what is none, "
              "such as limits or comments"));
  }
}

}  // namespace

void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found) {
  if (before == after) return;
  if (before.is_object() && after.is_object()) return addMembers(place, before, after, found);
  const bool lists = isListOfObjects(before) && isListOfObjects(after);
  for (const char* key : {"id", "name", ""}) {
    if (!lists) break;
    const Keyed former(before, key);
    const Keyed latter(after, key);
    if (former.works() && latter.works()) return addElements(place, former, latter, found);
  }
  add(place, before, after, found);
}

Outcome compareWithCopies(device::Place other, bool showSecrets) {
  const Sections mains = loadFromMain();
  const Sections others = loadFromCopies(other);
  Json differences = Json::array();
  std::set<std::string> alike;
  std::set<std::string> unlike;
  for (const device::Section& section : allSections()) {
    const CopiedSection& main = mains.at(section.name);
    const CopiedSection& copy = others.at(section.name);
    const bool compared = faultOf(main, copy).empty();
    if (compared) addDifferences(section.name, main.value, copy.value, differences);
    (compared && main.value == copy.value ? alike : unlike).insert(section.path);
  }
  Outcome outcome = outcomeOf(device::wordFor(other), differences, showSecrets);
  for (const device::Section& section : allSections()) {
    const std::string fault = faultOf(mains.at(section.name), others.at(section.name));
    if (!fault.empty()) addTrouble(outcome, Status::Unusable, section.name, fault);
  }
  noteTrouble(outcome);
  for (const std::string& path : unlike) alike.erase(path);
  noteUnlikeFiles(outcome, alike, other);
  return outcome;
}

Outcome compareWithDocument(const std::string& text, bool showSecrets) {
  settings::Faults faults;
  Json differences = Json::array();
  for (const auto& [section, before, after] : readDocument(text, faults))
    addDifferences(section->name, before, after, differences);
  Outcome outcome = outcomeOf("document", differences, showSecrets);
  for (const auto& [place, reason] : faults)
    addTrouble(outcome, Status::Usage, place.empty() ? "document" : place, reason);
  noteTrouble(outcome);
  return outcome;
}

}  // namespace camcfg::tool::document
