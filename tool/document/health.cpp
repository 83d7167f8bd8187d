#include "document/health.h"

#include "device/repair.h"
#include "document/document.h"

namespace camcfg::tool::document {

std::vector<std::string> findUnreadSections(Outcome& outcome) {
  std::vector<std::string> findings;
  for (const auto& [name, fault] : unreadSections())
    findings.push_back(std::string(name)
                           .append(" cannot be read: ")
                           .append(fault)
                           .append("; 'camcfg help recovery' says what to do"));
  if (findings.empty() || outcome.status != Status::Done) return findings;
  outcome.status = Status::Degraded;
  outcome.value["health"] = "degraded";
  return findings;
}

Outcome deviceHealth() {
  Outcome outcome = device::checkHealth();
  for (const std::string& finding : findUnreadSections(outcome)) {
    outcome.notes.push_back(finding);
    outcome.value["findings"].push_back(finding);
  }
  return outcome;
}

}  // namespace camcfg::tool::document
