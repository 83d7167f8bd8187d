// Times one cold read and one durable change of 128 parameters, here and in comparable libraries, in
// rounds that take turns; prints a line of JSON. "unsynced" is the change without the calls of
// sync(), whose time is the kernel's and depends on everyone else's dirty pages.
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "bench/peers.h"

extern "C" void UTIL_LOG_Print(int, char*, char*, ...) {}

static bool skipsSync = false;

extern "C" void sync() noexcept {
  if (!skipsSync) syscall(SYS_sync);
}

namespace {

using camcfg::bench::Peer;
using camcfg::bench::PeerKind;

constexpr int kParameters = 128;
constexpr int kRounds = 15;
constexpr int kRepeats = 5;
constexpr char kParameter[] = "Param000100";

struct Times {
  double read;
  double write;
  double unsynced;
};

template <typename Work>
double microseconds(Work work) {
  work();  // what is done once in a process is not what is compared
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kRepeats; ++i) work();
  const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / kRepeats;
}

Times measure(const PeerKind& kind, const std::string& directory) {
  const std::unique_ptr<Peer> peer = kind.make(directory, kParameters);
  int value = 0;
  Times times{};
  times.write = microseconds([&] { peer->write(kParameter, ++value); });
  skipsSync = true;
  times.unsynced = microseconds([&] { peer->write(kParameter, ++value); });
  times.read = microseconds([&] {
    if (peer->read(kParameter) != value) throw std::runtime_error(kind.name + " lost a change");
  });
  return times;
}

// In a process of its own: some enter a root of their own.
Times measureApart(const PeerKind& kind) {
  char directory[] = "/tmp/camcfg-peer-XXXXXX";
  int ends[2];
  if (mkdtemp(directory) == nullptr || pipe(ends) != 0) throw std::runtime_error("no scratch");
  const pid_t child = fork();
  if (child == 0) {
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    try {
      const Times times = measure(kind, directory);
      _exit(write(ends[1], &times, sizeof times) == sizeof times ? 0 : 1);
    } catch (const std::exception& fault) {
      std::fprintf(stderr, "%s: %s\n", kind.name.c_str(), fault.what());
      _exit(1);
    }
  }
  int status = 0;
  waitpid(child, &status, 0);
  Times times{};
  const bool received = status == 0 && read(ends[0], &times, sizeof times) == sizeof times;
  close(ends[0]);
  close(ends[1]);
  std::filesystem::remove_all(directory);
  if (!received) throw std::runtime_error("cannot measure " + kind.name);
  return times;
}

double median(const std::vector<Times>& all, double Times::*which) {
  std::vector<double> values;
  values.reserve(all.size());
  for (const Times& times : all) values.push_back(times.*which);
  std::nth_element(values.begin(), values.begin() + kRounds / 2, values.end());
  return values[kRounds / 2];
}

}  // namespace

int main() try {
  const auto& kinds = camcfg::bench::peers();
  std::vector<std::vector<Times>> all(kinds.size());
  for (int round = 0; round < kRounds; ++round)
    for (std::size_t i = 0; i < kinds.size(); ++i) all[i].push_back(measureApart(kinds[i]));
  std::printf("[");
  for (std::size_t i = 0; i < kinds.size(); ++i)
    std::printf("%s{\"name\": \"%s\", \"read\": %.1f, \"write\": %.1f, \"unsynced\": %.1f}",
                i == 0 ? "" : ", ", kinds[i].name.c_str(), median(all[i], &Times::read),
                median(all[i], &Times::write), median(all[i], &Times::unsynced));
  std::printf("]\n");
  return 0;
} catch (const std::exception& fault) {
  std::fprintf(stderr, "%s\n", fault.what());
  return 1;
}
