#include "base/secret_address.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

// Replaces what is between two places, unless that is nothing.
void cover(std::string& text, std::size_t begin, std::size_t end, std::string_view mask) {
  if (begin < end) text.replace(begin, end - begin, mask);
}

}  // namespace

std::string withMaskedAddress(const std::string& url, std::string_view mask, bool hasKey) {
  std::string masked = url;
  const std::size_t scheme = url.find("://");
  const std::size_t begin = scheme == std::string::npos ? 0 : scheme + 3;
  const std::size_t query = std::min(url.find('?', begin), url.size());
  const std::size_t path = std::min(url.find('/', begin), query);
  // Players take what follows a space for parameters, of which some are secret.
  const std::size_t key = std::min(url.find_first_of("/ ", path + 1), query);
  // From the end on, so that places stay where they are.
  cover(masked, query + 1, url.size(), mask);
  if (hasKey) cover(masked, key + 1, query, mask);
  const std::size_t at = url.substr(0, path).rfind('@');
  const std::size_t colon = url.find(':', begin);
  if (at != std::string::npos && at >= begin && colon < at) cover(masked, colon + 1, at, mask);
  return masked;
}

}  // namespace camcfg::tool
