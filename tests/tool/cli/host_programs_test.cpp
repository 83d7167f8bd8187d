#include "cli/process.h"

#include <gmock/gmock.h>

#include "base/outcome.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {
namespace {

std::string refusalOf(const tool::cli::HostProgram& program) {
  try {
    return "done: " + tool::cli::HostPrograms().passThrough(program, "text");
  } catch (const tool::Refusal& refusal) {
    return refusal.what();
  }
}

TEST(HostProgramsTest, TextPassesThroughAProgramWhateverItsSize) {
  const std::string text(1 << 20, 'x');
  EXPECT_EQ(tool::cli::HostPrograms().passThrough({{"cat"}, ""}, text), text);
}

TEST(HostProgramsTest, ArgumentsReachTheProgramWithoutAShell) {
  EXPECT_EQ(tool::cli::HostPrograms().passThrough({{"echo", "$HOME", "a  b"}, ""}, ""),
            "$HOME a  b\n");
}

TEST(HostProgramsTest, ProgramOutsideTheDeviceIsReachedFromInside) {
  const tool::cli::HostPrograms programs;
  const testkit::DeviceRoot device;
  EXPECT_EQ(programs.passThrough({{"cat"}, ""}, "text"), "text");
}

TEST(HostProgramsTest, ProgramThatIsNotInstalledIsNamedWithWhatItComesWith) {
  EXPECT_EQ(refusalOf({{"no-such-program"}, "Something"}),
            "the program 'no-such-program' is not installed; it comes with Something");
}

TEST(HostProgramsTest, ProgramThatFailsIsQuoted) {
  EXPECT_EQ(refusalOf({{"sh", "-c", "echo first >&2; echo second >&2; exit 3"}, ""}),
            "'sh' failed: first");
}

}  // namespace
}  // namespace camcfg::tests
