#ifndef CAMCFG_TESTS_TOOL_SAMPLE_TEST_H
#define CAMCFG_TESTS_TOOL_SAMPLE_TEST_H

#include "tool/tool_test.h"

namespace camcfg::tests {

/// The sample device as it is new, with backups.
class SampleTest : public ToolTest {
 protected:
  SampleTest() {
    device.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
    device.makeDirectory("/cfg0");
    device.makeDirectory("/cfg1");
    EXPECT_EQ(run({"verify", "--resync"}).status, 0);
  }

  /// Replaces a part of both copies of a file.
  void change(const std::string& name, const std::string& part, const std::string& other) const {
    for (const char* directory : {"/cfg0/", "/cfg1/"})
      device.write(directory + name, with(device.read(directory + name), part, other));
  }
};

}  // namespace camcfg::tests

#endif
