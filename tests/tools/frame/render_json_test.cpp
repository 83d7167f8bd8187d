#include <gmock/gmock.h>

#include "frame/render.h"

namespace camcfg::tests {
namespace {

using tool::Answer;

TEST(RenderJsonTest, ValueIsPrintedWholeInItsOrder) {
  Answer answer;
  answer.value = {{"b", 1}, {"a", {"x", nullptr}}};
  answer.layout = {tool::Line{"not shown"}};
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

}  // namespace
}  // namespace camcfg::tests
