// Times every case and its floor, and concurrent reads:
//   camcfg-timings OUTPUT.json [benchmark options]
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include "bench/cases.h"
#include "bench/files.h"
#include "camcfg/params.h"
#include "camcfg/store.h"
#include "camcfg/testkit/device_root.h"

extern "C" void UTIL_LOG_Print(int, char*, char*, ...) {}

namespace {

using camcfg::bench::Case;

void registerCase(const Case& chosen) {
  for (const char* which : {"library", "floor"}) {
    const auto& run = which[0] == 'l' ? chosen.library : chosen.floor;
    auto* registered = benchmark::RegisterBenchmark(
        (chosen.name + "/" + which).c_str(), [&chosen, &run](benchmark::State& state) {
          chosen.prepare(static_cast<int>(state.range(0)));
          for (auto step : state) {
            static_cast<void>(step);
            run();
          }
        });
    for (const int size : chosen.sizes) registered->Arg(size);
    registered->Unit(benchmark::kMicrosecond)->UseRealTime();
  }
}

// Each thread reads a file of its own, or all read the same one.
void readConcurrently(benchmark::State& state) {
  const bool ownFile = state.range(0) != 0;
  const std::string path =
      "/cfg0/read" + std::to_string(ownFile ? state.thread_index() : 0) + ".xml";
  if (ownFile || state.thread_index() == 0)
    camcfg::bench::writeFile(path, camcfg::bench::parameterFile(128));
  for (auto step : state) {
    static_cast<void>(step);
    delete CFG_GetDocByFileName(const_cast<char*>(path.c_str()), BU_TRUE);
  }
}

// Reads one file while another thread waits for the lock of a second one, or while none does.
void readBesideWaiter(benchmark::State& state) {
  const bool someoneWaits = state.range(0) != 0;
  char read[] = "/cfg0/read.xml";
  char waitedFor[] = "/cfg0/waited_for.xml";
  camcfg::bench::writeFile(read, camcfg::bench::parameterFile(128));
  std::thread waiter;
  if (someoneWaits) {
    cfgLockFile(waitedFor);
    waiter = std::thread([&] {
      cfgLockFile(waitedFor);
      cfgUnlockFile(waitedFor);
    });
  }
  for (auto step : state) {
    static_cast<void>(step);
    delete CFG_GetDocByFileName(read, BU_TRUE);
  }
  if (someoneWaits) {
    cfgUnlockFile(waitedFor);
    waiter.join();
  }
}

}  // namespace

int main(int argc, char** argv) {
  // The allocator learns from the first large block that is given back to keep such memory, so what
  // is timed before that would pay for fresh pages each time, and what comes after it would not.
  constexpr int kKept = 32 << 20;
  mallopt(M_MMAP_THRESHOLD, kKept);
  mallopt(M_TRIM_THRESHOLD, 2 * kKept);
  for (const Case& chosen : camcfg::bench::cases()) registerCase(chosen);
  for (const int ownFiles : {0, 1})
    benchmark::RegisterBenchmark(
        ownFiles ? "concurrent_read/own_files" : "concurrent_read/one_file", readConcurrently)
        ->Arg(ownFiles)
        ->ThreadRange(1, 8)
        ->UseRealTime();
  benchmark::RegisterBenchmark("read_beside_waiter", readBesideWaiter)
      ->Arg(0)
      ->Arg(1)
      ->Unit(benchmark::kMicrosecond)
      ->UseRealTime();
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s OUTPUT.json [benchmark options]\n", argv[0]);
    return 2;
  }
  std::ofstream output(argv[1]);
  benchmark::JSONReporter reporter;
  reporter.SetOutputStream(&output);

  benchmark::CPUInfo::Get();  // while /proc is in sight
  // What the library prints is discarded.
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  const camcfg::testkit::DeviceRoot device;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return output.flush() ? 0 : 1;
}
