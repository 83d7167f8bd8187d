#include "commands/groups.h"
#include "device/repair.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";

cli::Answer status(const cli::Arguments& /*arguments*/) {
  return cli::Answer(device::checkHealth(), {cli::Table{"copies",
                                                        {{"FILE", "{file}"},
                                                         {"COPY", "{copy}"},
                                                         {"STATE", "{state!}"},
                                                         {"BYTES", "{bytes}"},
                                                         {"CHANGED", "{changed}"},
                                                         {"AT START", "{atStart}"}}},
                                             cli::Line{"health: {health!}"}});
}

cli::Answer verify(const cli::Arguments& arguments) {
  cli::Answer answer(device::verify(arguments.directory(kKeepDamaged), arguments.given(kResync)),
                     {cli::Table{"files",
                                 {{"FILE", "{name}"},
                                  {"MAIN", "{found/main!}", "{now/main!}"},
                                  {"BACKUP", "{found/backup!}", "{now/backup!}"},
                                  {"DEFAULT", "{found/default!}", "{now/default!}"},
                                  {"AT START", "{checkedAtStart}"},
                                  {"MAIN FROM", "{restored/main}"},
                                  {"BACKUP FROM", "{restored/backup}"}}}});
  if (!answer.value["kept"].empty())
    answer.layout.emplace_back(
        cli::Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  return answer;
}

}  // namespace

cli::CommandGroup filesGroup() {
  return {"Files",
          {{"status", "Show how every copy is and what the next start does to it", {}, status},
           {"verify",
            "Check all files as at start-up and restore broken main copies",
            {{cli::Option::Flag, kResync, "Then bring backups in sync with their main copies"},
             {cli::Option::HostDirectory, kKeepDamaged, "Save damaged bytes in DIR before"}},
            verify}}};
}

}  // namespace camcfg::tool::commands
