// Runs the fuzz targets on what is kept in fuzz/corpus: each file is a test, named TARGET.FILE.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;

class Replay : public testing::Test {
 public:
  Replay(std::string target, fs::path file) : target_(std::move(target)), file_(std::move(file)) {}

  void TestBody() override {
    std::ifstream stream(file_, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_NO_THROW(fuzz::tryInput(target_, input)) << file_;
  }

 private:
  std::string target_;
  fs::path file_;
};

void registerInputs(const std::string& target) {
  for (const fs::directory_entry& entry :
       fs::directory_iterator(fs::path(CAMCFG_FUZZ_CORPUS) / target))
    testing::RegisterTest(target.c_str(), entry.path().filename().c_str(), nullptr, nullptr,
                          __FILE__, __LINE__,
                          [target, entry] { return new Replay(target, entry.path()); });
}

}  // namespace
}  // namespace camcfg::tests

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  for (const camcfg::fuzz::Target& target : camcfg::fuzz::allTargets())
    camcfg::tests::registerInputs(target.name);
  camcfg::fuzz::prepareDevice();
  const int result = RUN_ALL_TESTS();
  if (testing::UnitTest::GetInstance()->test_to_run_count() > 0) return result;
  std::fputs("there are no inputs to replay\n", stderr);
  return 1;
}
