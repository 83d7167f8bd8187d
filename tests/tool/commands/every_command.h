#ifndef CAMCFG_TESTS_TOOL_COMMANDS_EVERY_COMMAND_H
#define CAMCFG_TESTS_TOOL_COMMANDS_EVERY_COMMAND_H

#include <string>
#include <vector>

#include "cli/command.h"
#include "tool/tool_test.h"

namespace camcfg::tests {

/// The words as a line, for messages.
std::string lineOf(const Words& words);

/// The words of a line, between white space.
Words wordsOf(const std::string& line);

/// A device on which every command has something to do, and a command line for each.
class EveryCommandTest : public ToolTest {
 protected:
  EveryCommandTest();

  /// Puts the device back into the state in which everything can be done.
  void renew() const;

  /// The same for one command: for one that ends a trial, a change is on trial.
  void renewFor(const tool::cli::Command& command) const;

  /// All commands that can be run, in the order of the help text.
  std::vector<const tool::cli::Command*> commands() const;

  /// A line with which a command succeeds and, if it can, changes the device. A command that is new
  /// needs one, too: it is a failure if there is none.
  Words lineFor(const tool::cli::Command& command) const;

 private:
  const std::vector<tool::cli::CommandGroup> groups_;
  testkit::DeviceRoot inputs_{testkit::DeviceRoot::StayOut};
};

}  // namespace camcfg::tests

#endif
