#ifndef CAMCFG_TESTS_SUPPORT_RANDOM_VALUES_H
#define CAMCFG_TESTS_SUPPORT_RANDOM_VALUES_H

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace camcfg::tests {

/// Random values for property tests. The seed is new each time; CAMCFG_TEST_SEED repeats one.
class RandomValues {
 public:
  RandomValues() : seed_(chooseSeed()), engine_(seed_) {}

  /// What to say when a property does not hold.
  std::string trace() const { return "repeat with CAMCFG_TEST_SEED=" + std::to_string(seed_); }

  int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine_); }
  bool chance() { return number(0, 1) == 1; }

  /// Any number that counts as given: mostly small, now and then one of the extremes; never -1.
  int id() {
    if (number(0, 9) > 0) return number(0, 40);
    const int any = number(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    return any == -1 ? std::numeric_limits<int>::min() : any;
  }

  /// A text that may be empty, hold what XML has to escape, white space or UTF-8.
  std::string text() {
    static const char* const kPieces[] = {
        "a",   "Z",     "0",  " ",  "&", "<",  ">",  "\"", "'", ";",        "%",
        "%s",  "&amp;", "\t", "\n", "/", "]]", "--", "#",  "=", "\xc3\xa9", "\xe4\xb8\xad",
        "rtmp"};
    std::string text;
    for (int length = number(0, 8); length > 0; --length)
      text += kPieces[number(0, static_cast<int>(std::size(kPieces)) - 1)];
    return text;
  }

 private:
  static std::uint32_t chooseSeed() {
    const char* given = std::getenv("CAMCFG_TEST_SEED");
    if (given != nullptr) return static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10));
    return std::random_device()();
  }

  const std::uint32_t seed_;
  std::mt19937 engine_;
};

}  // namespace camcfg::tests

#endif
