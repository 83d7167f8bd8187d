#include "cli/raw_line.h"

#include <algorithm>
#include <string_view>

namespace camcfg::tool::cli {
namespace {

bool isFollowedByItsValue(const std::string& word, const std::vector<Option>& options) {
  return std::any_of(options.begin(), options.end(), [&](const Option& option) {
    return word == option.name && option.value() != nullptr;
  });
}

// The words of the tool, and the command that takes the others; null if there are none.
struct OwnWords {
  int count;
  const Command* command = nullptr;
};

OwnWords ownWords(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  const Command* command = nullptr;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (command != nullptr && word == "--") return {std::min(argc, i + 2), command};
    if (isFollowedByItsValue(word, globalOptions()) ||
        (command != nullptr && isFollowedByItsValue(word, command->options))) {
      ++i;
    } else if (word.size() < 2 || word[0] != '-') {
      if (command != nullptr) return {i + 1, command};
      command = findCommand(groups, word);
      if (command == nullptr || !(command->becomesProgram || command->takesCommand)) return {argc};
    }
  }
  return {argc};
}

}  // namespace

int wordsOfTheTool(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  return ownWords(groups, argc, argv).count;
}

std::string commandWordIn(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    std::string word = argv[i];
    if (word.empty() || word[0] != '-') return word;
    if (isFollowedByItsValue(word, globalOptions()))
      ++i;
    else if (word != kJson && word != kVerbose && word != "-v")
      break;
  }
  return "";
}

bool asksForJson(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  const OwnWords own = ownWords(groups, argc, argv);
  for (int i = 1; i < own.count && argv[i] != std::string_view("--"); ++i) {
    if (argv[i] == std::string_view(kJson)) return true;
    if (isFollowedByItsValue(argv[i], globalOptions())) ++i;
  }
  // The first word of the other command counts as one of the tool's.
  const int others = own.count - 2;
  return own.command != nullptr && own.command->takesCommand &&
         asksForJson(groups, argc - others, argv + others);
}

std::string colorIn(int argc, const char* const* argv) {
  const std::string given = std::string(kColor) + "=";
  std::string when = "auto";
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == kColor && i + 1 < argc) when = argv[i + 1];
    if (word.compare(0, given.size(), given) == 0) when = word.substr(given.size());
  }
  return when;
}

}  // namespace camcfg::tool::cli
