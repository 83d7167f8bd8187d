#include "cli/completion.h"

#include <gmock/gmock.h>

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using testing::ElementsAre;

constexpr char kBreaks[] = " \t\n\"'@><=;|&(:";

struct Row {
  const char* line;
  std::vector<std::string> words;
  char quote;
  const char* kept;
};

TEST(ShellLineTest, LinesAreReadAsBashReadsThem) {
  const Row rows[] = {{"", {""}, 0, ""},
                      {"camcfg", {"camcfg"}, 0, ""},
                      {"camcfg ", {"camcfg", ""}, 0, ""},
                      {"a  b\tc", {"a", "b", "c"}, 0, ""},
                      {"a b\\ c", {"a", "b c"}, 0, ""},
                      {"a 'b c' \"d \\\" \\n\"", {"a", "b c", "d \" \\n"}, 0, ""},
                      {"a '' ", {"a", "", ""}, 0, ""},
                      {"a 'b ", {"a", "b "}, '\'', ""},
                      {"a x\"b c", {"a", "xb c"}, '"', "x"},
                      {"a 'b 'c", {"a", "b c"}, 0, ""},
                      {"a --root=/x", {"a", "--root=/x"}, 0, "--root="},
                      {"a --root='/x y", {"a", "--root=/x y"}, '\'', "--root="},
                      {"a u:p@h", {"a", "u:p@h"}, 0, "u:p@"},
                      {"a u\\:p", {"a", "u:p"}, 0, ""},
                      {"a u:p b", {"a", "u:p", "b"}, 0, ""},
                      {"a $(reboot) `reboot`", {"a", "$(reboot)", "`reboot`"}, 0, ""}};
  for (const Row& row : rows) {
    const ShellLine line = readShellLine(row.line, kBreaks);
    EXPECT_EQ(line.words, row.words) << row.line;
    EXPECT_EQ(line.quote, row.quote) << row.line;
    EXPECT_EQ(line.kept, row.kept) << row.line;
  }
}

TEST(ShellLineTest, OnlyTheGivenCharactersBreakWords) {
  EXPECT_EQ(readShellLine("a --root=/x", " \t\n").kept, "");
}

TEST(ShellLineTest, TextIsQuotedAsItsPlaceNeeds) {
  const std::string text = "It's $5 \"x\" \\ a;b";
  EXPECT_EQ(shellQuoted(text, 0), "It\\'s\\ \\$5\\ \\\"x\\\"\\ \\\\\\ a\\;b");
  EXPECT_EQ(shellQuoted(text, '\''), "It'\\''s $5 \"x\" \\ a;b");
  EXPECT_EQ(shellQuoted(text, '"'), "It's \\$5 \\\"x\\\" \\\\ a;b");
  EXPECT_EQ(shellQuoted("Lan0/10.0.0.1:80_Z\xc3\xbc", 0), "Lan0/10.0.0.1:80_Z\xc3\xbc");
  EXPECT_EQ(shellQuoted("~#!*?[]{}<>|&()", 0), "\\~\\#\\!\\*\\?\\[\\]\\{\\}\\<\\>\\|\\&\\(\\)");
}

}  // namespace
}  // namespace camcfg::tests
