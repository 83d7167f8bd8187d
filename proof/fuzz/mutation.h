#ifndef CAMCFG_FUZZ_MUTATION_H
#define CAMCFG_FUZZ_MUTATION_H

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace camcfg::fuzz {

/// Changes a text byte by byte into one of at most `longest` bytes.
using ByteMutator = std::function<std::string(std::string, std::size_t longest)>;

/// Choices that one seed determines.
class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  /// One of the numbers below `sides`, which is not 0.
  std::size_t below(std::size_t sides) {
    return std::uniform_int_distribution<std::size_t>(0, sides - 1)(engine_);
  }
  bool oneIn(std::size_t sides) { return below(sides) == 0; }
  template <typename Items>
  auto& among(Items& items) {
    return items[below(std::size(items))];
  }

 private:
  std::mt19937 engine_;
};

/// What code that reads attributes and members may not expect: limits, signs, long texts, formats.
std::string oddText(Dice& dice);

/// Changes one part of an input: the tree of an XML or JSON document, or the bytes of anything, as
/// dice decide. What would become too long is changed byte by byte instead.
std::string mutate(const std::string& input, std::size_t longest, unsigned seed,
                   const ByteMutator& mutateBytes);

// One change of a tree; the text as it was if it is no such document.
std::string mutateXml(const std::string& text, Dice& dice, const ByteMutator& mutateBytes);
std::string mutateJson(const std::string& text, Dice& dice, const ByteMutator& mutateBytes);

}  // namespace camcfg::fuzz

#endif
