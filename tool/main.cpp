#include "cli/command_line.h"
#include "commands/groups.h"

int main(int argc, char** argv) {
  return camcfg::tool::cli::runProgram(camcfg::tool::commands::allGroups(), argc, argv);
}
