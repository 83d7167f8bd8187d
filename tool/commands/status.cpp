#include "base/refusal.h"
#include "commands/groups.h"
#include "device/health.h"

namespace camcfg::tool::commands {
namespace {

// "2026-11-21T11:15:13Z"
Json timeOrNull(const std::optional<std::time_t>& time) {
  std::tm parts{};
  char text[sizeof "2026-11-21T11:15:13Z" + 8] = {};
  if (!time || gmtime_r(&*time, &parts) == nullptr) return nullptr;
  return std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) == 0 ? Json() : Json(text);
}

Json wordOrNull(device::AtStart done) {
  switch (done) {
    case device::AtStart::Stays:
      return "stays";
    case device::AtStart::FromBackup:
      return "from-backup";
    case device::AtStart::FromDefault:
      return "from-default";
    case device::AtStart::WaitsForEver:
      return "waits-for-ever";
    case device::AtStart::NotLookedAt:
      break;
  }
  return nullptr;
}

Json recordOf(const device::FileHealth& file) {
  return {{"name", file.name},
          {"health", device::wordFor(file.health)},
          {"required", file.required},
          {"checkedAtStart", file.checkedAtStart}};
}

Json recordOf(const device::FileHealth& file, const device::CopyHealth& copy) {
  return {{"file", file.name},
          {"copy", device::wordFor(copy.place)},
          {"path", device::pathOf(copy.place, file.name)},
          {"state", device::wordFor(copy.state)},
          {"bytes", copy.bytes ? Json(*copy.bytes) : Json()},
          {"changed", timeOrNull(copy.changed)},
          {"atStart", wordOrNull(copy.atStart)}};
}

Status statusOf(device::Health health) {
  if (health == device::Health::Well) return Status::Done;
  return health == device::Health::Degraded ? Status::Degraded : Status::Unusable;
}

cli::Answer status(const cli::Arguments& /*arguments*/) {
  cli::Answer answer;
  answer.value = {{"health", ""},
                  {"files", Json::array()},
                  {"copies", Json::array()},
                  {"findings", Json::array()}};
  device::Health worst = device::Health::Well;
  for (const device::FileHealth& file : device::checkHealth()) {
    worst = std::max(worst, file.health);
    answer.value["files"].push_back(recordOf(file));
    for (const device::CopyHealth& copy : file.copies)
      answer.value["copies"].push_back(recordOf(file, copy));
    for (const std::string& finding : file.findings) {
      answer.value["findings"].push_back(finding);
      answer.notes.push_back(finding);
    }
  }
  answer.value["health"] = device::wordFor(worst);
  answer.status = statusOf(worst);
  answer.layout = {cli::Table{"copies",
                              {{"FILE", "{file}"},
                               {"COPY", "{copy}"},
                               {"STATE", "{state!}"},
                               {"BYTES", "{bytes}"},
                               {"CHANGED", "{changed}"},
                               {"AT START", "{atStart}"}}},
                   cli::Line{"health: {health!}"}};
  return answer;
}

}  // namespace

cli::CommandGroup statusGroup() {
  return {"Files",
          {{"status", "Tell how every copy is and what the next start does to it", {}, status}}};
}

}  // namespace camcfg::tool::commands
