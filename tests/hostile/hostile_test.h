#ifndef CAMCFG_TESTS_HOSTILE_HOSTILE_TEST_H
#define CAMCFG_TESTS_HOSTILE_HOSTILE_TEST_H

#include <string>

#include "support/cost.h"
#include "support/device_test.h"
#include "support/quick_saves.h"
#include "support/random_cases.h"

namespace camcfg::tests {

constexpr int kMany = sizeOf(1000000);
constexpr std::size_t kHuge = std::size_t{16} << 20;

/// A device in memory whose files nobody of good will has written.
class HostileTest : QuickSaves, public DeviceTest {};

/// A text so many times in a row.
inline std::string repeated(const std::string& text, int times) {
  std::string all;
  all.reserve(text.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

inline std::string nested(int levels) {
  return repeated("<a>", levels) + repeated("</a>", levels);
}

}  // namespace camcfg::tests

#endif
