#include "fuzz/mutation.h"

#include "fuzz/input.h"

namespace camcfg::fuzz {
namespace {

// One in this many mutations changes bytes, where a tree could be changed as well.
constexpr std::size_t kBytesOneIn = 4;
constexpr std::size_t kMostChanges = 4;

bool looksLikeJson(const std::string& text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  return start != std::string::npos && (text[start] == '{' || text[start] == '[');
}

std::string mutateTree(std::string text, Dice& dice, const ByteMutator& mutateBytes) {
  const auto mutateOnce = looksLikeJson(text) ? mutateJson : mutateXml;
  for (std::size_t changes = 1 + dice.below(kMostChanges); changes > 0; --changes)
    text = mutateOnce(text, dice, mutateBytes);
  return text;
}

}  // namespace

std::string oddText(Dice& dice) {
  static const std::string texts[] = {"",
                                      "-1",
                                      "0",
                                      "1",
                                      "-2147483648",
                                      "2147483647",
                                      "2147483648",
                                      "-2147483649",
                                      "4294967295",
                                      "4294967296",
                                      "9223372036854775808",
                                      "99999999999999999999999",
                                      "0x7fffffff",
                                      " 7",
                                      "7 ",
                                      "7x",
                                      "1e9",
                                      "31",
                                      "32",
                                      "127",
                                      "128",
                                      "129",
                                      "true",
                                      "false",
                                      "%n%s%s%s",
                                      "a\nb",
                                      "a\r\nb\t",
                                      "<&'\">",
                                      "../../etc/passwd",
                                      "\xc3\xa4\xf0\x9f\x93\xb7",
                                      "\xff\xfe"};
  constexpr std::size_t kLengths[] = {15, 16, 31, 32, 63, 64, 127, 255, 256, 1023, 1024, 3000};
  if (dice.oneIn(4)) return std::string().append(dice.among(kLengths), 'L');
  return dice.among(texts);
}

std::string mutate(const std::string& input, std::size_t longest, unsigned seed,
                   const ByteMutator& mutateBytes) {
  Dice dice(seed);
  if (!dice.oneIn(kBytesOneIn)) {
    std::vector<std::string> parts = split(input);
    std::string& part = dice.among(parts);
    part = mutateTree(part, dice, mutateBytes);
    std::string mutated = join(parts);
    if (mutated != input && mutated.size() <= longest) return mutated;
  }
  return mutateBytes(input, longest);
}

}  // namespace camcfg::fuzz
