#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <string_view>

// Where memory runs out while tinyxml2 words an error, it loses the buffer it does that in.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libtinyxml2.so\n";
}

namespace {

constexpr std::string_view kApart = "--apart";

// In the child.
int runOne(const char* name) {
  GTEST_FLAG_SET(filter, name);
  GTEST_FLAG_SET(brief, true);
  const int status = RUN_ALL_TESTS();
  if (testing::UnitTest::GetInstance()->skipped_test_count() != 0)
    std::printf("[  SKIPPED ] %s\n", name);
  if (testing::UnitTest::GetInstance()->test_to_run_count() == 1) return status;
  std::printf("no such test: %s\n", name);
  return 2;
}

bool passed(pid_t test, const char* name) {
  int status = 0;
  if (test == -1 || waitpid(test, &status, 0) != test) {
    std::perror("fork");
    return false;
  }
  if (WIFSIGNALED(status))
    std::printf("%s: ended by signal %d, %s\n", name, WTERMSIG(status),
                strsignal(WTERMSIG(status)));
  return status == 0;
}

// Each in a process of its own, since the library keeps documents and locks until the process ends. The
// program is started only once, which takes longer than most tests.
int runApart(int count, char** names) {
  int failures = 0;
  for (int i = 0; i < count; ++i) {
    std::printf("[ RUN      ] %s\n", names[i]);
    std::fflush(stdout);
    const pid_t test = fork();
    if (test == 0) return runOne(names[i]);
    if (!passed(test, names[i])) ++failures;
  }
  std::printf("Tests: %d, failed: %d\n", count, failures);
  return failures == 0 ? 0 : 1;
}

}  // namespace

/// PROGRAM --apart TEST...: each test in its own process; else GoogleTest's own arguments.
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (argc > 1 && argv[1] == kApart) return runApart(argc - 2, argv + 2);
  return RUN_ALL_TESTS();
}
