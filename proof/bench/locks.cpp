// What the locks between programs cost: a read and a durable write with the directory of lock files
// and without it, in turns, and how many calls a second 1, 2, 4 and 8 programs make side by side.
//   camcfg-locks
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <new>
#include <thread>
#include <vector>

#include "bench/files.h"
#include "camcfg/params.h"
#include "camcfg/store.h"
#include "camcfg/testkit/device_root.h"

extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int /*level*/,
                                                                      char* /*prefix*/,
                                                                      char* /*format*/, ...) {}

namespace {

using Clock = std::chrono::steady_clock;
using camcfg::testkit::DeviceRoot;

char bench[] = "Bench";
std::string last;

bool syncs = true;

bool read() {
  int value = 0;
  return CFG_COM_GetIntParam(bench, last.data(), &value) == 0;
}

bool write() {
  syncs = false;
  return CFG_COM_SetIntParam(bench, last.data(), 7) == 0;
}

bool writeDurably() {
  syncs = true;
  return CFG_COM_SetIntParam(bench, last.data(), 7) == 0;
}

double microseconds(bool (*call)(), int count) {
  const auto begin = Clock::now();
  for (int i = 0; i < count; ++i) static_cast<void>(call());
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count() / count;
}

void askForLocks(const DeviceRoot& device, bool asked) {
  if (asked)
    device.makeDirectory("/run/camcfg");
  else
    device.remove("/run");
}

double middle(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// In turns, so that both meet the same load of the machine; of each turn's pair the difference.
void compare(const DeviceRoot& device, const char* name, bool (*call)(), int rounds, int count) {
  std::array<std::vector<double>, 2> times;
  std::vector<double> differences;
  for (int round = 0; round < rounds; ++round) {
    for (const bool asked : {false, true}) {
      askForLocks(device, asked);
      static_cast<void>(call());
      times.at(asked ? 1 : 0).push_back(microseconds(call, count));
    }
    differences.push_back(times[1].back() - times[0].back());
  }
  std::printf("| %-14s | %12.1f | %12.1f | %11.1f |\n", name, middle(times[0]), middle(times[1]),
              middle(differences));
}

// Calls a second of so many programs that succeeded.
double throughput(int programs, bool (*call)()) {
  void* memory = mmap(nullptr, sizeof(std::atomic<long>), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return 0;
  auto* calls = new (memory) std::atomic<long>(0);
  const auto begin = Clock::now();
  const auto end = begin + std::chrono::milliseconds(1000);
  for (int i = 0; i < programs; ++i) {
    if (fork() != 0) continue;
    while (Clock::now() < end) {
      if (call()) ++*calls;
    }
    _exit(0);
  }
  while (wait(nullptr) > 0) continue;
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  const double result = static_cast<double>(calls->load()) / seconds;
  munmap(memory, sizeof(std::atomic<long>));
  return result;
}

void compareThroughput(const DeviceRoot& device, const char* name, bool (*call)()) {
  for (const int programs : {1, 2, 4, 8}) {
    std::array<std::vector<double>, 2> results;
    for (int round = 0; round < 3; ++round)
      for (const bool asked : {false, true}) {
        askForLocks(device, asked);
        // Programs that damage each other's files without locks start each time on sound ones.
        for (const char* path : {CFG_FILE_BUSINESS, "/cfg1/business_param.xml"})
          camcfg::bench::writeFile(path, camcfg::bench::parameterFile(128));
        results.at(asked ? 1 : 0).push_back(throughput(programs, call));
      }
    const double without = middle(results[0]);
    const double with = middle(results[1]);
    std::printf("| %-14s | %8d | %7.0f | %7.0f | %5.2f |\n", name, programs, without, with,
                with / without);
  }
}

}  // namespace

// Called instead of the C library's own: what a save costs without it hardly varies.
extern "C" __attribute__((visibility("default"))) void sync() noexcept {
  if (syncs) syscall(SYS_sync);
}

int main() {
  const DeviceRoot device;
  device.makeDirectory("/run/camcfg");
  last = camcfg::bench::lastParameter(128);
  for (const char* path : {CFG_FILE_BUSINESS, "/cfg1/business_param.xml"})
    camcfg::bench::writeFile(path, camcfg::bench::parameterFile(128));

  std::printf("One of 128 parameters with locks between programs, in microseconds:\n\n");
  std::printf("| call           | without them | with them    | difference  |\n");
  std::printf("| -------------- | ------------ | ------------ | ----------- |\n");
  compare(device, "read", read, 41, 500);
  compare(device, "write, no sync", write, 41, 100);
  compare(device, "durable write", writeDurably, 41, 20);
  std::printf(
      "\nCalls a second that succeed, of several programs on one file, without and with "
      "locks:\n\n");
  std::printf("| call           | programs | without | with    | ratio |\n");
  std::printf("| -------------- | -------- | ------- | ------- | ----- |\n");
  compareThroughput(device, "read", read);
  compareThroughput(device, "write, no sync", write);
  std::printf("\n");
  return 0;
}
