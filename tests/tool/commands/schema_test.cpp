#include <gmock/gmock.h>

#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::Not;
using tool::Json;

// What a schema says, and that an import agrees, is compared by scripts/check-schema.sh.
class SchemaTest : public SampleTest {
 protected:
  Json schema(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> words = {"schema"};
    words.insert(words.end(), options.begin(), options.end());
    const ToolRun printed = run(words);
    EXPECT_EQ(printed.status, 0) << printed.err;
    return jsonIn(printed.out);
  }
  static Json at(const Json& schema, const std::string& path) {
    const Json* found = schema.find_path(path);
    EXPECT_NE(found, nullptr) << path;
    return found == nullptr ? Json() : *found;
  }
};

constexpr char kRtsp[] = "properties/parameters/properties/System/properties/Rtsp";
constexpr char kSrt[] = "properties/live/properties/srt/items/else";

TEST_F(SchemaTest, DialectsDifferInNamesOnly) {
  const std::string latest = run({"schema", "--dialect", "2020-12"}).out;
  EXPECT_EQ(run({"schema"}).out, latest);
  std::string other = run({"schema", "--dialect", "draft-07"}).out;
  other = with(other, "http://json-schema.org/draft-07/schema#",
               "https://json-schema.org/draft/2020-12/schema");
  for (std::size_t i = other.find("definitions"); i != std::string::npos;
       i = other.find("definitions"))
    other.replace(i, 11, "$defs");
  EXPECT_EQ(jsonIn(other), jsonIn(latest));
}

TEST_F(SchemaTest, LimitsAreThoseOfTheDevice) {
  EXPECT_EQ(at(schema(), std::string(kRtsp) + "/maximum"), 65535);
  change("business_param.xml", "<Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\"",
         "<Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"1000\"");
  EXPECT_EQ(at(schema(), std::string(kRtsp) + "/maximum"), 1000);
  EXPECT_EQ(at(schema({"--sample"}), std::string(kRtsp) + "/maximum"), 65535);
}

TEST_F(SchemaTest, ValuesHaveHelpUnitsDefaultsAndExamples) {
  const Json all = schema();
  EXPECT_EQ(at(all, std::string(kRtsp) + "/default"), 554);
  EXPECT_EQ(at(all, std::string(kRtsp) + "/examples").dump(), "[554]");
  EXPECT_EQ(at(all, std::string(kSrt) + "/properties/latency/default"), 20);
  EXPECT_THAT(at(all, std::string(kSrt) + "/properties/latency/description").text(),
              testing::EndsWith(", in ms"));
}

TEST_F(SchemaTest, SecretsAreOnlyWritten) {
  const Json all = schema();
  EXPECT_EQ(at(all, std::string(kSrt) + "/properties/password/writeOnly"), true);
  EXPECT_FALSE(at(all, std::string(kSrt) + "/properties/port").contains("writeOnly"));
  EXPECT_THAT(run({"schema"}).out, Not(testing::HasSubstr("change-me")));
}

TEST_F(SchemaTest, EntriesThatAreMergedMayLeaveOutMembers) {
  EXPECT_TRUE(at(schema(), kSrt).contains("required"));
  EXPECT_FALSE(at(schema({"--mode", "merge"}), kSrt).contains("required"));
  EXPECT_EQ(
      at(schema({"--mode", "merge"}), "properties/live/properties/rtsp/items/else/required").dump(),
      R"(["name"])");
}

TEST_F(SchemaTest, ValueThatTheDeviceHasIsTakenWhateverItIs) {
  change("business_param.xml", "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"70000\"");
  EXPECT_EQ(at(schema(), std::string(kRtsp) + "/anyOf/1/const"), 70000);
}

TEST_F(SchemaTest, SampleNeedsNoDevice) {
  const ToolRun printed = runCamcfg({"schema", "--sample"});
  EXPECT_EQ(printed.out, run({"schema"}).out);
  EXPECT_EQ(printed.status, 0) << printed.err;
}

TEST_F(SchemaTest, UnknownDialectIsRefused) {
  EXPECT_EQ(run({"schema", "--dialect", "2020"}),
            (ToolRun{2, "",
                     "camcfg: schema: --dialect: '2020' is none of 2020-12, draft-07; did you mean "
                     "'2020-12'?\n"}));
}

}  // namespace
}  // namespace camcfg::tests
