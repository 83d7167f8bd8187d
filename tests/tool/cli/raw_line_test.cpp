#include "cli/raw_line.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

std::string wordIn(std::vector<const char*> line) {
  line.insert(line.begin(), "camcfg");
  return tool::cli::commandWordIn(static_cast<int>(line.size()), line.data());
}

TEST(CommandWordTest, ComesAfterOptionsThatItCanBeRunWith) {
  EXPECT_EQ(wordIn({"get", "System/Rtsp"}), "get");
  EXPECT_EQ(wordIn({"get", "--help"}), "get");
  EXPECT_EQ(wordIn({"--root", "list", "get"}), "get");
  EXPECT_EQ(wordIn({"--json", "-v", "--verbose", "--color", "never", "live", "srt"}), "live");
  EXPECT_EQ(wordIn({"no-command"}), "no-command");
}

// What they print, or why they are refused, may need to know every command.
TEST(CommandWordTest, IsNotSoughtAfterAnyOther) {
  for (const char* option : {"--help", "-h", "--version", "--", "-", "-vh", "--bogus", "--root=/x"})
    EXPECT_EQ(wordIn({option, "get"}), "") << option;
  EXPECT_EQ(wordIn({}), "");
  EXPECT_EQ(wordIn({"--root"}), "");
  EXPECT_EQ(wordIn({""}), "");
}

}  // namespace
}  // namespace camcfg::tests
