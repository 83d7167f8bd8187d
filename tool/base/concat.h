#ifndef CAMCFG_TOOL_BASE_CONCAT_H
#define CAMCFG_TOOL_BASE_CONCAT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace camcfg::tool {

/// A part of a text, for as long as what it was made of: a text, a character or an integer.
class TextPart {
 public:
  // Inline: of a literal only its place and length are left. A null pointer is an empty text.
  explicit TextPart(const char* text) noexcept
      : text_(text == nullptr ? std::string_view() : std::string_view(text)) {}
  explicit TextPart(std::string_view text) noexcept : text_(text) {}
  explicit TextPart(const std::string& text) noexcept : text_(text) {}
  explicit TextPart(char character) noexcept : text_(digits_, 1) { digits_[0] = character; }
  template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
  explicit TextPart(Integer value) noexcept {
    static_assert(!std::is_same_v<Integer, bool>);
    if constexpr (std::is_signed_v<Integer>)
      setSigned(value);
    else
      setUnsigned(value);
  }
  TextPart(const TextPart&) = delete;
  TextPart& operator=(const TextPart&) = delete;
  ~TextPart() = default;

  std::string_view text() const noexcept { return text_; }

 private:
  void setSigned(std::int64_t value) noexcept;
  void setUnsigned(std::uint64_t value) noexcept;

  std::string_view text_;
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
