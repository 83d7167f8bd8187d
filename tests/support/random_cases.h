#ifndef CAMCFG_TESTS_SUPPORT_RANDOM_CASES_H
#define CAMCFG_TESTS_SUPPORT_RANDOM_CASES_H

namespace camcfg::tests {

// Programs with sanitizers, and those of other processors, are ten to twenty times as slow, and need no
// other generated cases than the usual build: they try one of so many.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__x86_64__)
constexpr int kOneOf = 15;
#else
constexpr int kOneOf = 1;
#endif

/// How many of so many generated cases a build tries.
constexpr int casesOf(int all) {
  return all / kOneOf;
}

/// Of how many records a huge file is, of so many in the usual build.
constexpr int sizeOf(int all) {
  return kOneOf == 1 ? all : all / 5;
}

/// Whether a build tries the generated case of this number.
constexpr bool isTried(int number) {
  return number % kOneOf == kOneOf / 2;  // some of a few, too
}

}  // namespace camcfg::tests

#endif
