#include "frame/status.h"
#include "commands/groups.h"
#include "device/health.h"

namespace camcfg::tool {
namespace {

// "2026-11-21T11:15:13Z"
Json timeOrNull(const std::optional<std::time_t>& time) {
  std::tm parts{};
  char text[sizeof "2026-11-21T11:15:13Z" + 8] = {};
  if (!time || gmtime_r(&*time, &parts) == nullptr) return nullptr;
  return std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) == 0 ? Json() : Json(text);
}

Json wordOrNull(AtStart done) {
  switch (done) {
    case AtStart::Stays:
      return "stays";
    case AtStart::FromBackup:
      return "from-backup";
    case AtStart::FromDefault:
      return "from-default";
    case AtStart::WaitsForEver:
      return "waits-for-ever";
    case AtStart::NotLookedAt:
      break;
  }
  return nullptr;
}

Json recordOf(const FileHealth& file) {
  return {{"name", file.name},
          {"health", wordFor(file.health)},
          {"required", file.required},
          {"checkedAtStart", file.checkedAtStart}};
}

Json recordOf(const FileHealth& file, const CopyHealth& copy) {
  return {{"file", file.name},
          {"copy", wordFor(copy.place)},
          {"path", pathOf(copy.place, file.name)},
          {"state", wordFor(copy.state)},
          {"bytes", copy.bytes ? Json(*copy.bytes) : Json()},
          {"changed", timeOrNull(copy.changed)},
          {"atStart", wordOrNull(copy.atStart)}};
}

Status statusOf(Health health) {
  if (health == Health::Well) return Status::Done;
  return health == Health::Degraded ? Status::Degraded : Status::Unusable;
}

Answer status(const Arguments& /*arguments*/) {
  Answer answer;
  answer.value = {{"health", ""},
                  {"files", Json::array()},
                  {"copies", Json::array()},
                  {"findings", Json::array()}};
  Health worst = Health::Well;
  for (const FileHealth& file : checkHealth()) {
    worst = std::max(worst, file.health);
    answer.value["files"].push_back(recordOf(file));
    for (const CopyHealth& copy : file.copies)
      answer.value["copies"].push_back(recordOf(file, copy));
    for (const std::string& finding : file.findings) {
      answer.value["findings"].push_back(finding);
      answer.notes.push_back(finding);
    }
  }
  answer.value["health"] = wordFor(worst);
  answer.status = statusOf(worst);
  answer.layout = {Table{"copies",
                         {{"FILE", "{file}"},
                          {"COPY", "{copy}"},
                          {"STATE", "{state!}"},
                          {"BYTES", "{bytes}"},
                          {"CHANGED", "{changed}"},
                          {"AT START", "{atStart}"}}},
                   Line{"health: {health!}"}};
  return answer;
}

}  // namespace

CommandGroup statusGroup() {
  return {"Files",
          {{"status", "Tell how every copy is and what the next start does to it", {}, status}}};
}

}  // namespace camcfg::tool
