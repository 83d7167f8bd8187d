#include <gmock/gmock.h>

#include "cli/answer.h"
#include "tool/json_in.h"

namespace camcfg::tests {
namespace {

using tool::cli::Answer;

TEST(RenderJsonTest, ValueIsPrintedWholeInItsOrder) {
  Answer answer;
  answer.value = {{"b", 1}, {"a", tool::Json::array({"x", nullptr})}};
  answer.layout = {tool::cli::Line{"not shown"}};
  EXPECT_EQ(renderJson(answer),
            "{\n"
            "  \"b\": 1,\n"
            "  \"a\": [\n"
            "    \"x\",\n"
            "    null\n"
            "  ]\n"
            "}\n");
}

TEST(RenderJsonTest, BytesThatAreNotUtf8AreReplaced) {
  Answer answer;
  answer.value = "caf\xe9";
  EXPECT_EQ(renderJson(answer), "\"caf\xef\xbf\xbd\"\n");
}

TEST(RenderJsonTest, ControlCharactersAreEscapedEverywhere) {
  Answer answer;
  answer.value = {{"a\x7f", "\x1b\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0\xe2\x82\x9b\xc4\x9b"}};
  EXPECT_EQ(renderJson(answer),
            "{\n  \"a\\u007f\": "
            "\"\\u001b\\u0080\\u009b\\u009f\xc2\xa0\xe2\x82\x9b\xc4\x9b\"\n}\n");
  EXPECT_EQ(jsonIn(renderJson(answer)), answer.value);
}

}  // namespace
}  // namespace camcfg::tests
