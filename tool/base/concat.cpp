#include "base/concat.h"

#include <charconv>

namespace camcfg::tool {

void TextPart::setSigned(std::int64_t value) noexcept {
  length_ = static_cast<std::size_t>(std::to_chars(digits_, digits_ + sizeof digits_, value).ptr -
                                     digits_);
}

void TextPart::setUnsigned(std::uint64_t value) noexcept {
  length_ = static_cast<std::size_t>(std::to_chars(digits_, digits_ + sizeof digits_, value).ptr -
                                     digits_);
}

void append(std::string& to, const TextPart* parts, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to += parts[i].view();
}

std::string concat(const TextPart* parts, std::size_t count) {
  std::string text;
  append(text, parts, count);
  return text;
}

}  // namespace camcfg::tool
