#include "base/json_bytes.h"

#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

constexpr char kBytes[] = "$bytes";

std::string hexOf(const std::string& bytes) {
  std::string hex;
  for (const char c : bytes) hex += hexadecimal(static_cast<unsigned char>(c));
  return hex;
}

// @return why there are none
std::string readBytes(const Json& object, std::string& bytes) {
  const Json& hex = object.at(kBytes);
  if (object.size() != 1) return "$bytes must be its only member";
  const bool isHex = hex.is_string() && hex.text().size() % 2 == 0 &&
                     hex.text().find_first_not_of(kHexDigits) == std::string::npos;
  if (!isHex) return "$bytes must be two digits for each byte, 0 to 9 and a to f";
  for (std::size_t i = 0; i < hex.text().size(); i += 2)
    bytes +=
        static_cast<char>(kHexDigits.find(hex.text()[i]) * 16 + kHexDigits.find(hex.text()[i + 1]));
  if (bytes.find('\0') != std::string::npos) return "$bytes has a zero byte, which ends a text";
  return asUtf8(bytes) == bytes ? "$bytes is UTF-8; give a text" : "";
}

}  // namespace

Json withBytes(const Json& value) {
  if (value.is_string() && asUtf8(value.text()) != value.text())
    return {{kBytes, hexOf(value.text())}};
  Json result = value;
  for (Json& inner : result) inner = withBytes(inner);
  return result;
}

Json withTexts(
    const Json& value, const std::string& place,
    const std::function<void(const std::string& place, const std::string& why)>& refuse) {
  if (value.contains(kBytes)) {
    std::string bytes;
    const std::string why = readBytes(value, bytes);
    if (!why.empty()) refuse(place, why);
    return bytes;
  }
  Json result = value;
  for (std::size_t i = 0; i < value.size(); ++i) {
    Json& inner = *(result.begin() + static_cast<std::ptrdiff_t>(i));
    inner = withTexts(
        inner, value.is_array() ? elementPlace(place, i) : memberPlace(place, value.names()[i]),
        refuse);
  }
  return result;
}

}  // namespace camcfg::tool
