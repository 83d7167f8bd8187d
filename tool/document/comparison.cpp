#include "document/comparison.h"
#include "document/sections.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/refusal.h"
#include "document/copies.h"
#include "document/differences.h"
#include "document/document.h"
#include "document/parse.h"
#include "document/secrets.h"

namespace camcfg::tool::document {
namespace {

constexpr Status kDiffers = Status::Refused;
constexpr Status kFaultyDocument = Status::Usage;

using Sections = std::map<std::string, CopiedSection>;

cli::Answer answerOf(const std::string& other, const Json& differences, bool showSecrets) {
  cli::Answer answer;
  answer.value["with"] = other;
  answer.value["differences"] = showSecrets ? differences : withMaskedSides(differences);
  for (Json& difference : answer.value["differences"])
    difference = {{"place", difference["place"]},
                  {"device", difference["before"]},
                  {"other", difference["after"]}};
  answer.value["notCompared"] = Json::array();
  if (differences.empty()) return answer;
  answer.status = kDiffers;
  const std::map<std::string, const char*> headings = {
      {"backup", "BACKUP"}, {"default", "DEFAULT"}, {"document", "DOCUMENT"}};
  answer.layout = {
      cli::Table{"differences",
                 {{"PLACE", "{place}"}, {"MAIN", "{device}"}, {headings.at(other), "{other}"}}}};
  return answer;
}

void addTrouble(cli::Answer& answer, Status status, const std::string& place,
                const std::string& reason) {
  answer.status = status;
  answer.value["notCompared"].push_back({{"place", place}, {"reason", reason}});
}

// One fault often keeps several sections from being compared.
void tellTrouble(cli::Answer& answer) {
  std::vector<std::string> reasons;
  std::map<std::string, std::string> places;
  for (const Json& trouble : answer.value["notCompared"]) {
    const auto reason = trouble["reason"].get<std::string>();
    std::string& list = places[reason];
    if (list.empty()) reasons.push_back(reason);
    list.append(list.empty() ? "" : ", ").append(trouble["place"].get<std::string>());
  }
  for (const std::string& reason : reasons)
    answer.notes.push_back("not compared: " + places[reason] + ": " + reason);
}

std::string faultOf(const CopiedSection& main, const CopiedSection& other) {
  return main.fault.empty() ? other.fault : main.fault;
}

// Files whose settings are the same may hold different limits, comments or unread elements.
void tellUnlikeFiles(cli::Answer& answer, const std::set<std::string>& compared,
                     device::Place other) {
  for (const std::string& path : compared) {
    const std::string copy = device::pathOf(other, device::nameOf(path));
    if (!device::sameContents(device::loadCopy(path), device::loadCopy(copy)))
      answer.notes.push_back(std::string("note: ").append(path).append(" and ").append(copy).append(
          " have the same settings, but differ in what is none, "
          "such as limits or comments"));
  }
}

}  // namespace

cli::Answer compareWithCopies(device::Place other, bool showSecrets) {
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
  cli::Answer answer = answerOf(device::wordFor(other), differences, showSecrets);
  for (const device::Section& section : allSections()) {
    const std::string fault = faultOf(mains.at(section.name), others.at(section.name));
    if (!fault.empty()) addTrouble(answer, Status::Unusable, section.name, fault);
  }
  tellTrouble(answer);
  for (const std::string& path : unlike) alike.erase(path);
  tellUnlikeFiles(answer, alike, other);
  if (answer.status == Status::Done) answer.layout = {cli::Line{"nothing differs"}};
  return answer;
}

cli::Answer compareWithDocument(const std::string& text, bool showSecrets) {
  settings::Faults faults;
  const Json document = parseJson(text, faults);
  Json differences = Json::array();
  for (const auto& [section, before, after] : readDocument(document, faults))
    addDifferences(section->name, before, after, differences);
  cli::Answer answer = answerOf("document", differences, showSecrets);
  for (const auto& [place, reason] : faults)
    addTrouble(answer, kFaultyDocument, place.empty() ? "document" : place, reason);
  tellTrouble(answer);
  if (answer.status == Status::Done) answer.layout = {cli::Line{"nothing differs"}};
  return answer;
}

}  // namespace camcfg::tool::document
