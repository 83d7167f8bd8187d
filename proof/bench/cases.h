#ifndef CAMCFG_BENCH_CASES_H
#define CAMCFG_BENCH_CASES_H

#include <functional>
#include <string>
#include <vector>

namespace camcfg::bench {

/// One thing the library does, and the least that anybody could do for the same result with only
/// tinyxml2 and the kernel.
struct Case {
  std::string name;
  std::vector<int> sizes;            ///< how many entries the file holds
  std::function<void(int)> prepare;  ///< lays out the file; runs inside the scratch device
  std::function<void()> library;
  std::function<void()> floor;
};

/// The cases, in the order that the tables show them.
const std::vector<Case>& cases();

}  // namespace camcfg::bench

#endif
