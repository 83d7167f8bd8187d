#include "commands/groups.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/plain_text.h"
#include "device/files.h"
#include "document/section_names.h"
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

Candidates sectionWords(const Arguments& /*before*/) {
  return plain(parameters::Parameters().sections());
}

Candidates wholeSectionWords(const Arguments& /*before*/) {
  return plain(document::sectionNames());
}

Candidates parameterWords(const Arguments& before) {
  const parameters::Parameters parameters;
  const bool isGiven = before.given(kSection);
  return forEach(isGiven ? parameters.in(before.text(kSection)) : parameters.all(),
                 [](const parameters::Parameter& parameter) {
                   const char* current = parameter.text("Cur");
                   return cli::Candidate{parameter.name, current == nullptr ? "" : current};
                 });
}

// Sections, and the parameters of the one that is the last of the places given.
Candidates placeWords(const Arguments& before) {
  Candidates candidates = wholeSectionWords(before);
  if (!before.given(kPlace)) return candidates;
  const parameters::Parameters parameters;
  const std::string& last = before.texts(kPlace).back();
  if (isAmong(parameters.sections(), last))
    for (const parameters::Parameter& parameter : parameters.in(last))
      candidates.push_back({parameter.name});
  return candidates;
}

// "System/Rtsp="; or a section, then a name of it, then its values.
Candidates assignmentWords(const Arguments& before) {
  const std::vector<std::string>& words = before.texts(kAssignment);
  const parameters::Parameters parameters;
  if (!words.empty() && words.front().find('=') == std::string::npos) {
    if (words.size() == 2) return plain(parameters.require(words[0], words[1]).form().options());
    if (words.size() > 2 || !isAmong(parameters.sections(), words.front())) return {};
    return forEach(parameters.in(words.front()), [](const parameters::Parameter& parameter) {
      return cli::Candidate{parameter.name};
    });
  }
  Candidates candidates = words.empty() ? plain(parameters.sections()) : Candidates();
  for (const parameters::Parameter& parameter : parameters.all())
    candidates.push_back({parameter.path() + "="});
  return candidates;
}

Candidates cardWords(const Arguments& /*before*/) {
  const network::Network network;
  Candidates candidates;
  for (tinyxml2::XMLElement* card : network.cards()) {
    const Json address = network::attributeOf(network::childOf(*card, "IpAddr"), "Cur");
    candidates.push_back({card->Value(), address.is_null() ? "" : address.get<std::string>()});
  }
  return candidates;
}

Candidates cardFieldWords(const Arguments& /*before*/) {
  return forEach(settings::cardSettings(), [](const settings::Setting& setting) {
    return cli::Candidate{settings::elementOf(setting), setting.help};
  });
}

// Names of fields and "mode=dhcp"; or a name, then its values.
Candidates cardAssignmentWords(const Arguments& before) {
  const std::vector<std::string>& words = before.texts(kFieldValue);
  if (!words.empty() && words.front().find('=') == std::string::npos)
    return words.size() > 1 ? Candidates()
                            : plain(settings::wordsOf(settings::requireCardSetting(words.front())));
  Candidates candidates = words.empty() ? cardFieldWords(before) : Candidates();
  for (cli::Candidate& word : memberWords(settings::plainCardSettings()))
    candidates.push_back(std::move(word));
  return candidates;
}

Candidates presetWords(const Arguments& before) {
  Candidates candidates = presetIdWords(before);
  const Candidates ids = candidates;
  for (const cli::Candidate& preset : ids) candidates.push_back({preset.help});
  return candidates;
}

Candidates sourceIdWords(const Arguments& /*before*/) {
  return entryWords(settings::streamSources());
}

Candidates mediaKindWords(const Arguments& /*before*/) {
  return forEach(settings::mediaTables(),
                 [](const settings::Table* table) { return cli::Candidate{table->word}; });
}

Candidates mediaIdWords(const Arguments& before) {
  for (const settings::Table* table : settings::mediaTables())
    if (before.text(kKind) == table->word) return entryWords(*table);
  return {};
}

Candidates languageWords(const Arguments& /*before*/) {
  return plain(device::languages());
}

Candidates textKeyWords(const Arguments& before) {
  return plain(device::keysOf(*device::requireTexts(before.text(kLanguage))));
}

// What is in a place, by its name.
constexpr std::pair<std::string_view, Candidates (*)(const Arguments&)> kMeanings[] = {
    {kSection, sectionWords},   {kAssignment, assignmentWords},
    {kName, parameterWords},    {kFieldValue, cardAssignmentWords},
    {kCard, cardWords},         {kField, cardFieldWords},
    {kPreset, presetWords},     {kKind, mediaKindWords},
    {kId, mediaIdWords},        {kSource, sourceIdWords},
    {kLanguage, languageWords}, {kPlace, placeWords},
    {kKey, textKeyWords},       {kSectionOption, wholeSectionWords}};

}  // namespace

cli::WordFinder wordsFor(const std::string& name) {
  for (const auto& [meant, words] : kMeanings)
    if (name == meant) return words;
  return nullptr;
}

Candidates anyWord(const Arguments& /*before*/) {
  return {};
}

Candidates cardOrInterfaceWords(const Arguments& before) {
  Candidates candidates = cardWords(before);
  const network::Network network;
  for (tinyxml2::XMLElement* card : network.cards()) {
    const std::string interface = network::interfaceOf(*card);
    if (!interface.empty()) candidates.push_back({interface, card->Value()});
  }
  return candidates;
}

Candidates entryWords(const settings::Table& table) {
  return forEach(media::loadEntries(table), [&](const Json& entry) {
    const Json& key = entry.at(table.key);
    const Json label = table.label == nullptr ? Json() : entry.at(table.label);
    return cli::Candidate{key.is_string() ? key.text() : key.dump(),
                          label.is_string() ? label.text() : std::string()};
  });
}

Candidates presetIdWords(const Arguments& /*before*/) {
  const presets::Presets presets;
  Candidates candidates;
  for (const presets::Preset& preset : presets.all())
    if (preset.id())
      candidates.push_back({std::to_string(*preset.id()), preset.description().value_or("")});
  return candidates;
}

Candidates cacheIdWords(const Arguments& /*before*/) {
  return entryWords(settings::streamCaches());
}

Candidates allowedSourceWords(const Arguments& before) {
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

void addWords(std::vector<CommandGroup>& groups) {
  for (CommandGroup& group : groups)
    for (cli::Command& command : group.commands)
      for (Option& option : command.options)
        if (!option.words && option.kind != Option::Flag) option.words = wordsFor(option.name);
}

namespace {

// Where a command has the option for something else, it is for this as well.
void addForce(std::vector<CommandGroup>& groups) {
  for (CommandGroup& group : groups)
    for (cli::Command& command : group.commands) {
      const bool hasIt =
          std::any_of(command.options.begin(), command.options.end(),
                      [](const Option& option) { return option.name == std::string_view(kForce); });
      if (command.changesSettings && !hasIt)
        command.options.push_back({Option::Flag, kForce,
                                   "Make it although 'lint' finds an error in it; and confirm a "
                                   "change that is on trial first"});
    }
}

struct Group {
  const char* words;  ///< first ones of its commands, but not of one that carries out another
  CommandGroup (*make)();
};

constexpr Group kGroups[] = {{"summary", summaryGroup},
                             {"report", reportGroup},
                             {"status verify boot", filesGroup},
                             {"salvage", salvageGroup},
                             {"lint", lintGroup},
                             {"list get set describe", parametersGroup},
                             {"find", findGroup},
                             {"explain", explainGroup},
                             {"watch", watchGroup},
                             {"system", systemGroup},
                             {"network", networkGroup},
                             {"preset", presetGroup},
                             {"stream", streamGroup},
                             {"live", liveGroup},
                             {"graph", graphGroup},
                             {"export import diff reset", exchangeGroup},
                             {"schema", schemaGroup},
                             {"history undo", historyGroup},
                             {"confirm cancel", trialGroup},
                             {"upgrade", upgradeGroup},
                             {"lang", languageGroup},
                             {"run", runGroup},
                             {"help man", helpGroup},
                             {"complete", completeGroup}};

std::vector<CommandGroup> groupsOf(const Group* begin, const Group* end) {
  std::vector<CommandGroup> groups;
  groups.reserve(static_cast<std::size_t>(end - begin));
  std::transform(begin, end, std::back_inserter(groups),
                 [](const Group& group) { return group.make(); });
  addForce(groups);
  addReviews(groups);
  addWords(groups);
  addExamples(groups);
  return groups;
}

}  // namespace

std::vector<CommandGroup> allGroups() {
  return groupsOf(std::begin(kGroups), std::end(kGroups));
}

std::vector<CommandGroup> groupsFor(const std::string& word) {
  const auto* group = std::find_if(std::begin(kGroups), std::end(kGroups), [&](const Group& each) {
    return isAmong(wordsIn(each.words), word);
  });
  return group == std::end(kGroups) ? allGroups() : groupsOf(group, group + 1);
}

}  // namespace camcfg::tool::commands
