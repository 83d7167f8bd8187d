#include "commands/groups.h"
#include "frame/program.h"

int main(int argc, char** argv) {
  return camcfg::tool::runProgram(camcfg::tool::allGroups(), argc, argv);
}
