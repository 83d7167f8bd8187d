#include "base/caller.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace camcfg::tests {
namespace {

class CallerTest : public testing::Test {
 protected:
  ~CallerTest() override { unsetenv("SUDO_USER"); }

  static std::string commandOf(std::vector<const char*> words) {
    words.insert(words.begin(), "/usr/bin/camcfg");
    tool::rememberCaller(static_cast<int>(words.size()), words.data());
    return tool::caller().command;
  }
};

TEST_F(CallerTest, CommandLineIsKeptAsAShellTakesIt) {
  EXPECT_EQ(commandOf({}), "");
  EXPECT_EQ(commandOf({"set", "System", "Rtsp", "8554"}), "set System Rtsp 8554");
  EXPECT_EQ(commandOf({"set", "DeviceName", "North Gate"}), "set DeviceName 'North Gate'");
  EXPECT_EQ(commandOf({"set", "Text", "", "it's", "$x", "a\nb"}),
            "set Text '' 'it'\\''s' '$x' 'a\nb'");
}

TEST_F(CallerTest, RootIsLeftOut) {
  EXPECT_EQ(commandOf({"--root", "/mnt/dev", "reset", "System"}), "reset System");
  EXPECT_EQ(commandOf({"reset", "--root=/mnt/dev", "System"}), "reset System");
  EXPECT_EQ(commandOf({"reset", "--root"}), "reset");
  EXPECT_EQ(commandOf({"--root", "/d", "run", "--", "ls", "--root", "/x", "--root=y"}),
            "run -- ls --root /x --root=y");
}

TEST_F(CallerTest, SecretsAreMasked) {
  EXPECT_EQ(commandOf({"live", "password=abc", "PassPhrase=a b", "Key=", "user=abc"}),
            "live password=*** PassPhrase=*** Key=*** user=abc");
  EXPECT_EQ(commandOf({"--password=a=b", "live.rtmp[0].password=x", "streamKey=y", "password"}),
            "--password=*** 'live.rtmp[0].password=***' streamKey=*** password");
  EXPECT_EQ(commandOf({"url=rtmp://u:p@ss@h:1935/a:b@c?token=1", "rtmp://h:80/a", "srt://h?x"}),
            "'url=rtmp://u:***@h:1935/a:b@c?***' rtmp://h:80/a 'srt://h?***'");
  EXPECT_EQ(commandOf({"url=rtmp://h/app/key", "live.rtmp[0].url=h/app/key/more", "RTMPS://h/a/k"}),
            "url=rtmp://h/app/*** 'live.rtmp[0].url=h/app/***' RTMPS://h/a/***");
  EXPECT_EQ(commandOf({"https://h/a/b", "/cfg0/mpp_cfg.xml", "curl=a/b/c"}),
            "https://h/a/b /cfg0/mpp_cfg.xml curl=a/b/c");
}

TEST_F(CallerTest, UserBeforeSudoIsTheCaller) {
  setenv("SUDO_USER", "alice", 1);
  commandOf({});
  EXPECT_EQ(tool::caller().name, "alice");
  setenv("SUDO_USER", "", 1);
  commandOf({});
  EXPECT_NE(tool::caller().name, "");
  if (getuid() == 0) {
    EXPECT_EQ(tool::caller().name, "root");
  }
}

}  // namespace
}  // namespace camcfg::tests
