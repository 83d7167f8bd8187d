#include "document/document.h"
#include "document/sections.h"

#include <algorithm>

#include "base/progress.h"
#include "document/secrets.h"

namespace camcfg::tool::document {
namespace {

// The members that may stand below a place: the next words of the names of the sections there.
std::vector<std::string> membersBelow(const std::string& place) {
  std::vector<std::string> members;
  const std::string prefix = place.empty() ? "" : place + ".";
  if (place.empty()) members.emplace_back(kVersionMember);
  for (const device::Section& section : allSections()) {
    if (section.name.find(prefix) != 0) continue;
    const std::string rest = section.name.substr(prefix.size());
    const std::string word = rest.substr(0, rest.find('.'));
    if (std::find(members.begin(), members.end(), word) == members.end()) members.push_back(word);
  }
  return members;
}

bool isSection(const std::string& place) {
  return std::any_of(allSections().begin(), allSections().end(),
                     [&](const device::Section& section) { return section.name == place; });
}

// Objects from the document down to the sections.
void checkFrame(const settings::Node& node) {
  const std::vector<std::string> members = membersBelow(node.place());
  if (!node.isObjectOf(members)) return;
  for (const std::string& name : members)
    if (node.value().contains(name) && name != kVersionMember &&
        !isSection(node.member(name).place()))
      checkFrame(node.member(name));
}

void checkVersion(const settings::Node& document) {
  if (!document.value().is_object()) return;
  if (!document.value().contains(kVersionMember)) return document.refuseMissing(kVersionMember);
  const settings::Node version = document.member(kVersionMember);
  if (version.value() != kVersion)
    version.refuse("this tool reads version " + std::to_string(kVersion) + " alone");
}

}  // namespace

bool isWithin(const device::Section& section, const std::string& name) {
  return section.name == name || section.name.find(name + ".") == 0;
}

std::string pathTo(const device::Section& section) {
  std::string path = section.name;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

std::vector<Transition> readDocument(const Json& document, settings::Faults& faults) {
  const settings::Node whole(document, "", faults);
  checkFrame(whole);
  checkVersion(whole);
  std::vector<Transition> transitions;
  device::Plan plan{allSections()};
  std::size_t number = 0;
  for (const device::Section& section : allSections()) {
    const Stage stage(section.name, ++number, allSections().size());
    const Json* stated = document.is_object() ? document.find_path(pathTo(section)) : nullptr;
    if (stated == nullptr) continue;
    const Json before = section.load();
    const Json given = withKeptSecrets(section, *stated, before);
    // What the device holds already is not for this document to mend.
    const Json after =
        given == before ? before
                        : section.read(settings::Node(given, section.name, faults), before, plan);
    plan.set(section.name, after);
    if (after != before) transitions.push_back({&section, before, after});
  }
  return transitions;
}

}  // namespace camcfg::tool::document
