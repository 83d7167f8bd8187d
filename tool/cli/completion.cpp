#include "cli/completion.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool::cli {
namespace {

// Reads a command line word by word, as far as it goes.
class Reading {
 public:
  // Words are found alike for several commands: a finder may ask for what any of them takes.
  explicit Reading(const std::vector<CommandGroup>& groups) : groups_(groups) {
    for (const Command* command : commandsIn(groups))
      for (const Option& option : command->options) before_[option.name];
    for (const Option& option : globalOptions()) before_[option.name];
  }

  void take(const std::string& word) {
    if (!awaited_.empty())
      give(std::exchange(awaited_, ""), word);
    else if (takesCommand_ && (word == "--" || !isOption(word)))
      takeInner(word);
    else if (word == "--" && !onlyArguments_)
      onlyArguments_ = true;
    else if (isOption(word))
      takeOption(word);
    else if (const Command* below =
                 findCommand(groups_, above_.empty() ? word : concat(above_, " ", word)))
      enter(*below);
    else
      takeArgument(word);
  }

  CompletionPlace placeOf(const std::string& word) && {
    CompletionPlace place;
    place.root = root_;
    place.before = std::move(before_);
    const std::size_t equals = word.find('=');
    if (!awaited_.empty()) {
      addValuesOf(awaited_, place);
    } else if (isOption(word) && equals != std::string::npos) {
      place.prefix = word.substr(0, equals + 1);
      addValuesOf(word.substr(0, equals), place);
    } else if (word[0] == '-' && !onlyArguments_) {
      addOptions(place);
    } else {
      addArguments(place);
    }
    return place;
  }

 private:
  // A number is an argument, negative or not.
  bool isOption(const std::string& word) const {
    return !onlyArguments_ && word.size() > 1 && word[0] == '-' && !decimal(word);
  }

  // From here on the line is that of the command that the first one carries out.
  void takeInner(const std::string& word) {
    takesCommand_ = false;
    isInner_ = true;
    above_.clear();
    options_.clear();
    arguments_.clear();
    if (word != "--") take(word);
  }

  void enter(const Command& command) {
    above_ = command.name;
    takesCommand_ = command.takesCommand;
    hasArgument_ = false;
    arguments_.clear();
    for (const Option& option : command.options)
      (option.isNamed() ? options_ : arguments_).push_back(&option);
  }

  void takeArgument(const std::string& word) {
    if (arguments_.empty()) return;
    const Option& argument = *arguments_.front();
    hasArgument_ = true;
    give(argument.name, word);
    if (!argument.takesMany()) arguments_.erase(arguments_.begin());
  }

  void takeOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    if (equals != std::string::npos)
      give(name, word.substr(equals + 1));
    else if (const Option* option = find(name); option != nullptr && option->value() != nullptr)
      awaited_ = name;
    else
      give(name, "");
  }

  void give(const std::string& name, const std::string& word) {
    before_[name].texts.push_back(word);
    if (name == kRoot) root_ = word;
  }

  const Option* find(const std::string& name) const {
    for (const Option* option : options_)
      if (name == option->name) return option;
    for (const Option& option : globalOptions())
      if (name == option.name) return &option;
    return nullptr;
  }

  static void addWordsOf(const Option& option, CompletionPlace& place) {
    place.words = option.words;
    if (option.isDirectory()) place.kind = CompletionPlace::OfDirectories;
    if (option.isHostFile()) place.kind = CompletionPlace::OfFiles;
  }

  void addValuesOf(const std::string& name, CompletionPlace& place) const {
    const Option* option = find(name);
    if (option == nullptr) return;
    addWordsOf(*option, place);
    // The device is not asked for these.
    if (name == kColor) place.fixed = std::exchange(place.words, nullptr)(before_);
  }

  void addOptions(CompletionPlace& place) const {
    const auto offer = [&](const Option& option) {
      if (!place.before.given(option.name)) place.fixed.push_back({option.name, option.help});
    };
    const auto asksForText = [](const Option& option) {
      return option.name == std::string_view(kHelp) || option.name == std::string_view(kVersion);
    };
    for (const Option* option : options_) offer(*option);
    for (const bool last : {false, true})
      for (const Option& option : globalOptions())
        if (asksForText(option) == last) offer(option);
  }

  void addArguments(CompletionPlace& place) {
    if (takesCommand_) takeInner("--");
    if (!arguments_.empty()) addWordsOf(*arguments_.front(), place);
    addCommands(place);
  }

  // Those directly below the one that was named: those that are given what it takes come after that,
  // the others in its place.
  void addCommands(CompletionPlace& place) const {
    const bool lacksArgument = !arguments_.empty() && arguments_.front()->isRequired();
    for (const Command* command : commandsIn(groups_))
      if (!command->hidden && command->above() == above_ &&
          (command->standsAlone ? !hasArgument_ : !lacksArgument) &&
          (!isInner_ || command->changesSettings || !command->run))
        place.fixed.push_back({command->word(), command->help});
  }

  const std::vector<CommandGroup>& groups_;
  std::string above_;                     // the command that was named
  std::vector<const Option*> options_;    // of that command and those above it
  std::vector<const Option*> arguments_;  // of that command, those that are still to come
  std::string awaited_;                   // option whose value comes next
  bool hasArgument_ = false;              // that command was given one
  bool onlyArguments_ = false;
  bool takesCommand_ = false;
  bool isInner_ = false;  // only what can be carried out by another command may be there
  Arguments before_;
  std::optional<std::string> root_;
};

bool isOneOf(char c, const char* characters) {
  return c != '\0' && std::strchr(characters, c) != nullptr;
}

bool isPlain(char c) {
  return static_cast<unsigned char>(c) >= 0x80 ||
         std::isalnum(static_cast<unsigned char>(c)) != 0 || isOneOf(c, "_./,:=@%+-");
}

}  // namespace

std::vector<Candidate> CompletionPlace::candidates() const {
  std::vector<Candidate> all = fixed;
  if (words) {
    const std::vector<Candidate> found = words(before);
    all.insert(all.end(), found.begin(), found.end());
  }
  const auto cannotBeTyped = [](const Candidate& candidate) {
    return candidate.word.empty() || printable(candidate.word) != candidate.word;
  };
  all.erase(std::remove_if(all.begin(), all.end(), cannotBeTyped), all.end());
  for (Candidate& candidate : all) candidate.word.insert(0, prefix);
  return all;
}

CompletionPlace placeIn(const std::vector<CommandGroup>& groups,
                        const std::vector<std::string>& words) {
  Reading reading(groups);
  for (std::size_t i = 0; i + 1 < words.size(); ++i) reading.take(words[i]);
  return std::move(reading).placeOf(words.empty() ? "" : words.back());
}

ShellLine readShellLine(const std::string& line, const std::string& breaks) {
  ShellLine read;
  std::string word;
  std::string beforeQuote;
  bool isBegun = false;
  bool isEscaped = false;
  for (const char c : line) {
    const bool isBreak = read.quote == 0 && !isEscaped && isOneOf(c, " \t\n");
    if (isBreak) {
      if (isBegun) read.words.push_back(word);
      word.clear();
      read.kept.clear();
    } else if (isEscaped) {
      // Between double quotes, a backslash is taken for itself before most characters.
      if (read.quote == '"' && !isOneOf(c, "$`\"\\")) word += '\\';
      word += c;
    } else if (c == '\\' && read.quote != '\'') {
      isEscaped = true;
      continue;
    } else if (c == read.quote) {
      read.quote = 0;
    } else if (read.quote == 0 && isOneOf(c, "'\"")) {
      read.quote = c;
      beforeQuote = word;
    } else {
      word += c;
      if (read.quote == 0 && breaks.find(c) != std::string::npos) read.kept = word;
    }
    isBegun = !isBreak;
    isEscaped = false;
  }
  if (read.quote != 0) read.kept = beforeQuote;
  read.words.push_back(word);
  return read;
}

std::string shellQuoted(const std::string& text, char quote) {
  std::string result;
  for (const char c : text) {
    if (quote == '\'' && c == '\'')
      result += "'\\'";
    else if (quote == '"' ? isOneOf(c, "$`\"\\") : quote == 0 && !isPlain(c))
      result += '\\';
    result += c;
  }
  return result;
}

}  // namespace camcfg::tool::cli
