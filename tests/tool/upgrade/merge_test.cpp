#include "upgrade/merge.h"

#include <gmock/gmock.h>

#include "tool/json_in.h"

namespace camcfg::tests {
namespace {

using namespace tool::upgrade;

class UpgradeMergeTest : public testing::Test {
 protected:
  std::string merged(const char* base, const char* factory, const char* user) {
    Merge merge(ways);
    std::string result = merge.value("x", jsonIn(base), jsonIn(factory), jsonIn(user)).dump();
    said.clear();
    for (const Entry& entry : merge.entries()) said += entry.what + " " + entry.place + "\n";
    return result;
  }

  Ways ways;
  std::string said;
};

TEST_F(UpgradeMergeTest, WhatOnlyOneSideChangedIsChanged) {
  EXPECT_EQ(merged("1", "2", "1"), "2");
  EXPECT_EQ(said, "factory x\n");
  EXPECT_EQ(merged("1", "1", "3"), "3");
  EXPECT_EQ(merged("1", "3", "3"), "3");
  EXPECT_EQ(said, "");
}

TEST_F(UpgradeMergeTest, ConflictIsTheUsersUnlessAskedOtherwise) {
  EXPECT_EQ(merged("1", "2", "3"), "3");
  EXPECT_EQ(said, "conflict x\n");
  ways.prefersFactory = true;
  EXPECT_EQ(merged("1", "2", "3"), "2");
  EXPECT_EQ(said, "conflict x\n");
}

TEST_F(UpgradeMergeTest, RecordsAreMergedMemberByMember) {
  EXPECT_EQ(
      merged(R"([{"id":1,"a":1,"b":1}])", R"([{"id":1,"a":2,"b":1}])", R"([{"id":1,"a":1,"b":3}])"),
      R"([{"id":1,"a":2,"b":3}])");
  EXPECT_EQ(said, "factory x[1].a\n");
}

TEST_F(UpgradeMergeTest, WhatTheUserAddedStaysAndWhatHeDeletedStaysDeleted) {
  EXPECT_EQ(
      merged(R"([{"id":1},{"id":2}])", R"([{"id":1},{"id":2},{"id":4}])", R"([{"id":1},{"id":3}])"),
      R"([{"id":1},{"id":4},{"id":3}])");
  EXPECT_EQ(said, "added x[4]\n");
}

TEST_F(UpgradeMergeTest, RecordWhoseIdIsTakenStaysOut) {
  EXPECT_EQ(merged("[]", R"([{"id":1,"a":1}])", R"([{"id":1,"a":2}])"), R"([{"id":1,"a":2}])");
  EXPECT_EQ(said, "conflict x[1]\n");
}

TEST_F(UpgradeMergeTest, RecordThatTheFactoryDeletedGoesUnlessItWasChanged) {
  EXPECT_EQ(merged(R"([{"id":1,"a":1}])", "[]", R"([{"id":1,"a":1}])"), "[]");
  EXPECT_EQ(said, "dropped x[1]\n");
  EXPECT_EQ(merged(R"([{"id":1,"a":1}])", "[]", R"([{"id":1,"a":2}])"), R"([{"id":1,"a":2}])");
  EXPECT_EQ(said, "conflict x[1]\n");
}

TEST_F(UpgradeMergeTest, RecordThatTheUserDeletedAndTheFactoryChangedIsAConflict) {
  EXPECT_EQ(merged(R"([{"id":1,"a":1}])", R"([{"id":1,"a":2}])", "[]"), "[]");
  EXPECT_EQ(said, "conflict x[1]\n");
}

TEST_F(UpgradeMergeTest, IdsAreMergedOneByOne) {
  EXPECT_EQ(merged("[0,1,2]", "[0,1,2,5]", "[0,2,7]"), "[0,2,5,7]");
}

TEST_F(UpgradeMergeTest, RecordsWithoutKeysAreOneValue) {
  EXPECT_EQ(merged(R"([{"a":1},{"a":2}])", R"([{"a":1},{"a":3}])", R"([{"a":2},{"a":2}])"),
            R"([{"a":2},{"a":2}])");
  EXPECT_EQ(said, "conflict x\n");
}

TEST_F(UpgradeMergeTest, WithoutAnOldSetWhatIsThereStays) {
  ways.hasBase = false;
  EXPECT_EQ(merged("null", R"([{"id":1,"a":1},{"id":2}])", R"([{"id":1,"a":2}])"),
            R"([{"id":1,"a":2}])");
  EXPECT_EQ(said, "left out x[2]\n");
  EXPECT_EQ(merged("null", "5", "null"), "5");
}

TEST_F(UpgradeMergeTest, HeldPlaceTakesNothingFromTheFactory) {
  ways.held = {"x[1].a", "x[2]"};
  EXPECT_EQ(merged(R"([{"id":1,"a":1}])", R"([{"id":1,"a":2},{"id":2}])", R"([{"id":1,"a":1}])"),
            R"([{"id":1,"a":1}])");
}

}  // namespace
}  // namespace camcfg::tests
