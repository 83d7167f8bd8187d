#include "commands/vocabulary.h"

#include <cstring>

#include "device/words.h"

namespace camcfg::tool {
namespace {

struct Meaning {
  const char* name;  ///< of an argument
  Candidates (*words)(const Arguments& before);
};

constexpr Meaning kMeanings[] = {
    {"SECTION", sectionWords}, {"NAME", parameterWords},     {"VALUE", valueWords},
    {"CARD", cardWords},       {"FIELD", cardFieldWords},    {"PRESET", presetWords},
    {"CACHE", cacheIdWords},   {"SOURCE", sourceIdWords},    {"LANGUAGE", languageWords},
    {"KEY", textKeyWords},     {"--section", sectionWords},  {"--card", cardWords},
    {"--preset", presetWords}, {"--language", languageWords}};

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
