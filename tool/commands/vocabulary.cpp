#include "commands/vocabulary.h"

#include <cstring>

#include "device/words.h"
#include "exchange/exchange.h"

namespace camcfg::tool {
namespace {

// Sections of parameters, and what is exported by itself.
Candidates wholeSectionWords(const Arguments& before) {
  Candidates candidates = sectionWords(before);
  for (const std::string& name : exportNames()) candidates.push_back({name});
  return candidates;
}

struct Meaning {
  const char* name;  ///< of an argument
  Candidates (*words)(const Arguments& before);
};

constexpr Meaning kMeanings[] = {
    {"SECTION", sectionWords},   {"NAME", parameterWords},  {"VALUE", valueWords},
    {"CARD", cardWords},         {"FIELD", cardFieldWords}, {"PRESET", presetWords},
    {"KIND", mediaKindWords},    {"ID", mediaIdWords},      {"SOURCE", sourceIdWords},
    {"LANGUAGE", languageWords}, {"KEY", textKeyWords},     {"--section", wholeSectionWords}};

}  // namespace

void addWords(std::vector<CommandGroup>& groups) {
  for (CommandGroup& group : groups)
    for (Command& command : group.commands)
      for (Option& option : command.options)
        for (const Meaning& meaning : kMeanings)
          if (!option.words && option.kind != Option::Flag &&
              std::strcmp(option.name, meaning.name) == 0)
            option.words = meaning.words;
}

std::vector<Candidate> anyWord(const Arguments& /*before*/) {
  return {};
}

Words oneOf(std::vector<const char*> words) {
  return [words = std::move(words)](const Arguments& /*before*/) {
    Candidates candidates;
    for (const char* word : words) candidates.push_back({word});
    return candidates;
  };
}

}  // namespace camcfg::tool
