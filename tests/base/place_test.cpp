#include "base/place.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

Place placeOfThis() {
  return here();
}

TEST(PlaceTest, NamesTheFunctionAndLineOfItsCaller) {
  EXPECT_STREQ(placeOfThis().function, "placeOfThis");
  EXPECT_GT(placeOfThis().line, 0);
  const int first = here().line;
  const int second = here().line;
  EXPECT_EQ(second, first + 1);
  EXPECT_EQ(first, __LINE__ - 3);
}

TEST(PlaceTest, FunctionMayBeNamedByAnother) {
  const Place place = here("CFG_SaveFile");
  EXPECT_STREQ(place.function, "CFG_SaveFile");
  EXPECT_EQ(place.line, __LINE__ - 2);
}

}  // namespace
}  // namespace camcfg::tests
