#include "camcfg/testkit/captured_output.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace camcfg::testkit {
namespace {

void writeDirectly(const std::string& text) {
  EXPECT_EQ(write(STDOUT_FILENO, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

TEST(CapturedOutputTest, HoldsAllThatIsPrintedMeanwhile) {
  EXPECT_EQ(captureOutput([] {}), "");
  EXPECT_EQ(captureOutput([] { std::printf("file %s \n", "x.xml"); }), "file x.xml \n");
  EXPECT_EQ(captureOutput([] { std::cout << "streamed" << std::flush; }), "streamed");
  EXPECT_EQ(captureOutput([] { writeDirectly("direct"); }), "direct");
  EXPECT_EQ(captureOutput([] { writeDirectly(std::string("a\0b", 3)); }), std::string("a\0b", 3));
}

TEST(CapturedOutputTest, HoldsLongOutputWhole) {
  const std::string text(100000, 'x');
  EXPECT_EQ(captureOutput([&] { std::printf("%s", text.c_str()); }), text);
}

TEST(CapturedOutputTest, HoldsTheOutputOfChildrenAndThreads) {
  EXPECT_EQ(captureOutput([] {
              const pid_t child = fork();
              if (child == 0) {
                writeDirectly("child ");
                _exit(0);
              }
              waitpid(child, nullptr, 0);
              std::thread([] { std::printf("thread"); }).join();
            }),
            "child thread");
}

TEST(CapturedOutputTest, LeavesOutWhatWasPrintedBeforeAndAfter) {
  const std::string outer = captureOutput([] {
    std::printf("before ");
    EXPECT_EQ(captureOutput([] { std::printf("inside"); }), "inside");
    std::printf("after");
  });
  EXPECT_EQ(outer, "before after");
}

TEST(CapturedOutputTest, GivesStandardOutputBackAfterAnException) {
  const std::string outer = captureOutput([] {
    EXPECT_THROW(captureOutput([] {
                   std::printf("lost");
                   throw std::logic_error("");
                 }),
                 std::logic_error);
    std::printf("seen");
  });
  EXPECT_EQ(outer, "seen");
}

TEST(CapturedOutputTest, StandardErrorIsCapturedApart) {
  std::string out;
  const std::string errors = captureErrors([&] {
    out = captureOutput([] {
      std::printf("out");
      std::fprintf(stderr, "err");
    });
    std::cerr << "or" << std::flush;
  });
  EXPECT_EQ(out, "out");
  EXPECT_EQ(errors, "error");
}

TEST(CapturedOutputTest, LeavesNoDescriptorOpen) {
  const int before = dup(STDERR_FILENO);
  close(before);
  captureOutput([] {});
  const int after = dup(STDERR_FILENO);
  close(after);
  EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace camcfg::testkit
