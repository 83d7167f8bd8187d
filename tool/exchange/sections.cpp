#include "exchange/section.h"

namespace camcfg::tool {
namespace {

constexpr std::size_t kFrame = 1024;

std::vector<Section> collected() {
  std::vector<Section> all;
  for (const auto& sections : {streamSections(), liveSections()})
    all.insert(all.end(), sections.begin(), sections.end());
  all.insert(all.end(), {parametersSection(), networkSection(), presetsSection()});
  return all;
}

}  // namespace

Step stepOf(const Change& change) {
  return {change.what, change.path, change.growth, [change] { makeChange(change); }};
}

const std::vector<Section>& allSections() {
  static const std::vector<Section> all = collected();
  return all;
}

const Json& Plan::of(const std::string& name) {
  const auto found = values_.find(name);
  if (found != values_.end()) return found->second;
  for (const Section& section : allSections())
    if (section.name == name) set(name, section.load());
  return values_[name];
}

// An element takes about twice what its members take in JSON.
std::size_t roomFor(const Json& value) {
  return kFrame + 2 * value.dump(-1, ' ', false, Json::error_handler_t::replace).size();
}

}  // namespace camcfg::tool
