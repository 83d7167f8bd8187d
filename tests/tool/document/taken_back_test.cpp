#include "document/taken_back.h"

#include <gmock/gmock.h>

#include "tool/json_in.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tool::Json;
using tool::document::TakenBack;

class TakenBackTest : public testing::Test {
 protected:
  static std::string takenBack(const char* now, const char* before, const char* after,
                               TakenBack& by) {
    return by.from("x", jsonIn(now), jsonIn(before), jsonIn(after)).dump();
  }
  std::string takenBack(const char* now, const char* before, const char* after) {
    return takenBack(now, before, after, kept);
  }

  TakenBack kept{false};
};

TEST_F(TakenBackTest, WhatTheChangeHasSetBecomesWhatItWas) {
  EXPECT_EQ(takenBack("2", "1", "2"), "1");
  EXPECT_EQ(takenBack(R"({"a":2,"b":5})", R"({"a":1,"b":3})", R"({"a":2,"b":3})"),
            R"({"a":1,"b":5})");
  EXPECT_THAT(kept.conflicts(), IsEmpty());
}

TEST_F(TakenBackTest, WhatIsAsItWasStays) {
  EXPECT_EQ(takenBack("1", "1", "2"), "1");
  EXPECT_THAT(kept.conflicts(), IsEmpty());
}

TEST_F(TakenBackTest, WhatIsNeitherIsAConflict) {
  EXPECT_EQ(takenBack(R"({"a":3})", R"({"a":1})", R"({"a":2})"), R"({"a":3})");
  EXPECT_THAT(kept.conflicts(), ElementsAre("x.a"));
  TakenBack forced(true);
  EXPECT_EQ(takenBack(R"({"a":3})", R"({"a":1})", R"({"a":2})", forced), R"({"a":1})");
}

TEST_F(TakenBackTest, RecordThatTheChangeHasAddedGoes) {
  EXPECT_EQ(takenBack(R"([{"id":1},{"id":2},{"id":9}])", R"([{"id":1}])", R"([{"id":1},{"id":2}])"),
            R"([{"id":1},{"id":9}])");
}

TEST_F(TakenBackTest, RecordThatTheChangeHasDeletedComesBackInItsPlace) {
  EXPECT_EQ(takenBack(R"([{"id":2,"v":7},{"id":9}])", R"([{"id":1},{"id":2,"v":5}])",
                      R"([{"id":2,"v":5}])"),
            R"([{"id":1},{"id":2,"v":7},{"id":9}])");
}

TEST_F(TakenBackTest, RecordThatWasAddedAndThenChangedIsAConflict) {
  EXPECT_EQ(takenBack(R"([{"id":1,"v":6}])", "[]", R"([{"id":1,"v":5}])"), R"([{"id":1,"v":6}])");
  EXPECT_THAT(kept.conflicts(), ElementsAre("x[1]"));
}

TEST_F(TakenBackTest, ListsThatAreNoRecordsAreOneSetting) {
  EXPECT_EQ(takenBack("[1,2,3]", "[1]", "[1,2]"), "[1,2,3]");
  EXPECT_THAT(kept.conflicts(), ElementsAre("x"));
}

}  // namespace
}  // namespace camcfg::tests
