#ifndef CAMCFG_TOOL_BASE_CONCAT_H
#define CAMCFG_TOOL_BASE_CONCAT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/text_ref.h"

namespace camcfg::tool {

/// A part of a text, for as long as what it was made of: a text, a character or an integer.
class TextPart : public TextRef {
 public:
  explicit TextPart(const char* text) noexcept : TextRef(text) {}
  explicit TextPart(std::string_view text) noexcept : TextRef(text) {}
  explicit TextPart(const std::string& text) noexcept : TextRef(text) {}
  explicit TextPart(char character) noexcept : TextRef(std::string_view(digits_, 1)) {
    digits_[0] = character;
  }
  template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
  explicit TextPart(Integer value) noexcept : TextRef(digits_) {
    static_assert(!std::is_same_v<Integer, bool>);
    if constexpr (std::is_signed_v<Integer>)
      setSigned(value);
    else
      setUnsigned(value);
  }
  TextPart(const TextPart&) = delete;
  TextPart& operator=(const TextPart&) = delete;
  ~TextPart() = default;

 private:
  void setSigned(std::int64_t value) noexcept;
  void setUnsigned(std::uint64_t value) noexcept;

  char digits_[20];
};

/// Appends the parts one after another.
void append(std::string& to, const TextPart* parts, std::size_t count);

std::string concat(const TextPart* parts, std::size_t count);

/// The parts one after another. Unlike a chain of +, it makes one text and no others on the way.
template <typename... Parts>
[[gnu::always_inline]] inline std::string concat(const Parts&... parts) {
  const TextPart all[] = {TextPart(parts)...};
  return concat(all, sizeof...(parts));
}

}  // namespace camcfg::tool

#endif
