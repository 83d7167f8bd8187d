#include "device/section.h"

namespace camcfg::tool::device {
namespace {

constexpr std::size_t kFrame = 1024;

}  // namespace

Step stepOf(const Change& change) {
  return {change.what, change.path, change.growth, [change] { makeChange(change); }};
}

const Json& Plan::of(const std::string& name) {
  const auto found = values_.find(name);
  if (found != values_.end()) return found->second;
  for (const Section& section : sections_)
    if (section.name == name) set(name, section.load());
  return values_[name];
}

// An element takes about twice what its members take in JSON.
std::size_t roomFor(const Json& value) {
  return kFrame + 2 * value.dump().size();
}

}  // namespace camcfg::tool::device
