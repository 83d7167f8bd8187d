#include "base/caller.h"
#include "cli/command_line.h"
#include "cli/raw_line.h"
#include "commands/groups.h"

int main(int argc, char** argv) {
  using namespace camcfg::tool;
  rememberCaller(argc, argv);
  return cli::runProgram(commands::groupsFor(cli::commandWordIn(argc, argv)), argc, argv,
                         {commands::prepare, commands::remarks, "summary"});
}
