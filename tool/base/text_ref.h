#ifndef CAMCFG_TOOL_BASE_TEXT_REF_H
#define CAMCFG_TOOL_BASE_TEXT_REF_H

#include <cstddef>
#include <string>
#include <string_view>

namespace camcfg::tool {

/// A text as an argument, for the length of a call. Unlike a std::string_view it leaves it to the
/// callee to measure a literal, so that a call takes an address and no more: names are written in
/// thousands of places.
class TextRef {
 public:
  // Implicit, so that names can be written as they are.
  TextRef(const char* text) noexcept  // NOLINT(google-explicit-constructor)
      : text_(text), length_(kUnknown) {}
  TextRef(std::string_view text) noexcept  // NOLINT(google-explicit-constructor)
      : text_(text.data()), length_(text.size()) {}
  TextRef(const std::string& text) noexcept  // NOLINT(google-explicit-constructor)
      : text_(text.data()), length_(text.size()) {}

  std::string_view view() const noexcept {
    return length_ == kUnknown ? std::string_view(text_) : std::string_view(text_, length_);
  }

 protected:
  static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

  const char* text_;
  std::size_t length_;
};

}  // namespace camcfg::tool

#endif
