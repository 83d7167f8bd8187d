// What libFuzzer calls. One program per target, whose name is CAMCFG_FUZZ_TARGET.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "fuzz/device.h"
#include "fuzz/mutation.h"
#include "fuzz/targets.h"

extern "C" {

std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t capacity);

// The sanitizers' reports name source lines with the help of the host's programs.
void __asan_on_error() {
  camcfg::fuzz::leaveDevice();
}
void __ubsan_on_report() {
  camcfg::fuzz::leaveDevice();
}

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  camcfg::fuzz::prepareDevice();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    camcfg::fuzz::tryInput(CAMCFG_FUZZ_TARGET,
                           std::string(reinterpret_cast<const char*>(data), size));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", CAMCFG_FUZZ_TARGET, error.what());
    std::abort();
  }
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t capacity,
                                    unsigned seed) {
  const auto mutateBytes = [](std::string text, std::size_t longest) {
    const std::size_t previous = text.size();
    text.resize(longest);
    text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), previous, longest));
    return text;
  };
  const std::string mutated = camcfg::fuzz::mutate(
      std::string(reinterpret_cast<const char*>(data), size), capacity, seed, mutateBytes);
  mutated.copy(reinterpret_cast<char*>(data), mutated.size());
  return mutated.size();
}

}  // extern "C"
