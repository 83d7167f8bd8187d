#include "base/utf8.h"

namespace camcfg::tool::utf8 {
namespace {

// How many bytes begin with a byte; 0 if no character does.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xc2) return 0;
  if (lead < 0xe0) return 2;
  if (lead < 0xf0) return 3;
  return lead < 0xf5 ? 4 : 0;
}

// Neither longer than needed, nor half of a pair, nor beyond U+10FFFF.
bool isSecond(unsigned char lead, unsigned char second) {
  if (lead == 0xe0) return second >= 0xa0;
  if (lead == 0xed) return second < 0xa0;
  if (lead == 0xf0) return second >= 0x90;
  return lead != 0xf4 || second < 0x90;
}

}  // namespace

Sequence sequenceAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lengthFrom(lead);
  if (length == 0) return {1, false};
  for (std::size_t i = 1; i < length; ++i) {
    const bool ends = at + i >= text.size() || !continues(text[at + i]);
    if (ends || (i == 1 && !isSecond(lead, static_cast<unsigned char>(text[at + 1]))))
      return {i, false};
  }
  return {length, true};
}

std::string repaired(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Sequence sequence = sequenceAt(text, at);
    result += sequence.isValid ? text.substr(at, sequence.length) : kReplacement;
    at += sequence.length;
  }
  return result;
}

}  // namespace camcfg::tool::utf8
