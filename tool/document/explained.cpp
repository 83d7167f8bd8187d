#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/exchange.h"
#include "document/placed.h"
#include "document/single.h"
#include "network/network.h"
#include "presets/preset.h"
#include "settings/network.h"

namespace camcfg::tool::document {
namespace {

// "1" of "live.srt[1].port"
std::string keyIn(const std::string& place, const device::Section& section) {
  const std::size_t begin = section.name.size() + 1;
  const std::size_t end = place.find("].", begin);
  return place.substr(begin, end == std::string::npos ? end : end - begin);
}

device::Explanation explainInNetwork(const std::string& place) {
  const std::string cards = concat(kNetwork, ".", kCards, ".");
  const std::size_t end = place.rfind('.');
  const settings::Setting* setting =
      settings::settingOf(settings::cardSettings(), place.substr(end + 1));
  if (!beginsWith(place, cards) || end < cards.size() || setting == nullptr)
    throw Refusal("there is no field of a card " + quoted(place));
  return network::explainCard(place.substr(cards.size(), end - cards.size()),
                              settings::elementOf(*setting));
}

}  // namespace

device::Explanation explainSingle(const std::string& place, bool showSecrets) {
  const device::Section& section = requireSection(place);
  if (section.name == kNetwork) return explainInNetwork(place);
  if (section.name == kPresets) return presets::explainPreset(keyIn(place, section));
  return explainSession(section.table->word, keyIn(place, section), showSecrets);
}

}  // namespace camcfg::tool::document
