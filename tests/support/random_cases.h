#ifndef CAMCFG_TESTS_SUPPORT_RANDOM_CASES_H
#define CAMCFG_TESTS_SUPPORT_RANDOM_CASES_H

namespace camcfg::tests {

/// How many of so many generated cases a build tries. Programs with sanitizers, and those of other
/// processors, are ten to twenty times as slow, and need no others than the usual build.
constexpr int casesOf(int all) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__x86_64__)
  return all / 15;
#else
  return all;
#endif
}

}  // namespace camcfg::tests

#endif
