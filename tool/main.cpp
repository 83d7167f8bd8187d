#include "base/caller.h"
#include "cli/command_line.h"
#include "commands/groups.h"

int main(int argc, char** argv) {
  camcfg::tool::rememberCaller(argc, argv);
  return camcfg::tool::cli::runProgram(camcfg::tool::commands::allGroups(), argc, argv);
}
