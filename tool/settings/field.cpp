#include "settings/field.h"

#include <cstring>

namespace camcfg::tool::settings {

std::string Field::text(const void* record) const {
  if (storage == Storage::Text) return *static_cast<const std::string*>(in(record));
  const auto* characters = static_cast<const char*>(in(record));
  return {characters, strnlen(characters, room)};
}

bool Field::setText(void* record, const std::string& text) const {
  if (storage == Storage::Text) {
    *static_cast<std::string*>(at(record)) = text;
    return true;
  }
  if (text.size() >= room || text.find('\0') != std::string::npos) return false;
  auto* characters = static_cast<char*>(at(record));
  std::memset(characters, 0, room);
  std::memcpy(characters, text.data(), text.size());
  return true;
}

}  // namespace camcfg::tool::settings
