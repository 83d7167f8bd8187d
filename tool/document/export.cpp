#include <algorithm>

#include "base/progress.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "document/document.h"
#include "document/exchange.h"
#include "document/print.h"
#include "document/secrets.h"
#include "document/sections.h"

namespace camcfg::tool::document {
namespace {

void requireKnown(const std::vector<std::string>& names) {
  const std::vector<std::string> known = exportNames();
  for (const std::string& name : names) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    std::string list;
    for (const std::string& each : known) list.append(list.empty() ? "" : ", ").append(each);
    throw Refusal(Status::Usage, std::string("there is no section '")
                                     .append(name)
                                     .append("'; there are ")
                                     .append(list)
                                     .append(didYouMean(name, known)));
  }
}

// What a later import would have against the document once the section is to be changed.
void tellFaults(const device::Section& section, const Json& value, device::Plan& plan,
                cli::Answer& answer) {
  settings::Faults faults;
  section.read(settings::Node(value, section.name, faults), value, plan);
  for (const settings::Fault& fault : faults)
    answer.notes.push_back("note: " + fault.place + ": " + fault.reason +
                           "; an import that changes " + section.name + " will refuse it");
}

}  // namespace

std::vector<std::string> exportNames() {
  std::vector<std::string> names;
  for (const device::Section& section : allSections()) {
    const std::string group = section.name.substr(0, section.name.find('.'));
    if (std::find(names.begin(), names.end(), group) == names.end()) names.push_back(group);
    if (group != section.name) names.push_back(section.name);
  }
  return names;
}

cli::Answer exportSettings(const std::vector<std::string>& names, bool withSecrets) {
  requireKnown(names);
  cli::Answer answer;
  answer.value = {{kVersionMember, kVersion}};
  device::Plan plan{allSections()};
  std::size_t number = 0;
  for (const device::Section& section : allSections()) {
    const Stage stage(section.name, ++number, allSections().size());
    const bool wanted = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
      return isWithin(section, name);
    });
    if (!wanted && !names.empty()) continue;
    const Json value = section.load();
    tellFaults(section, value, plan, answer);
    answer.value.at_path(pathTo(section)) = withSecrets ? value : withoutSecrets(section, value);
    if (withSecrets && holdsSecrets(section, value))
      answer.notes.push_back("note: " + section.name +
                             " holds passwords in clear; '--no-secrets' leaves them out");
  }
  answer.layout = {cli::Verbatim{printJson(answer.value)}};
  return answer;
}

}  // namespace camcfg::tool::document
