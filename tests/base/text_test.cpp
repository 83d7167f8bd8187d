#include "base/text.h"

#include <gtest/gtest.h>

#include <string>

namespace camcfg::tests {
namespace {

// Eight bytes with a pattern, of which the first five are handed out.
class TextTest : public testing::Test {
 protected:
  std::string bytes() const { return {memory, sizeof memory}; }
  char memory[8] = {'#', '#', '#', '#', '#', '#', '#', '#'};
  char (&room)[5] = reinterpret_cast<char (&)[5]>(memory);
};

TEST_F(TextTest, CopiedTextEndsWithItsTerminatorAndLeavesTheRest) {
  copyText(room, "ab");
  EXPECT_EQ(bytes(), std::string("ab\0#####", 8));
  copyText(room, "");
  EXPECT_EQ(bytes(), std::string("\0b\0#####", 8));
}

TEST_F(TextTest, CopiedTextIsCutToTheRoom) {
  copyText(room, "abcd");
  EXPECT_EQ(bytes(), std::string("abcd\0###", 8));
  copyText(room, "vwxyz");
  EXPECT_EQ(bytes(), std::string("vwxy\0###", 8));
  copyText(room, 1, "abc");
  EXPECT_EQ(bytes(), std::string("\0wxy\0###", 8));
}

TEST_F(TextTest, JoinedPathIsCutToTheRoom) {
  joinPath(room, "/a", "b");
  EXPECT_EQ(bytes(), std::string("/a/b\0###", 8));
  joinPath(room, "/a", "longer");
  EXPECT_EQ(bytes(), std::string("/a/l\0###", 8));
  joinPath(room, "/ab", "c");
  EXPECT_EQ(bytes(), std::string("/ab/\0###", 8));
}

TEST_F(TextTest, CopiedCharactersHaveNoTerminator) {
  copyCharacters(room, sizeof room, "ab");
  EXPECT_EQ(bytes(), "ab######");
  copyCharacters(room, sizeof room, "");
  EXPECT_EQ(bytes(), "ab######");
  copyCharacters(room, sizeof room, "uvwxyz");
  EXPECT_EQ(bytes(), "uvwxy###");
}

TEST(BeginsWithTest, ComparesOverTheLengthOfTheBeginning) {
  EXPECT_TRUE(beginsWith("RtspOverHttp", "Rtsp"));
  EXPECT_TRUE(beginsWith("Rtsp", "Rtsp"));
  EXPECT_TRUE(beginsWith("Rtsp", ""));
  EXPECT_TRUE(beginsWith("", ""));
  EXPECT_FALSE(beginsWith("Rtsp", "RtspOverHttp"));
  EXPECT_FALSE(beginsWith("", "R"));
  EXPECT_FALSE(beginsWith("rtsp", "R"));
}

}  // namespace
}  // namespace camcfg::tests
