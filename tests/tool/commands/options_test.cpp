#include <stdexcept>

#include "base/outcome.h"
#include "cli/command_line.h"
#include "cli/completion.h"
#include "commands/groups.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using namespace tool::commands;

bool isRequired(const Option& option) {
  return option.kind == Option::Argument || option.kind == Option::Arguments ||
         option.kind == Option::HostFile;
}

// What may be typed for an option, or in the place of an argument.
Words typed(const Option& option) {
  if (option.name == std::string("COMMAND")) return {"undo"};
  switch (option.kind) {
    case Option::Flag:
      return {option.name};
    case Option::Value:
    case Option::Values:
      return {option.name, "1"};
    case Option::HostDirectory:
      return {option.name, "/kept"};
    case Option::HostFile:
    case Option::HostFiles:
    case Option::OptionalHostFile:
      return {kBusiness};
    default:
      return {"1"};
  }
}

class OptionsTest : public testing::Test {
 protected:
  OptionsTest() {
    device.write(kBusiness, kParameters);
    device.write(kMpp, kMedia);
  }

  // The line for a command, with what it and those above it require.
  Words lineFor(const std::string& name) const {
    const std::size_t space = name.rfind(' ');
    Words line = space == std::string::npos ? Words() : lineFor(name.substr(0, space));
    line.push_back(name.substr(space + 1));
    for (const CommandGroup& group : groups)
      for (const Command& command : group.commands)
        for (const Option& option : command.options)
          if (name == command.name && isRequired(option)) append(line, typed(option));
    return line;
  }

  // That line by itself, with each of the options, and with all of them.
  std::vector<Words> linesFor(const Command& command) const {
    const Words required = lineFor(command.name);
    std::vector<Words> lines = {required};
    Words all = required;
    for (const Option& option : command.options) {
      if (isRequired(option)) continue;
      lines.push_back(required);
      append(lines.back(), typed(option));
      append(all, typed(option));
    }
    lines.push_back(all);
    return lines;
  }

  Invocation read(const Words& line) const {
    std::vector<const char*> words = {"camcfg"};
    for (const std::string& word : line) words.push_back(word.c_str());
    return readCommandLine(groups, static_cast<int>(words.size()), words.data());
  }

  std::vector<Command> runnable() const {
    std::vector<Command> commands;
    for (const CommandGroup& group : groups)
      for (const Command& command : group.commands)
        if (command.run) commands.push_back(command);
    return commands;
  }

  static void append(Words& line, const Words& words) {
    line.insert(line.end(), words.begin(), words.end());
  }

  const std::vector<CommandGroup> groups = allGroups();
  testkit::DeviceRoot device;
};

TEST_F(OptionsTest, EveryChangeOfSettingsCanBeRehearsed) {
  for (const Command& command : runnable()) {
    const bool rehearses =
        std::any_of(command.options.begin(), command.options.end(),
                    [](const Option& option) { return option.name == std::string("--dry-run"); });
    // `salvage` changes something with --apply only.
    EXPECT_TRUE(!command.changesSettings || rehearses || command.name == std::string("salvage"))
        << command.name;
  }
}

TEST_F(OptionsTest, EveryCommandKnowsItsOptionsAndRefusesOtherNames) {
  for (const Command& command : runnable()) {
    const Invocation invocation = read(lineFor(command.name));
    for (const Option& option : command.options)
      EXPECT_NO_THROW(invocation.arguments.given(option.name)) << command.name << option.name;
    EXPECT_THROW(invocation.arguments.given("--dry-rnu"), std::logic_error) << command.name;
    EXPECT_THROW(invocation.arguments.text("SECTOIN"), std::logic_error) << command.name;
    EXPECT_THROW(invocation.arguments.texts(""), std::logic_error) << command.name;
    EXPECT_THROW(invocation.arguments.files("file"), std::logic_error) << command.name;
    EXPECT_THROW(invocation.arguments.directory("DIR"), std::logic_error) << command.name;
  }
}

TEST_F(OptionsTest, CommandsKnowWhatThoseAboveThemTake) {
  EXPECT_EQ(read({"stream", "cache", "0", "select", "1"}).arguments.text("ID"), "0");
}

TEST_F(OptionsTest, CommandsAskForNothingThatTheyDoNotTake) {
  for (const Command& command : runnable())
    for (const Words& line : linesFor(command)) try {
        command.run(read(line).arguments);
      } catch (const Refusal&) {
        // What the device does not have may be refused; a wrong name is no refusal.
      } catch (const std::logic_error& error) {
        ADD_FAILURE() << testing::PrintToString(line) << ": " << error.what();
      }
}

TEST_F(OptionsTest, CompletionAsksForNothingThatNoCommandTakes) {
  const Arguments before = placeIn(groups, {""}).before;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands)
      for (const Option& option : command.options) try {
          if (option.words) option.words(before);
        } catch (const Refusal&) {
          // Something it needs is not given.
        } catch (const std::logic_error& error) {
          ADD_FAILURE() << command.name << " " << option.name << ": " << error.what();
        }
  EXPECT_THROW(before.given("SECTOIN"), std::logic_error);
}

}  // namespace
}  // namespace camcfg::tests
