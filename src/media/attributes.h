#ifndef CAMCFG_MEDIA_ATTRIBUTES_H
#define CAMCFG_MEDIA_ATTRIBUTES_H

#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace camcfg {

/// An attribute, or its absence, under the name that it was sought by.
class Attribute {
 public:
  Attribute(const tinyxml2::XMLAttribute* found, const char* name) : found_(found), name_(name) {}

  const char* name() const { return name_; }
  /// Null when it is absent.
  const char* text() const { return found_ == nullptr ? nullptr : found_->Value(); }

  // Each leaves the value as it is when the attribute is absent, or holds no integer.

  void readInt(std::int32_t& value) const;
  void readText(std::string& value) const;
  /// 1 for the word "true", in upper or lower case, else 0.
  void readSwitch(std::int32_t& value) const;

 private:
  const tinyxml2::XMLAttribute* found_;
  const char* name_;
};

/// Finds the attributes of some names, of each name the first. It is quickest when they come in
/// the order of the names.
/// @param names  `count` texts, each in `width` bytes
/// @param found  receives an attribute, or null, for each name
void findAttributes(const tinyxml2::XMLElement& element, const char* names, std::size_t width,
                    std::size_t count, const tinyxml2::XMLAttribute** found);

/// The attributes of one element that its reader knows, sought all at once.
/// @tparam kNames  table of their names
template <const auto& kNames>
class Attributes {
 public:
  explicit Attributes(const tinyxml2::XMLElement& element) {
    findAttributes(element, kNames[0], sizeof kNames[0], kCount, found_);
  }

  /// The one whose name has this place in the table.
  Attribute operator[](std::size_t place) const { return {found_[place], kNames[place]}; }

 private:
  static constexpr std::size_t kCount = sizeof kNames / sizeof kNames[0];

  const tinyxml2::XMLAttribute* found_[kCount];
};

}  // namespace camcfg

#endif
