#include "cli/man_page.h"

#include <gmock/gmock.h>

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using testing::HasSubstr;
using testing::Not;

Answer answerNothing(const Arguments& /*arguments*/) {
  return {};
}

const std::vector<CommandGroup> kManualGroups = {
    {"First",
     {{"take",
       "Takes things",
       {{Option::Argument, "ONE", "A word"},
        {Option::OptionalArguments, "MORE", "Words"},
        {Option::Flag, "--quick", "A flag"},
        {Option::Value, "--pan", "A value"},
        {Option::HostDirectory, "--into", "A directory"}},
       answerNothing},
      {"secret", "For programs", {}, answerNothing, Status::Refused, true}}},
    {"First",
     {{"cache", "Has others below it", {{Option::Argument, "ID", "A number"}}, nullptr},
      {"cache select", "Below that", {{Option::HostFile, "FILE", "A file"}}, answerNothing}}}};

const std::vector<Topic> kTopics = {{"exit-status", "Statuses", "  0  done\n"},
                                    {"other", "Something else", "Text.\n"}};

TEST(ManPageTest, CommandsAreListedUnderTheirGroupWithAllTheyTake) {
  EXPECT_THAT(manPage(kManualGroups, kTopics),
              HasSubstr(".SH COMMANDS\n"
                        ".SS First\n"
                        ".TP\n\\fBtake\\fR \\fIONE\\fR [\\fIMORE\\fR...]\n"
                        "Takes things.\n"
                        ".RS\n"
                        ".TP\n\\fIONE\\fR\nA word.\n"
                        ".TP\n\\fIMORE\\fR...\nWords.\n"
                        ".TP\n\\fB\\-\\-quick\\fR\nA flag.\n"
                        ".TP\n\\fB\\-\\-pan\\fR \\fIVALUE\\fR\nA value.\n"
                        ".TP\n\\fB\\-\\-into\\fR \\fIDIR\\fR\nA directory.\n"
                        ".RE\n"
                        ".TP\n\\fBcache\\fR \\fIID\\fR \\fBselect\\fR "
                        "\\fIFILE\\fR\n"
                        "Below that.\n"
                        ".RS\n.TP\n\\fIFILE\\fR\nA file.\n.RE\n"
                        ".SH EXIT STATUS\n"));
}

TEST(ManPageTest, ProgramsOwnCommandsAreLeftOut) {
  EXPECT_THAT(manPage(kManualGroups, kTopics), Not(HasSubstr("secret")));
}

TEST(ManPageTest, TopicsAreSectionsOrNotes) {
  EXPECT_THAT(manPage(kManualGroups, kTopics),
              HasSubstr(".SH EXIT STATUS\n.RS 2\n.nf\n0  done\n.fi\n.RE\n"
                        ".SH NOTES\n.SS Something else\nText.\n"
                        ".SH SEE ALSO\n"));
}

TEST(ManPageTest, OptionsOfEveryCommandHaveASection) {
  EXPECT_THAT(manPage(kManualGroups, kTopics),
              HasSubstr(".SH OPTIONS\n.TP\n\\fB\\-h\\fR, \\fB\\-\\-help\\fR\nShow this help.\n"));
}

}  // namespace
}  // namespace camcfg::tests
