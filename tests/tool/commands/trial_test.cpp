#include <unistd.h>

#include "tool/commands/every_command.h"
#include "tool/trial_device.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr char kCommand[] = "try --for 10m -- set System Rtsp 8554";

TEST_F(TrialTest, ConfirmedChangeStays) {
  OnTrial trial(device, trying());
  EXPECT_EQ(port(), "8554\n");
  EXPECT_EQ(run({"confirm"}),
            (ToolRun{0, std::string("change 1 is confirmed: ") + kCommand + "\n", ""}));
  EXPECT_TRUE(trial.says("camcfg: try: change 1 is confirmed\n"));
  EXPECT_EQ(trial.end(), 0);
  EXPECT_EQ(port(), "8554\n");
  EXPECT_THAT(history(), ElementsAre(kCommand));
  EXPECT_FALSE(device.exists(kTrial));
}

TEST_F(TrialTest, ChangeThatNobodyConfirmsIsRolledBack) {
  const ToolRun result = run(trying("1s"));
  EXPECT_EQ(result.status, 6);
  EXPECT_EQ(result.out, "System/Rtsp: 554 -> 8554\n");
  EXPECT_THAT(
      result.err,
      MatchesRegex("camcfg: try: change 1 is on trial until ....-..-..T..:..:..Z; 'camcfg confirm' "
                   "keeps it, 'camcfg cancel' rolls it back\n"
                   "camcfg: try: rolled back change 1, since it was not confirmed in time: try "
                   "--for 1s -- set System Rtsp 8554 \\(....-..-..T..:..:..Z\\)\n"));
  EXPECT_TRUE(isOld());
  EXPECT_THAT(history(), ElementsAre("try --for 1s -- set System Rtsp 8554",
                                     "rollback of change 1: try --for 1s -- set System Rtsp 8554"));
  EXPECT_FALSE(device.exists(kTrial));
}

TEST_F(TrialTest, CancelledChangeIsRolledBackAtOnce) {
  OnTrial trial(device, trying());
  const ToolRun result = run({"cancel"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, std::string("change 1 was rolled back: ") + kCommand + "\n");
  EXPECT_THAT(result.err,
              HasSubstr("camcfg: cancel: rolled back change 1, since it was cancelled: try"));
  EXPECT_TRUE(trial.says("camcfg: try: change 1 was rolled back\n"));
  EXPECT_EQ(trial.end(), 6);
  EXPECT_TRUE(isOld());
}

TEST_F(TrialTest, RollbackCanBeUndone) {
  EXPECT_EQ(run(trying("1s")).status, 6);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(port(), "8554\n");
}

TEST_F(TrialTest, ConfirmAndCancelAreRefusedWhereNothingIsOnTrial) {
  EXPECT_EQ(run({"confirm"}), (ToolRun{1, "", "camcfg: confirm: no change is on trial\n"}));
  EXPECT_EQ(run({"cancel"}), (ToolRun{1, "", "camcfg: cancel: no change is on trial\n"}));
  EXPECT_FALSE(device.exists("/cfg1/.camcfg"));
}

TEST_F(TrialTest, StatusShowsWhatIsPendingAndUntilWhen) {
  EXPECT_TRUE(pending().is_null());
  OnTrial trial(device, trying());
  const tool::Json shown = pending();
  EXPECT_EQ(shown["number"].get<int>(), 1);
  EXPECT_EQ(shown["command"].text(), kCommand);
  EXPECT_FALSE(shown["caller"].text().empty());
  EXPECT_THAT(shown["until"].text(), MatchesRegex("....-..-..T..:..:..Z"));
  EXPECT_GT(shown["secondsLeft"].get<int>(), 500);
  EXPECT_LE(shown["secondsLeft"].get<int>(), 600);
  EXPECT_THAT(run({"status"}).out, HasSubstr("on trial: change 1 by "));
  run({"cancel"});
  EXPECT_TRUE(pending().is_null());
}

TEST_F(TrialTest, OtherChangesAreRefusedMeanwhileWithTheReason) {
  OnTrial trial(device, trying());
  for (const Words& line :
       {Words{"set", "Image", "Mode", "Manual"}, Words{"network", "hostname", "other"},
        Words{"system", "http-port", "81"}, trying()}) {
    const ToolRun result = run(line);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("change 1 is on trial until 2"), HasSubstr(kCommand),
                                  HasSubstr("'camcfg confirm'"), HasSubstr("'camcfg cancel'"),
                                  HasSubstr("'--force'")));
  }
  EXPECT_EQ(port(), "8554\n");
  EXPECT_EQ(run({"list"}).status, 0);
  EXPECT_EQ(run({"verify", "--resync"}).err, "");
  EXPECT_EQ(run({"history", "--keep", "9"}).status, 0);
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ(run({"set", "Image", "Mode", "Manual"}).status, 0);
}

TEST_F(TrialTest, ForceConfirmsFirst) {
  OnTrial trial(device, trying());
  EXPECT_EQ(run({"system", "http-port", "81", "--force"}).status, 0);
  EXPECT_EQ(trial.end(), 0);
  OnTrial second(device, {"try", "set", "Image", "Mode", "Manual"});
  OnTrial third(device, {"try", "--force", "--", "set", "System", "Rtsp", "1"});
  EXPECT_EQ(second.end(), 0);
  OnTrial fourth(device, {"try", "set", "System", "Rtsp", "2", "--force"});
  EXPECT_EQ(third.end(), 0);
  EXPECT_EQ(run({"cancel"}).status, 0);
  EXPECT_EQ(fourth.end(), 6);
  EXPECT_EQ(port(), "1\n");
  EXPECT_EQ(run({"get", "Image", "Mode"}).out, "Manual\n");
}

TEST_F(TrialTest, WhatChangesNothingIsNotOnTrial) {
  EXPECT_EQ(run({"try", "--", "set", "System", "Rtsp", "554"}),
            (ToolRun{0, "System/Rtsp: it is 554 already\nnothing was written\n", ""}));
  EXPECT_EQ(run({"--json", "try", "--", "system", "rtsp-port"}).out,
            "{\"answer\":{\"port\":\"rtsp\",\"parameter\":\"System/Rtsp\",\"value\":554},"
            "\"pending\":null}\n");
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}).status, 0);
  EXPECT_EQ(run({"try", "undo", "--dry-run"}), run({"undo", "--dry-run"}));
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(history().size(), 2U);
}

TEST_F(TrialTest, RefusedChangeIsRefused) {
  EXPECT_EQ(run({"try", "--", "set", "System", "Rtsp", "0"}),
            (ToolRun{1, "",
                     "camcfg: try: System/Rtsp: 0 is outside 1..65535; the nearest permitted is "
                     "1\n"}));
  EXPECT_TRUE(isOld());
}

TEST_F(TrialTest, OnlyCommandsThatChangeSettingsCanBeTried) {
  for (const Words& line : {Words{"get", "System", "Rtsp"}, Words{"verify"}, Words{"boot"},
                            Words{"confirm"}, Words{"cancel"}, trying(), Words{"watch"},
                            Words{"history", "--keep", "1"}, Words{"run", "true"}}) {
    Words words = {"try", "--"};
    words.insert(words.end(), line.begin(), line.end());
    EXPECT_EQ(run(words),
              (ToolRun{2, "",
                       "camcfg: try: '" + line.front() +
                           "' cannot be tried; only commands that change settings can; see "
                           "'camcfg try --help'\n"}));
  }
}

TEST_F(TrialTest, LinesWithoutSenseAreUsageErrors) {
  for (const char* length :
       {"", "s", "10", "0s", "-1s", "1w", "8d", "169h", "1.5h", "1 m", "m10", "99999999999s"})
    EXPECT_EQ(run({"try", "--for", length, "--", "set", "System", "Rtsp", "1"}),
              (ToolRun{2, "",
                       std::string("camcfg: try: --for: '") + length +
                           "' is no time from 1s to 7d, such as 90s, 10m, 2h or 1d\n"}));
  EXPECT_EQ(run({"try"}).status, 2);
  EXPECT_EQ(run({"try", "--for", "1s", "--"}).status, 2);
  EXPECT_EQ(run({"try", "--", "sett"}).status, 2);
  EXPECT_EQ(run({"try", "--", "set", "System"}).status, 2);
  EXPECT_TRUE(isOld());
}

TEST_F(TrialTest, HelpOfTheCommandIsAnswered) {
  EXPECT_EQ(run({"try", "--", "set", "--help"}), run({"set", "--help"}));
}

TEST_F(TrialTest, OptionsOfEveryCommandMayBeGivenToEither) {
  OnTrial trial(device, {"try", "--", "--json", "set", "System", "Rtsp", "8554"});
  EXPECT_TRUE(trial.shows("\n"));
  EXPECT_THAT(trial.taken(), StartsWith("{\"answer\":"));
  run({"cancel"});
  Words words = trying();
  words.insert(words.end(), {"--root", device.hostPath()});
  Background inner(words);
  EXPECT_TRUE(inner.says("is on trial"));
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ(inner.end(), 0);
}

TEST_F(TrialTest, AnswersInJsonAValueALine) {
  Words words = trying();
  words.insert(words.begin(), "--json");
  for (const char* end : {"confirm", "cancel"}) {
    OnTrial trial(device, words);
    ASSERT_TRUE(trial.shows("\n"));
    const tool::Json first = jsonIn(trial.taken());
    EXPECT_EQ(first["answer"]["value"].get<int>(), 8554);
    const tool::Json ended = jsonIn(run({"--json", end}).out);
    EXPECT_EQ(ended["number"], first["pending"]["number"]);
    EXPECT_EQ(ended.contains("conflicts"), end == std::string("cancel"));
    trial.end();
    ASSERT_TRUE(trial.shows("\n"));
    const tool::Json second = jsonIn(trial.taken());
    EXPECT_EQ(second["number"], first["pending"]["number"]);
    EXPECT_EQ(second["outcome"].text(), end == std::string("cancel") ? "rolledBack" : "confirmed");
    run({"set", "System", "Rtsp", "554"});
  }
}

TEST_F(TrialTest, TwoAtTheSameTimeAreNotBothOnTrial) {
  Words words = trying();
  words.insert(words.begin(), {"--root", device.hostPath()});
  Background first(words);
  words.back() = "8555";
  Background second(words);
  const bool isFirst = first.says("\n") && second.says("\n") && port() == "8554\n";
  EXPECT_EQ((isFirst ? second : first).end(), 1);
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ((isFirst ? first : second).end(), 0);
  EXPECT_EQ(port(), isFirst ? "8554\n" : "8555\n");
  EXPECT_EQ(history().size(), 1U);
}

TEST_F(TrialTest, OutcomeIsKnownWhereNoChangeIsKept) {
  EXPECT_EQ(run({"history", "--keep", "0"}).status, 0);
  OnTrial confirmed(device, trying());
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ(confirmed.end(), 0);
  OnTrial cancelled(device, {"try", "set", "System", "Rtsp", "1"});
  EXPECT_EQ(run({"cancel"}).status, 0);
  EXPECT_EQ(cancelled.end(), 6);
  EXPECT_EQ(port(), "8554\n");
}

TEST_F(TrialTest, WhatAProgramHasSetSinceStaysAndIsNamed) {
  OnTrial trial(device, {"try", "network", "hostname", "other"});
  writeBoth(with(with(device.read(kBusiness), "Hostname=\"other\"", "Hostname=\"third\""),
                 "Brightness Cur=\"0\"", "Brightness Cur=\"5\""));
  const ToolRun result = run({"--json", "cancel"});
  EXPECT_EQ(jsonIn(result.out)["conflicts"].size(), 1U);
  EXPECT_THAT(result.err, HasSubstr("; set to something else since, and left so: "));
  EXPECT_EQ(trial.end(), 6);
  EXPECT_EQ(run({"network", "hostname"}).out, "third\n");
  EXPECT_EQ(run({"get", "Image", "Brightness"}).out, "5\n");
}

TEST_F(TrialTest, RollbackWithNothingLeftToChangeEndsTheTrial) {
  OnTrial trial(device, trying());
  writeBoth(kParameters);
  EXPECT_EQ(run({"cancel"}).status, 0);
  EXPECT_EQ(trial.end(), 6);
  EXPECT_TRUE(isOld());
  EXPECT_FALSE(device.exists(kTrial));
}

class EveryTrialTest : public EveryCommandTest {
 protected:
  std::string contents() const {
    std::string contents;
    for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
      for (const std::string directory : {"/cfg0/", "/cfg1/"})
        contents += device.read(directory + name);
    return contents;
  }
};

TEST_F(EveryTrialTest, CommandThatChangesSettingsCanBeTried) {
  int tried = 0;
  for (const tool::cli::Command* command : commands()) {
    if (!command->changesSettings) continue;
    renew();
    const std::string before = contents();
    Words line = {"try", "--"};
    for (const std::string& word : lineFor(*command)) line.push_back(word);
    SCOPED_TRACE(lineOf(line));
    OnTrial trial(device, line);
    EXPECT_TRUE(contents() != before);
    EXPECT_EQ(run({"cancel"}).status, 0);
    EXPECT_EQ(trial.end(), 6);
    EXPECT_TRUE(contents() == before);
    ++tried;
  }
  EXPECT_GT(tried, 15);
}

}  // namespace
}  // namespace camcfg::tests
