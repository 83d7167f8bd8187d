#include <csignal>

#include "base/concat.h"
#include "base/outcome.h"
#include "cli/command_line.h"
#include "commands/groups.h"
#include "device/view.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kProgram[] = "PROGRAM";
constexpr char kProgramArguments[] = "ARGS";

void enter(const std::string& root) try {
  device::seeDevice(root);
} catch (const Refusal& refusal) {
  throw refusal.after(concat(cli::kRoot, " ", root, ": "), refusal.status());
}

cli::Answer run(const cli::Arguments& arguments) {
  if (arguments.given(cli::kRoot)) enter(arguments.text(cli::kRoot));
  // What the tool ignores, a program that it becomes would ignore as well.
  std::signal(SIGXFSZ, SIG_DFL);
  std::vector<std::string> words = {arguments.text(kProgram)};
  for (const std::string& word : arguments.texts(kProgramArguments)) words.push_back(word);
  device::becomeProgram(words);
}

}  // namespace

cli::CommandGroup runGroup() {
  cli::Command command{
      "run",
      "Run a program of this system with the device's settings in their places",
      {{cli::Option::Argument, kProgram, "A program of this system; it keeps all it finds here"},
       {cli::Option::OptionalArguments, kProgramArguments, "Its arguments, unchanged"}},
      run,
      Status::NoDevice};
  command.becomesProgram = true;
  command.usesDevice = false;
  command.details = [] {
    return std::string(
        "The exit status is the program's; 125 when the device cannot be shown to it,\n"
        "126 when it cannot be run, 127 when it does not exist.\n");
  };
  return {"Programs", {command}};
}

}  // namespace camcfg::tool::commands
