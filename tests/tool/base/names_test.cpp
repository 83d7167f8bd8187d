#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/host.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class NamesTest : public testing::Test {
 protected:
  std::string path(const char* name) const { return host.hostPath() + name; }
  Descriptor opened(const char* name) const {
    return Descriptor(open(path(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }

  testkit::DeviceRoot host{testkit::DeviceRoot::StayOut};
};

TEST_F(NamesTest, AreThoseOfAllThatIsInADirectory) {
  ASSERT_EQ(mkdir(path("/d").c_str(), 0700), 0);
  host.write("/d/b", "");
  host.write("/d/.a", "");
  ASSERT_EQ(symlink("nothing", path("/d/link").c_str()), 0);
  EXPECT_THAT(namesIn(opened("/d").get()), UnorderedElementsAre("b", ".a", "link"));
  ASSERT_EQ(mkdir(path("/empty").c_str(), 0700), 0);
  EXPECT_THAT(namesIn(opened("/empty").get()), IsEmpty());
}

TEST_F(NamesTest, ThereAreNoneInWhatIsNoDirectory) {
  host.write("/file", "");
  EXPECT_THAT(namesIn(Descriptor(open(path("/file").c_str(), O_RDONLY)).get()), IsEmpty());
  EXPECT_THAT(namesIn(-1), IsEmpty());
}

TEST_F(NamesTest, LinkSaysItsTargetWhetherItIsThereOrNot) {
  ASSERT_EQ(symlink("../nothing/", path("/link").c_str()), 0);
  EXPECT_EQ(linkTarget(path("/link")), "../nothing/");
  host.write("/file", "");
  EXPECT_EQ(linkTarget(path("/file")), std::nullopt);
}

TEST_F(NamesTest, EndingComesAfterSomething) {
  EXPECT_TRUE(hasEnding("a.xml", ".xml"));
  EXPECT_TRUE(hasEnding("a.b.xml", ".xml"));
  EXPECT_FALSE(hasEnding(".xml", ".xml"));
  EXPECT_FALSE(hasEnding("a.xml.bak", ".xml"));
  EXPECT_FALSE(hasEnding("axml", ".xml"));
  EXPECT_FALSE(hasEnding("a.XML", ".xml"));
  EXPECT_FALSE(hasEnding("", ".xml"));
}

}  // namespace
}  // namespace camcfg::tests
