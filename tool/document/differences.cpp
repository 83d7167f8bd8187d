#include <algorithm>
#include <set>
#include <vector>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/calm.h"
#include "document/exchange.h"
#include "document/keyed.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

void add(const std::string& place, const Json& before, const Json& after, Json& found) {
  Json difference = Json::object();
  difference["place"] = place;
  difference["before"] = before;
  difference["after"] = after;
  found.push_back(std::move(difference));
}

void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found);

std::vector<Json> keysOnlyIn(const Keyed& list, const Keyed& other) {
  std::vector<Json> keys;
  for (const Json& key : list.keys())
    if (other.at(key).is_null()) keys.push_back(key);
  return keys;
}

// Whether all that is different is the key of one element, which was given another name.
bool isRenaming(const char* key, const Keyed& before, const Keyed& after) {
  const std::vector<Json> gone = keysOnlyIn(before, after);
  const std::vector<Json> added = keysOnlyIn(after, before);
  if (*key == '\0' || gone.size() != 1 || added.size() != 1) return false;
  Json renamed = before.at(gone.front());
  renamed[key] = added.front();
  std::vector<Json> keys = before.keys();
  std::replace(keys.begin(), keys.end(), gone.front(), added.front());
  return renamed == after.at(added.front()) && keys == after.keys();
}

void addElements(const char* key, const std::string& place, const Keyed& before, const Keyed& after,
                 Json& found) {
  const bool isRenamed = isRenaming(key, before, after);
  const auto compare = [&](const Json& each) {
    addDifferences(placeOf(place, each), before.at(each), after.at(each), found);
  };
  for (const Json& each : before.keys())
    if (isRenamed && after.at(each).is_null())
      add(memberPlace(placeOf(place, each), key), each, keysOnlyIn(after, before).front(), found);
    else
      compare(each);
  for (const Json& each : after.keys())
    if (!isRenamed && before.at(each).is_null()) compare(each);
  const std::vector<Json> former = before.keysIn(after);
  const std::vector<Json> latter = after.keysIn(before);
  if (former != latter) add(place + " (order)", former, latter, found);
}

void addMembers(const std::string& place, const Json& before, const Json& after, Json& found) {
  for (const auto& [name, member] : before.items())
    addDifferences(memberPlace(place, name), member, memberOrNothing(after, name), found);
  for (const auto& [name, member] : after.items())
    if (!before.contains(name)) addDifferences(memberPlace(place, name), Json(), member, found);
}

void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found) {
  if (before == after) return;
  if (before.is_object() && after.is_object()) return addMembers(place, before, after, found);
  if (const char* key = keyOf({&before, &after}))
    return addElements(key, place, Keyed(before, key), Keyed(after, key), found);
  add(place, before, after, found);
}

Outcome outcomeOf(const std::string& other, const std::vector<Transition>& transitions,
                  bool showSecrets) {
  Outcome outcome;
  outcome.value = {{"with", other}, {"differences", Json::array()}, {"notCompared", Json::array()}};
  for (const Json& difference : differencesOf(transitions, showSecrets)) {
    outcome.value["differences"].push_back({{"place", difference["place"]},
                                            {"device", difference["before"]},
                                            {"other", difference["after"]}});
    outcome.status = Status::Refused;
  }
  return outcome;
}

// What could not be compared. One fault often keeps several sections from it.
void noteTrouble(Outcome& outcome, Status status, const settings::Faults& faults) {
  Json places;
  for (const auto& [place, reason] : faults) {
    const std::string where = place.empty() ? "document" : place;
    outcome.status = status;
    outcome.value["notCompared"].push_back({{"place", where}, {"reason", reason}});
    places[reason].push_back(where);
  }
  for (const auto& [reason, list] : places.items()) {
    std::vector<std::string> names;
    for (const Json& place : list) names.push_back(place.text());
    outcome.notes.push_back(concat("not compared: ", joined(names), ": ", reason));
  }
}

// Files whose settings are the same may hold different limits, comments or unread elements.
void noteUnlikeFiles(Outcome& outcome, const std::set<std::string>& compared, device::Place other) {
  for (const std::string& path : compared) {
    const std::string copy = device::pathOf(other, path);
    if (!device::sameContents(device::loadCopy(path), device::loadCopy(copy)))
      outcome.notes.push_back(
          std::string("note: ").append(path).append(" and ").append(copy).append(
              " have the same settings, but differ in what is none, "
              "such as limits or comments"));
  }
}

Outcome compareOnce(device::Place other, bool showSecrets) {
  const CopiedSections mains = loadFrom(device::Place::Main);
  const CopiedSections others = loadFrom(other);
  Target target;
  std::set<std::string> alike;
  std::set<std::string> unlike;
  for (const device::Section& section : allSections()) {
    const auto& [main, mainFault] = mains.at(section.name);
    const auto& [copy, copyFault] = others.at(section.name);
    const std::string& fault = mainFault.empty() ? copyFault : mainFault;
    if (fault.empty())
      target.add(section, main, copy);
    else
      target.faults.push_back({section.name, fault});
    (fault.empty() && main == copy ? alike : unlike).insert(section.path);
  }
  for (const std::string& path : unlike) alike.erase(path);
  Outcome outcome = outcomeOf(device::wordFor(other), target.transitions, showSecrets);
  noteTrouble(outcome, Status::Unusable, target.faults);
  noteUnlikeFiles(outcome, alike, other);
  return outcome;
}

}  // namespace

std::size_t deletionsIn(const Transition& transition) {
  const char* key = keyOf({&transition.before, &transition.after});
  if (key == nullptr) return 0;
  const Keyed before(transition.before, key);
  const Keyed after(transition.after, key);
  return isRenaming(key, before, after) ? 0 : keysOnlyIn(before, after).size();
}

Json differencesOf(const std::vector<Transition>& transitions, bool showSecrets) {
  Json found = Json::array();
  for (const auto& [section, before, after, replaced] : transitions) {
    for (const device::Unread& unread : replaced)
      if (!unread.was.empty()) add(section->name, unread.was, Json(), found);
    addDifferences(section->name, before, after, found);
  }
  if (showSecrets) return found;
  for (Json& difference : found)
    for (const char* side : {"before", "after"})
      difference[side] = settings::maskedAt(difference["place"].text(), difference[side]);
  return found;
}

Outcome compareWithCopies(device::Place other, bool showSecrets) {
  return device::calmly([&] { return compareOnce(other, showSecrets); },
                        [](const Outcome& outcome) { return outcome.status != Status::Done; });
}

Outcome compareWithDocument(const std::string& text, bool showSecrets) {
  const Target target = readDocument(text, Mode::Replace, true);
  Outcome outcome = outcomeOf("document", target.transitions, showSecrets);
  noteTrouble(outcome, Status::Usage, target.faults);
  return outcome;
}

}  // namespace camcfg::tool::document
