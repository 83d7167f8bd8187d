#include "device/state_contents.h"

#include <sha256.h>

#include <array>
#include <cerrno>
#include <cstdint>

namespace camcfg::tool::device {

std::string hashOf(const std::string& bytes) {
  std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
  SHA256Data(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), digits.data());
  return digits.data();
}

bool isHash(const std::string& text) {
  return text.size() == SHA256_DIGEST_STRING_LENGTH - 1 &&
         text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

bool keepContents(const StateFolder& state, const std::string& hash, const std::string& bytes) {
  const StateFolder folder = state.madeFolder(kContents);
  if (!folder) return false;
  // After a power cut there may be a file of this name without its bytes.
  const StateFile present = folder.read(hash, kMostBytes);
  if (present.isThere && present.fault.empty() && present.bytes == bytes) return true;
  if (folder.write("new", bytes) && folder.rename("new", folder, hash)) return true;
  const int error = errno;
  folder.remove("new");
  errno = error;
  return false;
}

std::optional<std::string> contentsOf(const StateFolder& state, const std::string& hash) {
  StateFile file = state.folder(kContents).read(hash, kMostBytes);
  if (!file.isThere || !file.fault.empty() || hashOf(file.bytes) != hash) return std::nullopt;
  return std::move(file.bytes);
}

}  // namespace camcfg::tool::device
