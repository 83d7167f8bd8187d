#include "cli/raw_line.h"

#include <algorithm>
#include <string_view>

namespace camcfg::tool::cli {
namespace {

bool isFollowedByItsValue(const std::string& word) {
  const std::vector<Option>& options = globalOptions();
  return std::any_of(options.begin(), options.end(), [&](const Option& option) {
    return word == option.name && option.value() != nullptr;
  });
}

}  // namespace

int wordsOfTheTool(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  const Command* command = nullptr;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (command != nullptr && word == "--") return std::min(argc, i + 2);
    if (isFollowedByItsValue(word)) {
      ++i;
    } else if (word.size() < 2 || word[0] != '-') {
      if (command != nullptr) return i + 1;
      command = findCommand(groups, word);
      if (command == nullptr || !command->becomesProgram) return argc;
    }
  }
  return argc;
}

bool asksForJson(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  const int own = wordsOfTheTool(groups, argc, argv);
  for (int i = 1; i < own && argv[i] != std::string_view("--"); ++i) {
    if (argv[i] == std::string_view(kJson)) return true;
    if (isFollowedByItsValue(argv[i])) ++i;
  }
  return false;
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
