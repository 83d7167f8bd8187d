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
        {"short",
         "Has options of one letter",
         {{Option::OptionalArgument, "ONE", "A word"},
          {Option::Flag, "--quick", "A flag", {}, "-q"},
          {Option::Value, "--pan", "A value", {}, "-p", "SIDE"},
          {Option::Values, "--tag", "Values", {}, "-t"}},
         nothing},
        {"many", "Takes many words", {{Option::Arguments, "WORD", "Words"}}, nothing},
        {"read", "Reads a file", {{Option::HostFile, "FILE", "A file"}}, nothing},
        {"look", "Looks at files", {{Option::HostFiles, "FILE", "Files"}}, nothing}}},
      {"Second",
       {{"stream", "Has others below it", {}, nullptr},
        {"stream cache", "Below", {{Option::Argument, "ID", "A number"}}, nothing},
        {"stream cache select", "Below that", {{Option::Argument, "SOURCE", "A word"}}, nothing},
        {"live", "Has others below it", {{Option::Argument, "KIND", "A word"}}, nullptr},
        {"live set", "Below", {{Option::Argument, "NAME", "A word"}}, nothing},
        headless("live add")}}};

  static Command headless(const char* name) {
    Command command = {name, "Below", {{Option::OptionalArgument, "NAME", "A word"}}, nothing};
    command.standsAlone = true;
    return command;
  }
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

TEST_F(CommandLineTest, OptionsMayBeAnywhereAfterTheirCommand) {
  for (const auto& words : {std::vector<const char*>{"take", "--quick", "a", "--pan=5", "b"},
                            std::vector<const char*>{"take", "a", "b", "--pan", "5", "--quick"}}) {
    const Arguments arguments = read(words).arguments;
    EXPECT_EQ(arguments.text("ONE"), "a");
    EXPECT_EQ(arguments.text("TWO"), "b");
    EXPECT_EQ(arguments.text("--pan"), "5");
    EXPECT_TRUE(arguments.given("--quick"));
  }
  EXPECT_EQ(refusal({"--quick", "take", "a"}),
            "take: unknown option '--quick'; did you mean '--quick'?");
}

TEST_F(CommandLineTest, ValueMayLookLikeAnything) {
  EXPECT_EQ(read({"take", "a", "--pan", "--quick"}).arguments.text("--pan"), "--quick");
  EXPECT_FALSE(read({"take", "a", "--pan", "--quick"}).arguments.given("--quick"));
  EXPECT_EQ(read({"take", "a", "--pan", "take"}).arguments.text("--pan"), "take");
  EXPECT_EQ(read({"take", "a", "--pan", ""}).arguments.text("--pan"), "");
  EXPECT_EQ(read({"take", "a", "--pan=x=y"}).arguments.text("--pan"), "x=y");
  EXPECT_EQ(read({"take", "a", "--pan=", "5"}).arguments.text("--pan"), "5");
  EXPECT_EQ(read({"--root", "take", "take", "a"}).root, "take");
}

TEST_F(CommandLineTest, LettersStandForOptions) {
  for (const auto& words :
       {std::vector<const char*>{"short", "-q", "-p", "5"},
        std::vector<const char*>{"short", "-qp5"}, std::vector<const char*>{"short", "-qp", "5"}}) {
    const Invocation invocation = read(words);
    EXPECT_EQ(invocation.arguments.text("--pan"), "5");
    EXPECT_TRUE(invocation.arguments.given("--quick"));
    EXPECT_FALSE(invocation.verbose);
  }
  EXPECT_TRUE(read({"short", "-vq"}).verbose);
  EXPECT_EQ(read({"short", "-q5"}).arguments.text("ONE"), "-5");
  EXPECT_EQ(refusal({"short", "-qxy"}), "short: unknown option '-xy'; see 'camcfg short --help'");
  EXPECT_EQ(refusal({"short", "-qp"}),
            "short: --pan: 1 required SIDE missing; see 'camcfg short --help'");
}

TEST_F(CommandLineTest, OptionsAreTakenAsOftenAsTheySay) {
  EXPECT_THAT(read({"short", "--tag", "a", "-tb", "--tag=c"}).arguments.texts("--tag"),
              ElementsAre("a", "b", "c"));
  EXPECT_TRUE(read({"short", "-qq", "--quick"}).arguments.given("--quick"));
  EXPECT_EQ(refusal({"short", "--pan=1", "-p2"}),
            "short: --pan: At Most 1 required but received 2; see 'camcfg short --help'");
  EXPECT_EQ(refusal({"--root", "a", "take", "--root", "a"}),
            "take: --root: At Most 1 required but received 2; see 'camcfg take --help'");
}

TEST_F(CommandLineTest, FlagHasNoValue) {
  EXPECT_EQ(refusal({"take", "a", "--quick=no"}),
            "take: quick was given a disallowed flag override; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"--version=no"}),
            "version was given a disallowed flag override; see 'camcfg --help'");
  EXPECT_EQ(refusal({"take", "--help=no"}),
            "take: help was given a disallowed flag override; see 'camcfg take --help'");
  EXPECT_TRUE(read({"take", "a", "--quick=true"}).arguments.given("--quick"));
}

TEST_F(CommandLineTest, NamesAreNotAbbreviated) {
  EXPECT_EQ(refusal({"take", "a", "--qui"}),
            "take: unknown option '--qui'; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"tak", "a"}), "unknown command 'tak'; did you mean 'take'?");
  EXPECT_EQ(refusal({"TAKE", "a"}), "unknown command 'TAKE'; did you mean 'take'?");
  EXPECT_EQ(refusal({"stream cache", "3"}), "unknown command 'stream cache'; see 'camcfg --help'");
}

TEST_F(CommandLineTest, ValueOfAnUnknownOptionIsNotRepeated) {
  EXPECT_EQ(refusal({"take", "a", "--pasword=secret"}),
            "take: unknown option '--pasword'; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "a", "--=secret"}),
            "take: unknown option '--'; see 'camcfg take --help'");
}

TEST_F(CommandLineTest, WordsAreTakenAsTheyAre) {
  EXPECT_THAT(read({"many", "[a,b]", "[]", "++", "%%", "-", "-- x", "--!", "\x01--0"})
                  .arguments.texts("WORD"),
              ElementsAre("[a,b]", "[]", "++", "%%", "-", "-- x", "--!", "\x01--0"));
}

TEST_F(CommandLineTest, AfterTwoDashesNothingIsAnOption) {
  EXPECT_THAT(read({"many", "a", "--", "--help", "--", "-v"}).arguments.texts("WORD"),
              ElementsAre("a", "--help", "--", "-v"));
  EXPECT_EQ(refusal({"stream", "cache", "3", "--", "select", "x"}),
            "stream cache: unknown command 'select'; did you mean 'select'?");
  EXPECT_EQ(refusal({"take", "a", "b", "--", "--quick"}),
            "take: unexpected argument '--quick'; see 'camcfg take --help'");
  EXPECT_EQ(read({"take", "a", "--pan", "--", "--quick"}).arguments.text("--pan"), "--quick");
}

TEST_F(CommandLineTest, ArgumentsOfAHeadingAreNeededByWhatIsBelow) {
  EXPECT_EQ(read({"live", "srt", "set", "x"}).arguments.text("KIND"), "srt");
  EXPECT_EQ(read({"live", "set", "x", "srt"}).arguments.text("KIND"), "srt");
  EXPECT_EQ(refusal({"live", "set", "x"}),
            "live set: KIND is required; see 'camcfg live set --help'");
  EXPECT_EQ(read({"live", "add", "x"}).arguments.text("NAME"), "x");
}

TEST_F(CommandLineTest, VersionAndHelpComeBeforeMostErrors) {
  for (const auto& words : {std::vector<const char*>{"zzz", "--help", "--zzz"},
                            std::vector<const char*>{"-h"}, std::vector<const char*>{"-vh"}})
    EXPECT_EQ(renderText(read(words).answer), helpText(groups, ""));
  EXPECT_EQ(renderText(read({"take", "--help"}).answer), helpText(groups, "take"));
  EXPECT_EQ(renderText(read({"--help", "stream", "cache"}).answer),
            helpText(groups, "stream cache"));
  const std::string version = renderText(read({"--version"}).answer);
  EXPECT_EQ(renderText(read({"take", "--help", "--pan=1", "--pan=2", "--version"}).answer),
            version);
  EXPECT_TRUE(read({"--json", "--version"}).json);
  EXPECT_EQ(refusal({"take", "--help", "--pan=1", "--pan=2"}),
            "take: --pan: At Most 1 required but received 2; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "--help", "--version", "--pan"}),
            "take: --pan: 1 required VALUE missing; see 'camcfg take --help'");
}

TEST_F(CommandLineTest, UnknownWordsAreNamedBeforeOtherErrors) {
  EXPECT_EQ(refusal({"take", "--zzz"}), "take: unknown option '--zzz'; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "a", "b", "c", "--pan"}),
            "take: unexpected argument 'c'; see 'camcfg take --help'");
  EXPECT_EQ(refusal({"take", "a", "b", "-5"}),
            "take: unknown option '-5'; see 'camcfg take --help'");
}

TEST_F(CommandLineTest, HelpOfArgumentsAndLetters) {
  EXPECT_THAT(renderText(read({"short", "-h"}).answer),
              testing::HasSubstr("Usage: camcfg short [OPTIONS] [ONE]\n"));
  EXPECT_THAT(renderText(read({"short", "-h"}).answer),
              testing::HasSubstr("\n  -q,--quick                  A flag\n"
                                 "  -p,--pan SIDE               A value\n"));
  EXPECT_THAT(renderText(read({"many", "-h"}).answer),
              testing::HasSubstr("Usage: camcfg many [OPTIONS] WORD...\n\nArguments:\n"
                                 "  WORD ...                    Words\n"));
  EXPECT_THAT(renderText(read({"stream", "cache", "-h"}).answer),
              testing::HasSubstr("Usage: camcfg stream cache [OPTIONS] ID [COMMAND]\n"));
  EXPECT_THAT(helpText(groups, "stream cache select"),
              testing::HasSubstr("Usage: camcfg stream cache ID select [OPTIONS] SOURCE\n"));
  EXPECT_THAT(helpText(groups, "live"),
              testing::HasSubstr("Usage: camcfg live [OPTIONS] [KIND] [COMMAND]\n"));
  EXPECT_THAT(helpText(groups, "live add"),
              testing::HasSubstr("Usage: camcfg live add [OPTIONS] [NAME]\n"));
}

TEST_F(CommandLineTest, HelpIsMadeFromTheRecords) {
  const std::string help = renderText(read({"--help"}).answer);
  EXPECT_THAT(help, testing::HasSubstr("\nFirst:\n"
                                       "  take                        Takes things\n"
                                       "  short                       Has options of one letter\n"
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
