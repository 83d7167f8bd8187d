#include "document/document.h"

#include <algorithm>

#include "base/json_reader.h"
#include "base/plain_text.h"
#include "base/printable.h"
#include "base/progress.h"
#include "base/refusal.h"
#include "document/secrets.h"
#include "media/sections.h"
#include "network/section.h"
#include "parameters/section.h"
#include "presets/section.h"

namespace camcfg::tool::document {
namespace {

std::vector<device::Section> collected() {
  std::vector<device::Section> all = media::sections();
  all.insert(all.end(), {parameters::parametersSection(), network::networkSection(),
                         presets::presetsSection()});
  return all;
}

// "line 3, column 5: " of a byte that is counted from 1.
std::string placeOf(std::size_t position, const std::string& text) {
  const std::size_t byte = std::min(position == 0 ? 0 : position - 1, text.size());
  const std::string before = text.substr(0, byte);
  const std::size_t line = before.rfind('\n');
  const std::string start = line == std::string::npos ? before : before.substr(line + 1);
  return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) +
         ", column " + std::to_string(1 + characters(start)) + ": ";
}

// Of two members of one name the first counts and the second is a fault.
Json parseJson(const std::string& text, settings::Faults& faults) {
  JsonText read = readJson(text);
  if (read.fault != 0) throw Refusal(placeOf(read.fault, text) + shortened(read.reason));
  for (const std::string& place : read.repeated) faults.push_back({place, "it occurs here twice"});
  return std::move(read.value);
}

// The members that may be below a place: the next words of the names of the sections there.
std::vector<std::string> membersBelow(const std::string& place) {
  std::vector<std::string> members;
  const std::string prefix = place.empty() ? "" : place + ".";
  if (place.empty()) members.emplace_back(kVersionMember);
  for (const device::Section& section : allSections()) {
    if (!beginsWith(section.name, prefix)) continue;
    const std::string rest = section.name.substr(prefix.size());
    const std::string word = rest.substr(0, rest.find('.'));
    if (!isAmong(members, word)) members.push_back(word);
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
    version.refuse("only version " + std::to_string(kVersion) + " is supported");
}

constexpr std::size_t kWidth = 120;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kRecordIndent = 3 * kIndent;  // {"live": {"srt": [RECORD

// What comes before a value: the name of an object's member.
std::string nameAt(const Json& value, std::size_t index) {
  return value.is_object() ? Json(value.names()[index]).dump() + ": " : "";
}

std::string onOneLine(const Json& value) {
  if (!value.is_structured() || value.empty()) return value.dump();
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i)
    text += (text.empty() ? "" : ", ") + nameAt(value, i) + onOneLine(value.at(i));
  return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

bool holdsScalarsOnly(const Json& value) {
  return std::none_of(value.begin(), value.end(),
                      [](const Json& member) { return member.is_structured(); });
}

// Down to the records of a list, every one has a line of its own.
bool maybeOnOneLine(const Json& value, std::size_t indent) {
  return indent >= kRecordIndent || (indent > 0 && holdsScalarsOnly(value));
}

std::string block(const Json& value, std::size_t indent, std::size_t taken) {
  std::string line = onOneLine(value);
  const bool nested = value.is_structured() && !value.empty();
  if (!nested || (maybeOnOneLine(value, indent) && taken + line.size() < kWidth)) return line;
  const std::string margin(indent + kIndent, ' ');
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const std::string name = nameAt(value, i);
    text.append(text.empty() ? "\n" : ",\n").append(margin).append(name);
    text += block(value.at(i), margin.size(), margin.size() + name.size());
  }
  const std::string end = "\n" + std::string(indent, ' ');
  return value.is_object() ? "{" + text + end + "}" : "[" + text + end + "]";
}

}  // namespace

const std::vector<device::Section>& allSections() {
  static const std::vector<device::Section> all = collected();
  return all;
}

bool isWithin(const device::Section& section, const std::string& name) {
  return section.name == name || beginsWith(section.name, name + ".");
}

std::string pathTo(const device::Section& section) {
  std::string path = section.name;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

std::vector<Transition> readDocument(const std::string& text, settings::Faults& faults) {
  const Json document = parseJson(text, faults);
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
    // What the device holds already is not for this document to repair.
    const Json after =
        given == before ? before
                        : section.read(settings::Node(given, section.name, faults), before, plan);
    plan.set(section.name, after);
    if (after != before) transitions.push_back({&section, before, after});
  }
  return transitions;
}

std::string printJson(const Json& value) {
  return block(value, 0, 0) + "\n";
}

}  // namespace camcfg::tool::document
