#include "base/outcome.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

using tool::Refusal;
using tool::Status;

TEST(RefusalTest, PlaceIsTheWordBeforeAColonAtTheBeginning) {
  EXPECT_EQ(Refusal("System/Rtsp: 0 is outside 1..65535").place(), "System/Rtsp");
  EXPECT_EQ(Refusal("hostname: it is empty").place(), "hostname");
}

TEST(RefusalTest, PlaceIsAPathOrAnOptionAtTheBeginning) {
  EXPECT_EQ(Refusal("/cfg0/x.xml is missing").place(), "/cfg0/x.xml");
  EXPECT_EQ(Refusal("--rules cannot be combined with FILE").place(), "--rules");
}

TEST(RefusalTest, OtherTextsHaveNoPlace) {
  for (const char* text : {"", ":", " ", "there is no preset 9: it was deleted",
                           "Input/output error", "x:", "preset 3: no room"})
    EXPECT_EQ(Refusal(text).place(), "") << text;
}

TEST(RefusalTest, PlaceMayBeGivenWhereverItIsInTheText) {
  const Refusal refusal = Refusal::about("preset 3", "preset 3: no room", Status::Unusable);
  EXPECT_EQ(refusal.place(), "preset 3");
  EXPECT_EQ(refusal.status(), Status::Unusable);
  EXPECT_STREQ(refusal.what(), "preset 3: no room");
  EXPECT_EQ(Refusal::about("sett", "unknown command 'sett'").place(), "sett");
  EXPECT_EQ(Refusal::about("", "a command is missing").place(), "");
}

TEST(RefusalTest, PlaceStaysWhatItIsAfterMoreText) {
  const Refusal refusal = Refusal("System/Rtsp: no").after("set: ", Status::Usage);
  EXPECT_STREQ(refusal.what(), "set: System/Rtsp: no");
  EXPECT_EQ(refusal.place(), "System/Rtsp");
  EXPECT_EQ(refusal.status(), Status::Usage);
  EXPECT_EQ(Refusal("there is none").after("set: ", Status::Refused).place(), "");
}

}  // namespace
}  // namespace camcfg::tests
