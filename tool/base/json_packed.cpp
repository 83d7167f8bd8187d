#include "base/json_packed.h"

#include <cstring>
#include <stdexcept>

namespace camcfg::tool {
namespace {

enum class Tag : char { Null, False, True, Integer, Unsigned, Real, Text, Array, Object };

template <typename Number>
void addNumber(Number number, std::string& bytes) {
  char raw[sizeof number];
  std::memcpy(raw, &number, sizeof number);
  bytes.append(raw, sizeof number);
}

void addText(const std::string& text, std::string& bytes) {
  addNumber(text.size(), bytes);
  bytes += text;
}

template <typename Number>
void add(Tag tag, Number number, std::string& bytes) {
  bytes += static_cast<char>(tag);
  addNumber(number, bytes);
}

void add(const Json& value, std::string& bytes) {
  if (value.is_null()) {
    bytes += static_cast<char>(Tag::Null);
  } else if (value.is_boolean()) {
    bytes += static_cast<char>(value.get<bool>() ? Tag::True : Tag::False);
  } else if (value.is_unsigned()) {
    add(Tag::Unsigned, value.get<std::uint64_t>(), bytes);
  } else if (value.is_number_integer()) {
    add(Tag::Integer, value.get<std::int64_t>(), bytes);
  } else if (value.is_number()) {
    add(Tag::Real, value.get<double>(), bytes);
  } else if (value.is_string()) {
    bytes += static_cast<char>(Tag::Text);
    addText(value.text(), bytes);
  } else {
    add(value.is_array() ? Tag::Array : Tag::Object, value.size(), bytes);
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (value.is_object()) addText(value.names()[i], bytes);
      add(value.at(i), bytes);
    }
  }
}

class Reader {
 public:
  explicit Reader(const std::string& bytes) : bytes_(bytes) {}

  Json value() {
    switch (static_cast<Tag>(*take(1))) {
      case Tag::Null:
        return {};
      case Tag::False:
        return false;
      case Tag::True:
        return true;
      case Tag::Integer:
        return number<std::int64_t>();
      case Tag::Unsigned:
        return number<std::uint64_t>();
      case Tag::Real:
        return number<double>();
      case Tag::Text:
        return text();
      case Tag::Array:
        return array();
      case Tag::Object:
        return object();
    }
    throw std::runtime_error("packed value of an unknown kind");
  }

 private:
  const char* take(std::size_t count) {
    if (bytes_.size() - at_ < count) throw std::runtime_error("packed value cut short");
    const char* taken = bytes_.data() + at_;
    at_ += count;
    return taken;
  }

  template <typename Number>
  Number number() {
    Number number{};
    std::memcpy(&number, take(sizeof number), sizeof number);
    return number;
  }

  std::string text() {
    const auto size = number<std::size_t>();
    return {take(size), size};
  }

  Json array() {
    Json result = Json::array();
    for (auto count = number<std::size_t>(); count > 0; --count) result.push_back(value());
    return result;
  }

  Json object() {
    Json result = Json::object();
    for (auto count = number<std::size_t>(); count > 0; --count) {
      const std::string name = text();
      result[name] = value();
    }
    return result;
  }

  const std::string& bytes_;
  std::size_t at_ = 0;
};

}  // namespace

std::string packed(const Json& value) {
  std::string bytes;
  add(value, bytes);
  return bytes;
}

Json unpacked(const std::string& bytes) {
  return Reader(bytes).value();
}

}  // namespace camcfg::tool
