#include <algorithm>

#include "commands/groups.h"
#include "document/health.h"
#include "parameters/system.h"

namespace camcfg::tool::commands {
namespace {

// What is asked for most, in the order of a day's work, and of one with a broken device.
constexpr const char* kGoOnWith[] = {"status", "find", "set", "undo", "help"};
constexpr const char* kRepairWith[] = {"status", "boot", "salvage", "find", "help"};

Json linesToGoOnWith(bool isWell) {
  const std::vector<CommandGroup> groups = allGroups();
  Json lines = Json::array();
  for (const char* name : isWell ? kGoOnWith : kRepairWith) {
    const cli::Command& command = *cli::findCommand(groups, name);
    lines.push_back(
        {{"line", std::string("camcfg ") + command.examples.front()}, {"help", command.help}});
  }
  return lines;
}

// Where the system's file is unusable, the findings say so.
Json systemOrNull() try { return parameters::systemJson(); } catch (const Refusal&) {
  return nullptr;
}

Answer summary(const Arguments& /*arguments*/) {
  Outcome health = document::deviceHealth();
  Answer answer({{"health", health.value["health"]},
                 {"findings", health.value["findings"]},
                 {"system", systemOrNull()},
                 {"goOnWith", linesToGoOnWith(health.status == Status::Done)}},
                {});
  Fields fields = answer.value["system"].is_null() ? Fields() : systemFields("system/");
  fields.fields.insert(fields.fields.begin(), {"health", "{health!}"});
  answer.layout.emplace_back(std::move(fields));
  answer.layout.emplace_back(Table{"goOnWith", {{"GO ON WITH", "{line}"}, {"", "{help}"}}});
  answer.notes = std::move(health.notes);
  answer.status = health.status;
  return answer;
}

}  // namespace

CommandGroup summaryGroup() {
  return {"Overview",
          {command("summary",
                   "Show the health, the ports and what to go on with, as 'camcfg' by itself does",
                   summary)}};
}

}  // namespace camcfg::tool::commands
