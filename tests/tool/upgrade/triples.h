#ifndef CAMCFG_TESTS_TOOL_UPGRADE_TRIPLES_H
#define CAMCFG_TESTS_TOOL_UPGRADE_TRIPLES_H

#include <map>
#include <random>
#include <string>
#include <vector>

namespace camcfg::tests {

/// What an old factory set, a new one and a device have.
struct Triple {
  std::string base;
  std::string factory;
  std::string user;
};

/// Makes files of which the second and the third were derived from the first. The same seed makes the
/// same files.
class Triples {
 public:
  explicit Triples(unsigned seed) : random_(seed) {}

  /// Parameters; with limits that the new set may have narrowed, or values only.
  Triple parameters();
  Triple presets();
  Triple media();
  /// Values by their names, of which few were changed.
  struct Values {
    std::vector<int> base;
    std::vector<int> factory;
    std::vector<int> user;
  };
  Values values(int count, int changes);

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

 private:
  using Record = std::map<std::string, int>;
  using Records = std::map<int, Record>;

  Records recordsOf(int ids, const std::vector<std::string>& members, int range);
  Records derived(Records records, int ids, const std::vector<std::string>& members, int range);

  std::mt19937 random_;
};

/// A file of parameters with these values, without any limit that matters.
std::string parametersOf(const std::vector<int>& values);

}  // namespace camcfg::tests

#endif
