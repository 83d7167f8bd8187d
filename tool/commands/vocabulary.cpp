#include "commands/vocabulary.h"

#include <cstring>

#include "commands/options.h"
#include "commands/words.h"
#include "document/exchange.h"

namespace camcfg::tool::commands {
namespace {

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

std::vector<cli::Candidate> anyWord(const cli::Arguments& /*before*/) {
  return {};
}

cli::WordFinder oneOf(std::vector<const char*> words) {
  return [words = std::move(words)](const cli::Arguments& /*before*/) {
    Candidates candidates;
    for (const char* word : words) candidates.push_back({word});
    return candidates;
  };
}

}  // namespace camcfg::tool::commands
