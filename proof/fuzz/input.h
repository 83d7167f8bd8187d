#ifndef CAMCFG_FUZZ_INPUT_H
#define CAMCFG_FUZZ_INPUT_H

#include <string>
#include <vector>

namespace camcfg::fuzz {

/// What separates the parts of an input.
inline constexpr char kSeparator[] = "\n%%\n";

/// Splits an input at its separators. There is always at least one part.
std::vector<std::string> split(const std::string& input);

/// The other way round.
std::string join(const std::vector<std::string>& parts);

/// What a target is run on: files, and arguments of calls as the lines of a part. What an input
/// lacks is empty.
class Input {
 public:
  explicit Input(const std::string& bytes) : parts_(split(bytes)) {}

  std::string part(std::size_t index) const;
  /// A line of the first part.
  std::string line(std::size_t index) const;
  /// A line of the first part as a number, beginning as in atoi(); one beyond 32 bits is the nearest
  /// that fits.
  int number(std::size_t index) const;

  /// Whether every part that is XML can be written and read again. tinyxml2 stops without an error
  /// at an end tag that nothing was opened for; what it makes of such a file may not load again.
  bool isStable() const;

 private:
  std::vector<std::string> parts_;
};

}  // namespace camcfg::fuzz

#endif
