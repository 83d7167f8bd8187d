#include "commands/words.h"

#include <algorithm>

#include "base/decimal.h"
#include "device/language.h"
#include "media/stream_cache.h"
#include "network/network.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

Candidates plain(const std::vector<std::string>& words) {
  Candidates candidates;
  for (const std::string& word : words) candidates.push_back({word});
  return candidates;
}

// The keys of a section's entries, each with what says which one it is.
Candidates entryWords(const settings::Table& table) {
  Candidates candidates;
  for (const Json& entry : media::loadEntries(table)) {
    const Json& key = entry.at(table.key);
    const Json label = table.label == nullptr ? Json() : entry.at(table.label);
    candidates.push_back({key.is_string() ? key.text() : key.dump(),
                          label.is_string() ? label.text() : std::string()});
  }
  return candidates;
}

}  // namespace

Candidates sectionWords(const cli::Arguments& /*before*/) {
  return plain(parameters::Parameters().sections());
}

Candidates parameterWords(const cli::Arguments& before) {
  const parameters::Parameters parameters;
  Candidates candidates;
  for (const parameters::Parameter& parameter :
       before.given("SECTION") ? parameters.in(before.text("SECTION")) : parameters.all()) {
    const char* current = parameter.text("Cur");
    candidates.push_back({parameter.name, current == nullptr ? "" : current});
  }
  return candidates;
}

Candidates valueWords(const cli::Arguments& before) {
  if (before.given("FIELD"))
    return plain(settings::wordsOf(settings::requireCardSetting(before.text("FIELD"))));
  if (!before.given("SECTION") || !before.given("NAME")) return {};
  const parameters::Parameters parameters;
  return plain(parameters.require(before.text("SECTION"), before.text("NAME")).form().options());
}

Candidates cardWords(const cli::Arguments& /*before*/) {
  const network::Network network;
  Candidates candidates;
  for (tinyxml2::XMLElement* card : network.cards()) {
    const Json address = network::attributeOf(network::childOf(*card, "IpAddr"), "Cur");
    candidates.push_back({card->Value(), address.is_null() ? "" : address.get<std::string>()});
  }
  return candidates;
}

Candidates cardFieldWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const settings::Setting& setting : settings::cardSettings())
    candidates.push_back({settings::elementOf(setting), setting.help});
  return candidates;
}

Candidates presetWords(const cli::Arguments& before) {
  Candidates candidates = presetIdWords(before);
  const Candidates ids = candidates;
  for (const cli::Candidate& preset : ids) candidates.push_back({preset.help});
  return candidates;
}

Candidates presetIdWords(const cli::Arguments& /*before*/) {
  const presets::Presets presets;
  Candidates candidates;
  for (const presets::Preset& preset : presets.all())
    if (preset.id())
      candidates.push_back({std::to_string(*preset.id()), preset.description().value_or("")});
  return candidates;
}

Candidates sourceIdWords(const cli::Arguments& /*before*/) {
  return entryWords(settings::streamSources());
}

Candidates cacheIdWords(const cli::Arguments& /*before*/) {
  return entryWords(settings::streamCaches());
}

Candidates allowedSourceWords(const cli::Arguments& before) {
  Candidates candidates = sourceIdWords(before);
  const auto id = decimal(before.text("ID"));
  for (const media::CacheEntry& cache : media::readCaches()) {
    if (cache.id() != id) continue;
    const auto isForbidden = [&](const cli::Candidate& source) {
      return !cache.allows(static_cast<int>(*decimal(source.word)));
    };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isForbidden),
                     candidates.end());
  }
  return candidates;
}

Candidates mediaKindWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const settings::Table* table : settings::mediaTables()) candidates.push_back({table->word});
  return candidates;
}

Candidates mediaIdWords(const cli::Arguments& before) {
  for (const settings::Table* table : settings::mediaTables())
    if (before.text("KIND") == table->word) return entryWords(*table);
  return {};
}

Candidates languageWords(const cli::Arguments& /*before*/) {
  return plain(device::languages());
}

Candidates textKeyWords(const cli::Arguments& before) {
  return plain(device::keysOf(*device::requireTexts(before.text("LANGUAGE"))));
}

}  // namespace camcfg::tool::commands
