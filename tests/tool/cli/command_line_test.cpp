#include "cli/command_line.h"

#include <gmock/gmock.h>

#include "camcfg/testkit/device_root.h"
#include "tool/cli/exit_statuses.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using testing::ElementsAre;

class CommandLineTest : public testing::Test {
 protected:
  Invocation read(std::vector<const char*> words) const {
    words.insert(words.begin(), "camcfg");
    return readCommandLine(groups, static_cast<int>(words.size()), words.data());
  }

  std::string refusal(const std::vector<const char*>& words) const {
    try {
      read(words);
    } catch (const Refusal& refused) {
      EXPECT_EQ(refused.status(), Status::Usage);
      return refused.what();
    }
    return "";
  }

  static Answer nothing(const Arguments& /*arguments*/) { return {}; }

  const std::vector<CommandGroup> groups = {
      {"First",
       {{"take",
         "Takes things",
         {{Option::Argument, "ONE", "A word"},
          {Option::OptionalArgument, "TWO", "A word more"},
          {Option::Flag, "--quick", "A flag"},
          {Option::Value, "--pan", "A value"},
          {Option::HostDirectory, "--into", "A directory"}},
         nothing},
        {"many", "Takes many words", {{Option::Arguments, "WORD", "Words"}}, nothing},
        {"read", "Reads a file", {{Option::HostFile, "FILE", "A file"}}, nothing},
        {"look", "Looks at files", {{Option::HostFiles, "FILE", "Files"}}, nothing}}},
      {"Second",
       {{"stream", "Has others below it", {}, nullptr},
        {"stream cache", "Below", {{Option::Argument, "ID", "A number"}}, nothing},
        {"stream cache select", "Below that", {{Option::Argument, "SOURCE", "A word"}}, nothing}}}};
  testkit::DeviceRoot host{testkit::DeviceRoot::StayOut};
};

TEST_F(CommandLineTest, WordsGoToTheirArguments) {
  const Invocation invocation = read({"take", "a", "b", "--quick", "--pan", "-5"});
  EXPECT_STREQ(invocation.command->name, "take");
  EXPECT_EQ(invocation.arguments.text("ONE"), "a");
  EXPECT_EQ(invocation.arguments.text("TWO"), "b");
  EXPECT_EQ(invocation.arguments.text("--pan"), "-5");
  EXPECT_TRUE(invocation.arguments.given("--quick"));
}

TEST_F(CommandLineTest, WhatIsNotGivenIsEmpty) {
  const Invocation invocation = read({"take", "a"});
  EXPECT_FALSE(invocation.arguments.given("TWO"));
  EXPECT_EQ(invocation.arguments.text("TWO"), "");
  EXPECT_FALSE(invocation.arguments.given("--quick"));
  EXPECT_EQ(invocation.arguments.directory("--into"), nullptr);
  EXPECT_FALSE(invocation.root.has_value());
  EXPECT_FALSE(invocation.json);
  EXPECT_FALSE(invocation.verbose);
}

TEST_F(CommandLineTest, GlobalOptionsMayComeBeforeOrAfterTheCommand) {
  for (const auto& words : {std::vector<const char*>{"--root", "d", "--json", "-v", "take", "a"},
                            std::vector<const char*>{"take", "a", "--root=d", "--json", "-v"}}) {
    const Invocation invocation = read(words);
    EXPECT_EQ(invocation.root, "d");
    EXPECT_TRUE(invocation.json);
    EXPECT_TRUE(invocation.verbose);
    EXPECT_EQ(invocation.arguments.text("ONE"), "a");
  }
}

TEST_F(CommandLineTest, EmptyRootIsNotTheRunningSystem) {
  EXPECT_EQ(read({"--root", "", "take", "a"}).root, "");
}

TEST_F(CommandLineTest, NegativeNumbersAndNamesOfCommandsAreOrdinaryArguments) {
  EXPECT_EQ(read({"take", "-12"}).arguments.text("ONE"), "-12");
  EXPECT_EQ(read({"take", "many"}).arguments.text("ONE"), "many");
  EXPECT_EQ(read({"take", ""}).arguments.text("ONE"), "");
  EXPECT_EQ(read({"take", "a b[]{}"}).arguments.text("ONE"), "a b[]{}");
  EXPECT_EQ(read({"take", "--", "--quick"}).arguments.text("ONE"), "--quick");
}

TEST_F(CommandLineTest, SeveralWordsGoToOneArgument) {
  EXPECT_THAT(read({"many", "a", "b", "-3"}).arguments.texts("WORD"), ElementsAre("a", "b", "-3"));
  EXPECT_EQ(refusal({"many"}), "many: WORD is required; see 'camcfg many --help'");
}

TEST_F(CommandLineTest, CommandsMayBeBelowOneAnother) {
  EXPECT_STREQ(read({"stream", "cache", "3"}).command->name, "stream cache");
  const Invocation invocation = read({"stream", "cache", "3", "select", "x"});
  EXPECT_STREQ(invocation.command->name, "stream cache select");
  EXPECT_EQ(invocation.arguments.text("ID"), "3");
  EXPECT_EQ(invocation.arguments.text("SOURCE"), "x");
  EXPECT_EQ(refusal({"stream", "cache", "3", "slect", "x"}),
            "stream cache: unknown command 'slect'; did you mean 'select'?");
}

TEST_F(CommandLineTest, FileOfTheHostIsReadWhole) {
  host.write("/input", std::string("a\0b\n", 4));
  EXPECT_EQ(read({"read", (host.hostPath() + "/input").c_str()}).arguments.text("FILE"),
            std::string("a\0b\n", 4));
}

TEST_F(CommandLineTest, EachFileOfTheHostIsReadOrItsFaultIsReported) {
  host.write("/input", "a\n");
  const std::string path = host.hostPath() + "/input";
  const std::vector<HostFile> files =
      read({"look", path.c_str(), "/no/such"}).arguments.files("FILE");
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0].path, path);
  EXPECT_EQ(files[0].contents, "a\n");
  EXPECT_EQ(files[0].fault, "");
  EXPECT_EQ(files[1].path, "/no/such");
  EXPECT_EQ(files[1].fault, "No such file or directory");
  EXPECT_TRUE(read({"look"}).arguments.files("FILE").empty());
}

TEST_F(CommandLineTest, DirectoryOfTheHostIsMadeAndOpened) {
  const std::string path = host.hostPath() + "/new";
  const Invocation invocation = read({"take", "a", "--into", path.c_str()});
  ASSERT_NE(invocation.arguments.directory("--into"), nullptr);
  EXPECT_TRUE(host.exists("/new"));
}

TEST_F(CommandLineTest, HostFileThatCannotBeReadIsRefusedBeforeAnythingElse) {
  try {
    read({"read", "/no/such"});
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_EQ(refusal.status(), Status::Refused);
    EXPECT_STREQ(refusal.what(), "read: FILE /no/such: No such file or directory");
  }
}

TEST_F(CommandLineTest, UsageErrorsAreOneLineEach) {
  EXPECT_EQ(refusal({}), "a command is missing; see 'camcfg --help'");
  EXPECT_EQ(refusal({"--json"}), "a command is missing; see 'camcfg --help'");
  EXPECT_EQ(refusal({"stream"}), "stream: a command is missing; see 'camcfg stream --help'");
  EXPECT_EQ(refusal({"tkae", "a"}), "unknown command 'tkae'; did you mean 'take'?");
  EXPECT_EQ(refusal({"zzzzzz"}), "unknown command 'zzzzzz'; see 'camcfg --help'");
  EXPECT_EQ(refusal({"stream", "cahce"}), "stream: unknown command 'cahce'; did you mean 'cache'?");
  EXPECT_EQ(refusal({"take"}), "take: ONE is required; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "a", "b", "c"}),
            "take: unexpected argument 'c'; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "a", "--quik"}),
            "take: unknown option '--quik'; did you mean '--quick'?");
  EXPECT_EQ(refusal({"take", "a", "--jsn"}),
            "take: unknown option '--jsn'; did you mean '--json'?");
  EXPECT_EQ(refusal({"-x"}), "unknown option '-x'; see 'camcfg --help'");
  EXPECT_EQ(refusal({"take", "a", "--pan"}),
            "take: --pan: 1 required VALUE missing; see 'camcfg take --help'");
}

TEST_F(CommandLineTest, HelpIsMadeFromTheRecords) {
  const std::string help = renderText(read({"--help"}).answer);
  EXPECT_THAT(help, testing::HasSubstr("\nFirst:\n"
                                       "  take                        Takes things\n"
                                       "  many                        Takes many words\n"));
  EXPECT_THAT(help, testing::HasSubstr("\nSecond:\n"
                                       "  stream                      Has others below it\n"));
  EXPECT_EQ(renderText(read({"take", "--help"}).answer),
            "Takes things\n"
            "Usage: camcfg take [OPTIONS] ONE [TWO]\n"
            "\n"
            "Arguments:\n"
            "  ONE                         A word\n"
            "  TWO                         A word more\n"
            "\n"
            "Options:\n"
            "  -h,--help                   Show this help\n"
            "  --quick                     A flag\n"
            "  --pan VALUE                 A value\n"
            "  --into DIR                  A directory\n"
            "\n" +
                std::string(kHelpEnd));
}

}  // namespace
}  // namespace camcfg::tests
