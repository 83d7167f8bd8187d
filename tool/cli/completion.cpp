#include "cli/completion.h"

#include <algorithm>
#include <utility>

#include "base/decimal.h"
#include "base/printable.h"
#include "cli/global_options.h"

namespace camcfg::tool::cli {
namespace {

// Reads a command line word by word, as far as it goes.
class Reading {
 public:
  // Words are found alike for several commands: a finder may ask for what any of them takes.
  explicit Reading(const std::vector<CommandGroup>& groups) : groups_(groups) {
    for (const Command* command : commandsIn(groups))
      for (const Option& option : command->options) before_.declare(option.name);
    for (const GlobalOption& option : globalOptions()) before_.declare(option.name);
  }

  void take(const std::string& word) {
    if (!awaited_.empty())
      give(std::exchange(awaited_, ""), word);
    else if (word == "--" && !onlyArguments_)
      onlyArguments_ = true;
    else if (isOption(word))
      takeOption(word);
    else if (const Command* below =
                 findCommand(groups_, above_.empty() ? word : above_ + " " + word))
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

  void enter(const Command& command) {
    above_ = command.name;
    arguments_.clear();
    for (const Option& option : command.options)
      (option.isNamed() ? options_ : arguments_).push_back(&option);
  }

  void takeArgument(const std::string& word) {
    if (arguments_.empty()) return;
    const Option& argument = *arguments_.front();
    give(argument.name, word);
    if (!argument.takesMany()) arguments_.erase(arguments_.begin());
  }

  void takeOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    if (equals != std::string::npos)
      give(name, word.substr(equals + 1));
    else if (takesValue(name))
      awaited_ = name;
    else
      give(name, "");
  }

  void give(const std::string& name, const std::string& word) {
    before_.declare(name);
    std::vector<std::string> texts = before_.texts(name);
    texts.push_back(word);
    before_.add(name, texts);
    if (name == kRoot) root_ = word;
  }

  const Option* option(const std::string& name) const {
    for (const Option* option : options_)
      if (name == option->name) return option;
    return nullptr;
  }

  bool takesValue(const std::string& name) const {
    if (const Option* found = option(name)) return found->value() != nullptr;
    const GlobalOption* found = findGlobalOption(name);
    return found != nullptr && found->value != nullptr;
  }

  static void addWordsOf(const Option& option, CompletionPlace& place) {
    place.words = option.words;
    if (option.kind == Option::HostDirectory) place.kind = CompletionPlace::OfDirectories;
    if (option.kind == Option::HostFile || option.kind == Option::OptionalHostFile ||
        option.kind == Option::HostFiles)
      place.kind = CompletionPlace::OfFiles;
  }

  void addValuesOf(const std::string& name, CompletionPlace& place) const {
    if (const Option* found = option(name)) addWordsOf(*found, place);
    const GlobalOption* found = findGlobalOption(name);
    if (found == nullptr) return;
    if (found->values.empty()) place.kind = CompletionPlace::OfDirectories;
    for (const std::string& value : found->values) place.fixed.push_back({value});
  }

  void addOptions(CompletionPlace& place) const {
    const auto offer = [&](const std::string& name, const char* help) {
      if (!place.before.given(name)) place.fixed.push_back({name, help});
    };
    for (const Option* option : options_) offer(option->name, option->help);
    for (const bool asksForText : {false, true})
      for (const GlobalOption& option : globalOptions())
        if (option.asksForText() == asksForText) offer(option.name, option.help);
  }

  void addArguments(CompletionPlace& place) const {
    if (!arguments_.empty()) addWordsOf(*arguments_.front(), place);
    if (arguments_.empty() || !arguments_.front()->isRequired()) addCommands(place);
  }

  // Those directly below the one that was named.
  void addCommands(CompletionPlace& place) const {
    for (const Command* command : commandsIn(groups_))
      if (!command->hidden && command->above() == above_)
        place.fixed.push_back({command->word(), command->help});
  }

  const std::vector<CommandGroup>& groups_;
  std::string above_;                     // the command that was named
  std::vector<const Option*> options_;    // of that command and those above it
  std::vector<const Option*> arguments_;  // of that command, those that are still to come
  std::string awaited_;                   // option whose value comes next
  bool onlyArguments_ = false;
  Arguments before_;
  std::optional<std::string> root_;
};

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

}  // namespace camcfg::tool::cli
