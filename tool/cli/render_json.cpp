#include "cli/render.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kDelete = '\x7f';
constexpr char kLead = '\xc2';  // in front of U+0080 to U+00bf in UTF-8

// Whether U+0080 to U+009f stands there, which some terminals take for the beginning of a command.
bool isControl(const std::string& text, std::size_t at) {
  return text[at] == kLead && at + 1 < text.size() && (text[at + 1] & 0x60) == 0;
}

std::string escaped(unsigned char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {'\\', 'u', '0', '0', kDigits[c >> 4], kDigits[c & 15]};
}

}  // namespace

std::string renderJson(const Answer& answer) {
  const std::string text = answer.value.dump(2);
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isControl(text, at))
      result += escaped(static_cast<unsigned char>(text[++at]));
    else if (text[at] == kDelete)
      result += escaped(static_cast<unsigned char>(kDelete));
    else
      result += text[at];
  }
  return result + "\n";
}

}  // namespace camcfg::tool::cli
