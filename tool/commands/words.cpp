#include "commands/words.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/decimal.h"
#include "commands/options.h"
#include "device/files.h"
#include "document/exchange.h"
#include "media/stream_cache.h"
#include "network/network.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

template <typename Range, typename Make>
Candidates forEach(const Range& range, Make make) {
  Candidates candidates;
  for (const auto& element : range) candidates.push_back(make(element));
  return candidates;
}

template <typename Range>
Candidates plain(const Range& words) {
  return forEach(words, [](const auto& word) { return cli::Candidate{word}; });
}

// The keys of a section's entries, each with what says which one it is.
Candidates entryWords(const settings::Table& table) {
  return forEach(media::loadEntries(table), [&](const Json& entry) {
    const Json& key = entry.at(table.key);
    const Json label = table.label == nullptr ? Json() : entry.at(table.label);
    return cli::Candidate{key.is_string() ? key.text() : key.dump(),
                          label.is_string() ? label.text() : std::string()};
  });
}

// Sections of parameters, and what is exported by itself.
Candidates wholeSectionWords(const cli::Arguments& before) {
  Candidates candidates = sectionWords(before);
  for (const std::string& name : document::exportNames()) candidates.push_back({name});
  return candidates;
}

struct Meaning {
  const char* name;  ///< of an argument
  Candidates (*words)(const cli::Arguments& before);
};
constexpr Meaning kMeanings[] = {
    {kSection, sectionWords},   {kName, parameterWords},  {kValue, valueWords},
    {kCard, cardWords},         {kField, cardFieldWords}, {kPreset, presetWords},
    {kKind, mediaKindWords},    {kId, mediaIdWords},      {kSource, sourceIdWords},
    {kLanguage, languageWords}, {kKey, textKeyWords},     {kSectionOption, wholeSectionWords}};

}  // namespace

void addWords(std::vector<cli::CommandGroup>& groups) {
  for (cli::CommandGroup& group : groups)
    for (cli::Command& command : group.commands)
      for (cli::Option& option : command.options)
        for (const Meaning& meaning : kMeanings)
          if (!option.words && option.kind != cli::Option::Flag &&
              std::strcmp(option.name, meaning.name) == 0)
            option.words = meaning.words;
}

Candidates anyWord(const cli::Arguments& /*before*/) {
  return {};
}

cli::WordFinder oneOf(std::vector<const char*> words) {
  return [words = std::move(words)](const cli::Arguments& /*before*/) { return plain(words); };
}

Candidates sectionWords(const cli::Arguments& /*before*/) {
  return plain(parameters::Parameters().sections());
}

Candidates parameterWords(const cli::Arguments& before) {
  const parameters::Parameters parameters;
  Candidates candidates;
  for (const parameters::Parameter& parameter :
       before.given(kSection) ? parameters.in(before.text(kSection)) : parameters.all()) {
    const char* current = parameter.text("Cur");
    candidates.push_back({parameter.name, current == nullptr ? "" : current});
  }
  return candidates;
}

Candidates valueWords(const cli::Arguments& before) {
  if (before.given(kField))
    return plain(settings::wordsOf(settings::requireCardSetting(before.text(kField))));
  if (!before.given(kSection) || !before.given(kName)) return {};
  const parameters::Parameters parameters;
  return plain(parameters.require(before.text(kSection), before.text(kName)).form().options());
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
  const auto id = decimal(before.text(kId));
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
  return forEach(settings::mediaTables(),
                 [](const settings::Table* table) { return cli::Candidate{table->word}; });
}

Candidates mediaIdWords(const cli::Arguments& before) {
  for (const settings::Table* table : settings::mediaTables())
    if (before.text(kKind) == table->word) return entryWords(*table);
  return {};
}

Candidates languageWords(const cli::Arguments& /*before*/) {
  return plain(device::languages());
}

Candidates textKeyWords(const cli::Arguments& before) {
  return plain(device::keysOf(*device::requireTexts(before.text(kLanguage))));
}

}  // namespace camcfg::tool::commands
