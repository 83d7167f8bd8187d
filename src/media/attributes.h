#ifndef CAMCFG_MEDIA_ATTRIBUTES_H
#define CAMCFG_MEDIA_ATTRIBUTES_H

#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace camcfg {

/// The attributes of an element that its reader knows, sought all at once; of several of one name the
/// first. That is quickest when they come in the order in which the reader names them, so this is
/// the order in which they are written.
class Attributes {
 public:
  /// @param names  table of the names; an attribute is asked for by its place in it
  template <std::size_t Count, std::size_t Width>
  Attributes(const tinyxml2::XMLElement& element, const char (&names)[Count][Width])
      : names_(names[0]), width_(Width) {
    static_assert(Count <= kMost);
    find(element, Count);
  }

  const char* name(std::size_t place) const { return names_ + place * width_; }
  /// Null when it is absent.
  const char* text(std::size_t place) const;

  // Each leaves the value as it is when the attribute is absent, or holds no integer.

  void readInt(std::size_t place, std::int32_t& value) const;
  void readText(std::size_t place, std::string& value) const {
    const char* read = text(place);
    if (read != nullptr) value = read;
  }
  /// 1 for the word "true", in upper or lower case, else 0.
  void readSwitch(std::size_t place, std::int32_t& value) const;

 private:
  static constexpr std::size_t kMost = 10;

  void find(const tinyxml2::XMLElement& element, std::size_t count);

  const char* names_;
  std::size_t width_;
  const tinyxml2::XMLAttribute* found_[kMost];
};

}  // namespace camcfg

#endif
