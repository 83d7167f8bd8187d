#include "lint/entry_ids.h"

#include <unordered_map>

#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kCarriedId{
    "carried-id", Severity::Error,
    "Searches by id do not forget the id of the entry before: an entry without a readable \"Id\" "
    "is taken for that one.",
    R"(<preset Id="3" Description="Dock"/> and behind it <preset Description="Gate"/>)"};
constexpr Rule kEqualId{
    "equal-id", Severity::Error,
    "Two entries have the same id: searches find the first, and users of the list cannot tell them "
    "apart.",
    R"(<preset Id="3" Description="Dock"/> and behind it <preset Id="3" Description="Gate"/>)"};

bool readId(const XMLElement& entry, int& id) {
  return entry.QueryIntAttribute("Id", &id) == tinyxml2::XML_SUCCESS;
}

std::string carriedFrom(const XMLElement* before) {
  int id = 0;
  if (before == nullptr || !readId(*before, id))
    return "and there is none before it to take one from";
  return "and is taken for " + std::to_string(id) + ", as the one" + atLine(*before);
}

}  // namespace

void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings) {
  std::unordered_map<int, const XMLElement*> firsts;
  for (const XMLElement* entry : entries) {
    int id = 0;
    if (!readId(*entry, id)) continue;
    const auto [first, isNew] = firsts.emplace(id, entry);
    if (!isNew)
      findings.add(
          kEqualId, *entry, "Id",
          owner + " has the id " + std::to_string(id) + " of the one" + atLine(*first->second));
  }
}

void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings) {
  const XMLElement* before = nullptr;
  for (const XMLElement* entry : entries) {
    if (checkInteger(*entry, "Id", owner, findings))
      before = entry;
    else
      findings.add(kCarriedId, *entry, owner + " has no readable \"Id\", " + carriedFrom(before));
  }
  checkEqualIds(entries, owner, findings);
}

Subject entryIds() {
  return {"ids", {&kCarriedId, &kEqualId}, std::nullopt, nullptr};
}

}  // namespace camcfg::tool::lint
