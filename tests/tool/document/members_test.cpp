#include "document/members.h"

#include <gmock/gmock.h>

#include "base/outcome.h"
#include "settings/media.h"

namespace camcfg::tests {
namespace {

using tool::Json;
using tool::Refusal;
using tool::settings::Table;

/// The record that words make of another one; or the refusal.
std::string assigned(const Table& table, const std::vector<std::string>& words,
                     Json record = Json::object()) {
  try {
    tool::document::assign(table.settings, words, "here", record);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return record.dump();
}

TEST(MembersTest, ValuesAreOfTheirKind) {
  EXPECT_EQ(assigned(tool::settings::srt(), {"port=9001", "mode=caller", "hostname=a=b"}),
            R"({"port":9001,"mode":"caller","hostname":"a=b"})");
  EXPECT_EQ(assigned(tool::settings::rtmp(), {"enabled=no", "video=12", "audio="}),
            R"({"enabled":false,"video":12,"audio":null})");
  EXPECT_EQ(assigned(tool::settings::rtmp(), {"username=12", "password="}),
            R"({"username":"12","password":null})");
}

TEST(MembersTest, SwitchesAreGivenByManyWords) {
  for (const char* on : {"yes", "on", "true", "YES", "True"})
    EXPECT_EQ(assigned(tool::settings::rtmp(), {std::string("enabled=") + on}),
              R"({"enabled":true})");
  for (const char* off : {"no", "off", "false", "Off"})
    EXPECT_EQ(assigned(tool::settings::rtmp(), {std::string("enabled=") + off}),
              R"({"enabled":false})");
  EXPECT_EQ(assigned(tool::settings::rtmp(), {"enabled=1"}), R"({"enabled":"1"})");
}

TEST(MembersTest, ListsHaveTheirMembersInARow) {
  EXPECT_EQ(assigned(tool::settings::rtsp(), {"channels=0:video,8:audio"}),
            R"({"channels":[{"id":0,"name":"video"},{"id":8,"name":"audio"}]})");
  EXPECT_EQ(assigned(tool::settings::srt(), {"streams=program:12+8,quiet"}),
            R"({"streams":[{"id":"program","channels":[12,8]},{"id":"quiet"}]})");
  EXPECT_EQ(assigned(tool::settings::srt(), {"streams=program:12+8:yes"}),
            R"({"streams":[{"id":"program","channels":[12,8],"default":true}]})");
  EXPECT_EQ(assigned(tool::settings::srt(), {"streams="}), R"({"streams":[]})");
  EXPECT_EQ(assigned(tool::settings::streamCaches(), {"allowed=0,2"}), R"({"allowed":[0,2]})");
  EXPECT_EQ(assigned(tool::settings::rtsp(), {"channels=0:video:more"}),
            "'0:video:more' has more than 2 parts");
}

TEST(MembersTest, RecordsThatStayKeepWhatIsNotSaid) {
  const Json record = {
      {"streams",
       Json(std::vector<Json>{Json{{"id", "a"}, {"default", true}, {"channels", nullptr}},
                              Json{{"id", "b"}, {"default", true}, {"channels", nullptr}}})}};
  EXPECT_EQ(assigned(tool::settings::srt(), {"streams=b:1,c:2"}, record),
            R"({"streams":[{"id":"b","channels":[1],"default":true},{"id":"c","channels":[2]}]})");
}

TEST(MembersTest, SizesAreGivenInUnits) {
  const auto size = [](const std::string& word) {
    const std::string record = assigned(tool::settings::streamCaches(), {"size=" + word});
    return record.substr(8, record.size() - 9);
  };
  for (const char* word : {"2MiB", "2MB", "2M", "2mib", "2 MiB"})
    EXPECT_EQ(size(word), R"({"value":2,"unit":"MB"})") << word;
  for (const char* word : {"512KiB", "512KB", "512k", "512 kb"})
    EXPECT_EQ(size(word), R"({"value":512,"unit":"KB"})") << word;
  EXPECT_EQ(size("1GiB"), R"({"value":1024,"unit":"MB"})");
  EXPECT_EQ(size("0.5GiB"), R"({"value":512,"unit":"MB"})");
  EXPECT_EQ(size("1.5MiB"), R"({"value":1536,"unit":"KB"})");
  EXPECT_EQ(size("187.5KiB"), R"({"value":192000,"unit":"B"})");
  EXPECT_EQ(size("192000"), R"({"value":192000,"unit":"B"})");
  EXPECT_EQ(size("192000B"), R"({"value":192000,"unit":"B"})");
  EXPECT_EQ(size("0"), R"({"value":0,"unit":"B"})");
  for (const char* word :
       {"", "MiB", "2XB", "-1", "1.1KB", "2MiB5", ".5MB", "1..5MB", "2 Mi B", "1e3"})
    EXPECT_EQ(size(word), Json(word).dump()) << word;
}

TEST(MembersTest, OtherWordsAreRefused) {
  const Table& table = tool::settings::srt();
  EXPECT_EQ(assigned(table, {"port"}), "each member is given as MEMBER=VALUE, and one has no '='");
  EXPECT_EQ(assigned(table, {"prt=1"}), "here: there is no member 'prt'; did you mean 'port'?");
  EXPECT_EQ(assigned(table, {"port=1", "port=1"}), "here.port: it is given twice");
}

TEST(MembersTest, WhatMayBeASecretIsNotRepeated) {
  EXPECT_EQ(assigned(tool::settings::srt(), {"=secret"}), "there is no member before the '='");
  EXPECT_EQ(assigned(tool::settings::srt(), {"pasword=secret"}),
            "here: there is no member 'pasword'; did you mean 'password'?");
}

}  // namespace
}  // namespace camcfg::tests
