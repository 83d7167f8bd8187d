#include <algorithm>

#include "commands/groups.h"
#include "device/files.h"
#include "device/repair.h"
#include "document/health.h"
#include "document/trial.h"
#include "upgrade/upgrade.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";
constexpr char kNoSalvage[] = "--no-salvage";

Answer status(const Arguments& /*arguments*/) {
  Outcome outcome = document::deviceHealth();
  const char* apart = outcome.value["keptApart"].get<bool>()
                          ? "programs: kept apart"
                          : "programs: not kept apart ({keptApartWhyNot})";
  outcome.value["pending"] = document::pendingChange();
  Answer answer(std::move(outcome), {Table{"copies",
                                           {{"FILE", "{file}"},
                                            {"COPY", "{copy}"},
                                            {"STATE", "{state!}"},
                                            {"BYTES", "{bytes}"},
                                            {"CHANGED", "{changed}"},
                                            {"AT START", "{atStart}"}}},
                                     Line{"health: {health!}"}, Line{apart}});
  if (!answer.value["pending"].is_null())
    answer.layout.emplace_back(
        Line{"on trial: change {pending/number} by {pending/caller}, until {pending/until} "
             "({pending/secondsLeft} s left): {pending/command}"});
  return answer;
}

Answer verify(const Arguments& arguments) {
  Answer answer(device::verify(arguments.directory(kKeepDamaged), arguments.given(kResync)),
                {Table{"files",
                       {{"FILE", "{name}"},
                        {"MAIN", "{found/main!}", "{now/main!}"},
                        {"BACKUP", "{found/backup!}", "{now/backup!}"},
                        {"DEFAULT", "{found/default!}", "{now/default!}"},
                        {"AT START", "{checkedAtStart}"},
                        {"MAIN FROM", "{restored/main}"},
                        {"BACKUP FROM", "{restored/backup}"}}}});
  document::rollBackWhatIsOver();
  if (!answer.value["kept"].empty())
    answer.layout.emplace_back(Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  return answer;
}

Answer boot(const Arguments& arguments) {
  Outcome outcome = upgrade::upgradeAtStart(
      device::boot(!arguments.given(kNoSalvage), document::rollBackAtStart));
  document::findUnreadSections(outcome);
  return Answer(std::move(outcome), {cli::Lines{"done", "{}"}});
}

}  // namespace

CommandGroup filesGroup() {
  return {
      "Files",
      {command("status", "Show the state of every copy and what the next start does to it", status),
       restorer("verify", "Check all files as at start-up and restore broken main copies", verify,
                {{Option::Flag, kResync, "Then bring backups in sync with their main copies"},
                 {Option::HostDirectory, kKeepDamaged, "Save the damaged copies in DIR first"}}),
       restorer("boot", "Do all that a start of the device should do", boot,
                {{Option::Flag, kNoSalvage,
                  "Replace files of which no copy loads by factory copies, whatever is left of "
                  "them"}})}};
}

}  // namespace camcfg::tool::commands
