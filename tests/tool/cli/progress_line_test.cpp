#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <regex>
#include <stdexcept>
#include <thread>

#include "base/progress.h"
#include "cli/command_line.h"
#include "cli/terminal.h"
#include "tool/terminal.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;

/// Keeps a command at its work until its test lets it go on.
class Gate {
 public:
  Gate() {
    if (pipe(ends_) != 0) throw std::runtime_error("pipe");
  }
  void open() const { EXPECT_EQ(write(ends_[1], "", 1), 1); }
  void pass() const {
    char byte = 0;
    if (read(ends_[0], &byte, 1) != 1) _exit(99);
  }

 private:
  int ends_[2] = {};
};

const Gate& gate() {
  static const Gate gate;
  return gate;
}

/// Works on what it is given, and then on something with a shorter name.
Answer work(const Arguments& arguments) {
  constexpr std::chrono::milliseconds kMoreThanASecond(1500);
  const Stage stage("a.xml", 1, 2);
  workingOn(arguments.text("WHAT"));
  if (arguments.given("--slowly")) gate().pass();
  workingOn("b");
  if (arguments.given("--slowly")) gate().pass();
  if (arguments.given("--sleep")) std::this_thread::sleep_for(kMoreThanASecond);
  if (arguments.given("--fail")) throw Refusal("it failed");
  Answer answer;
  answer.layout = {Line{"done"}};
  return answer;
}

const std::vector<CommandGroup> kSlowGroups = {
    {"First",
     {{"work",
       "Works",
       {{Option::Argument, "WHAT", "A word"},
        {Option::Flag, "--slowly", "Wait until the work was shown"},
        {Option::Flag, "--sleep", "Wait for as long as it takes to be shown"},
        {Option::Flag, "--fail", "Fail"}},
       work}}}};

void run(std::vector<const char*> words) {
  words.insert(words.begin(), "camcfg");
  _exit(runProgram(kSlowGroups, static_cast<int>(words.size()), words.data()));
}

/// What a command shows at a terminal.
/// @param first  what it waits for that does its work slowly
std::string shown(const std::vector<const char*>& words, const std::string& first = ", 1 s") {
  gate();
  Terminal terminal([&] {
    setenv("NO_COLOR", "1", 1);
    run(words);
  });
  if (std::find(words.begin(), words.end(), std::string("--slowly")) != words.end()) {
    terminal.readUntil(first);
    gate().open();
    terminal.readUntil("b, ");
    gate().open();
  }
  return terminal.readToEnd();
}

constexpr char kLine[] = "\rcamcfg: work: a.xml (1 of 2): /cfg0/a.xml, 1 s";

TEST(ProgressLineTest, SlowWorkIsShownOnALineThatGoesAwayAtTheEnd) {
  const std::string text = shown({"work", "/cfg0/a.xml", "--slowly"});
  EXPECT_EQ(text.find(kLine), 0U) << text;
  EXPECT_TRUE(
      std::regex_search(text, std::regex("\rcamcfg: work: a.xml \\(1 of 2\\): b, [0-9]+ s {10}")))
      << text;
  const std::string end = "\r" + std::string(sizeof kLine - 2, ' ') + "\rdone\r\n";
  EXPECT_THAT(text, testing::EndsWith(end));
  EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
}

TEST(ProgressLineTest, LineIsGoneBeforeARefusal) {
  EXPECT_THAT(shown({"work", "/cfg0/a.xml", "--slowly", "--fail"}),
              testing::EndsWith(" \rcamcfg: work: it failed\r\n"));
}

TEST(ProgressLineTest, QuickWorkIsNotShown) {
  EXPECT_EQ(shown({"work", "/cfg0/a.xml"}), "done\r\n");
}

TEST(ProgressLineTest, NothingIsShownWhereTheLibrarysOutputIsShown) {
  EXPECT_EQ(shown({"-v", "work", "/cfg0/a.xml", "--sleep"}), "done\r\n");
}

TEST(ProgressLineTest, LineFitsTheTerminalAndCannotSteerIt) {
  const std::string endless = std::string(40, 'x') + "\x1b[2J" + std::string(200, 'y');
  const std::string text = shown({"work", endless.c_str(), "--slowly"}, "xxx");
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  const std::size_t next = text.find('\r', 1);
  EXPECT_EQ(next, 80U) << text;
}

TEST(ProgressLineTest, NothingIsShownWhereThereIsNoTerminal) {
  Terminal terminal([] {
    int ends[2];
    if (pipe(ends) != 0) _exit(1);
    dup2(ends[1], STDERR_FILENO);
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      run({"work", "/cfg0/a.xml", "--sleep"});
    }
    close(ends[1]);
    close(STDERR_FILENO);
    char byte = 0;
    const bool isQuiet = read(ends[0], &byte, 1) == 0;
    _exit(isQuiet ? 0 : 1);
  });
  EXPECT_EQ(terminal.readToEnd(), "done\r\n");
  EXPECT_EQ(terminal.status(), 0);
}

TEST(ProgressLineTest, AnswersInPipesDoNotHideIt) {
  gate();
  Terminal terminal([] {
    int ends[2];
    if (pipe(ends) != 0) _exit(1);
    dup2(ends[1], STDOUT_FILENO);
    run({"work", "/cfg0/a.xml", "--slowly"});
  });
  terminal.readUntil(kLine);
  gate().open();
  gate().open();
  const std::string text = terminal.readToEnd();
  EXPECT_EQ(text.find(kLine), 0U) << text;
  EXPECT_THAT(text, testing::EndsWith(" \r"));
}

TEST(ProgressLineTest, SignalsThatWaitAreNotTakenByItsThread) {
  Terminal terminal([] {
    const tool::cli::ProgressLine line("set", STDERR_FILENO);
    sigset_t interrupts{};
    sigemptyset(&interrupts);
    sigaddset(&interrupts, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupts, nullptr);
    kill(getpid(), SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    sigset_t pending{};
    sigpending(&pending);
    _exit(sigismember(&pending, SIGINT) == 1 ? 0 : 1);
  });
  terminal.readToEnd();
  EXPECT_EQ(terminal.status(), 0);
}

}  // namespace
}  // namespace camcfg::tests
