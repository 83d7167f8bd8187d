#include <algorithm>
#include <stdexcept>

#include "base/decimal.h"
#include "base/json_reader.h"

namespace camcfg::tool {
namespace {

// Each value is a letter for its kind, the number of its bytes, and these.
enum Kind : char { kText = 't', kScalar = 's', kArray = 'a', kObject = 'o' };

std::string framed(Kind kind, const std::string& bytes) {
  return std::string(1, kind) + std::to_string(bytes.size()) + ":" + bytes;
}

// What is in a frame, frame by frame.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  bool isAtEnd() const { return bytes_.empty(); }

  std::pair<char, std::string_view> next() {
    const std::size_t colon = std::min(bytes_.find(':'), bytes_.size());
    const auto size = decimal(bytes_.substr(std::min<std::size_t>(1, colon), colon - 1));
    if (colon == 0 || !size || bytes_.size() - colon <= static_cast<std::size_t>(*size))
      throw std::runtime_error("packed value cut short");
    const std::pair<char, std::string_view> frame = {
        bytes_.front(), bytes_.substr(colon + 1, static_cast<std::size_t>(*size))};
    bytes_.remove_prefix(colon + 1 + frame.second.size());
    return frame;
  }

 private:
  std::string_view bytes_;
};

Json unpackedFrom(Reader& frames) {
  const auto [kind, bytes] = frames.next();
  if (kind == kText) return std::string(bytes);
  if (kind == kScalar) return readJson(std::string(bytes)).value;
  Json value = kind == kArray ? Json::array() : Json::object();
  for (Reader inner(bytes); !inner.isAtEnd();)
    if (kind == kArray) {
      value.push_back(unpackedFrom(inner));
    } else if (kind == kObject) {
      const std::string_view name = inner.next().second;
      value[name] = unpackedFrom(inner);
    } else {
      throw std::runtime_error("packed value of an unknown kind");
    }
  return value;
}

}  // namespace

std::string packed(const Json& value) {
  if (value.is_string()) return framed(kText, value.text());
  if (!value.is_structured()) return framed(kScalar, value.dump());
  std::string bytes;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value.is_object()) bytes += framed(kText, value.names()[i]);
    bytes += packed(value.at(i));
  }
  return framed(value.is_array() ? kArray : kObject, bytes);
}

Json unpacked(const std::string& bytes) {
  Reader frames(bytes);
  return unpackedFrom(frames);
}

}  // namespace camcfg::tool
