#include "frame/printable.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

std::string escaped(unsigned char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  if (c == '\n') return "\\n";
  if (c == '\t') return "\\t";
  return {'\\', 'x', kDigits[c >> 4], kDigits[c & 15]};
}

}  // namespace

std::string printable(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f)
      shown += escaped(byte);
    else
      shown += c;
  }
  return shown;
}

std::size_t characters(const std::string& text) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; };
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

}  // namespace camcfg::tool
