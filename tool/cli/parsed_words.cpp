#include "cli/parsed_words.h"

#include <algorithm>
#include <cstring>

#include "base/concat.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kTrue[] = "true";

bool mayBeginName(char c) noexcept {
  return c != '-' && c != '!' && c != ' ' && c != '\n';
}

bool isLong(const std::string& word) noexcept {
  return word.size() > 2 && word[0] == '-' && word[1] == '-' && mayBeginName(word[2]);
}

// Numbers are arguments, negative ones, too.
bool isShort(const std::string& word) noexcept {
  return word.size() > 1 && word[0] == '-' && mayBeginName(word[1]) &&
         (word[1] < '0' || word[1] > '9');
}

bool looksLikeOption(const std::string& word) noexcept {
  return word.size() > 1 && word[0] == '-';
}

}  // namespace

ParsedWords::ParsedWords(const std::vector<CommandGroup>& groups, int argc, const char* const* argv)
    : groups_(groups), words_(argv + std::min(argc, 1), argv + argc) {
  const auto mark = std::find(words_.begin(), words_.end(), "--");
  const auto literals = static_cast<std::size_t>(mark - words_.begin());
  if (mark != words_.end()) words_.erase(mark);
  while (next_ < words_.size() && !fault_) {
    const bool isLiteral = next_ >= literals;
    const std::string& word = words_[next_++];
    if (isLiteral)
      takeArgument(word, false);
    else
      take(word);
  }
}

std::vector<std::string> ParsedWords::texts(const Option& option) const {
  std::vector<std::string> texts;
  for (const Given& given : given_)
    if (given.option == &option) texts.push_back(given.text);
  return texts;
}

std::optional<ParsedWords::Fault> ParsedWords::repetition() const {
  const auto find = [this](const std::vector<Option>& options) -> std::optional<Fault> {
    for (const Option& option : options) {
      const bool isOnce =
          option.isNamed() && option.value() != nullptr && option.kind != Option::Values;
      const std::size_t times = isOnce ? count(option) : 0;
      if (times > 1)
        return Fault{option.name, concat(option.name, ": At Most 1 required but received ", times)};
    }
    return std::nullopt;
  };
  std::optional<Fault> found = find(globalOptions());
  for (const Command* command : named_)
    if (!found) found = find(command->options);
  return found;
}

std::optional<ParsedWords::Fault> ParsedWords::lack() const {
  for (const Command* command : named_)
    for (const Option& option : command->options)
      if (command->run && lacks(option))
        return Fault{option.name, std::string(option.name) + " is required"};
  return std::nullopt;
}

const Option& ParsedWords::global(const char* name) {
  const std::vector<Option>& options = globalOptions();
  return *std::find_if(options.begin(), options.end(), [name](const Option& option) {
    return std::strcmp(option.name, name) == 0;
  });
}

std::size_t ParsedWords::count(const Option& option) const noexcept {
  return static_cast<std::size_t>(
      std::count_if(given_.begin(), given_.end(),
                    [&option](const Given& given) { return given.option == &option; }));
}

bool ParsedWords::lacks(const Option& option) const noexcept {
  return option.isRequired() && count(option) == 0;
}

// A command that needs an argument takes it before a command below it is named. A heading has no use
// for its arguments itself: which of them are needed is known with the command below.
const Command* ParsedWords::below(const std::string& word) const {
  if (const Command* last = command(); last != nullptr && last->run)
    for (const Option& option : last->options)
      if (lacks(option)) return nullptr;
  if (word.find(' ') != std::string::npos) return nullptr;
  return findCommand(groups_, command() == nullptr ? word : concat(command()->name, " ", word));
}

const Option* ParsedWords::find(const std::string& name) const {
  const auto isMeant = [&name](const Option& option) {
    return name == option.name || (option.shortName != nullptr && name == option.shortName);
  };
  for (auto command = named_.rbegin(); command != named_.rend(); ++command)
    for (const Option& option : (*command)->options)
      if (option.isNamed() && isMeant(option)) return &option;
  for (const Option& option : globalOptions())
    if (isMeant(option)) return &option;
  return nullptr;
}

void ParsedWords::take(const std::string& word) {
  if (const Command* command = below(word))
    named_.push_back(command);
  else if (isLong(word))
    takeLong(word);
  else if (isShort(word))
    takeShort(word);
  else
    takeArgument(word, looksLikeOption(word));
}

void ParsedWords::takeArgument(const std::string& word, bool isOption) {
  for (auto command = named_.rbegin(); command != named_.rend(); ++command)
    for (const Option& option : (*command)->options)
      if (!option.isNamed() && (option.takesMany() || count(option) == 0)) {
        given_.push_back({&option, word});
        return;
      }
  strays_.push_back({word, isOption});
}

void ParsedWords::takeLong(const std::string& word) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(0, equals);
  const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
  const Option* option = find(name);
  if (option == nullptr)
    strays_.push_back({word, true});
  else if (option->value() == nullptr)
    takeFlag(*option, name, value);
  else
    takeValue(*option, value);
}

// "-x VALUE", "-xVALUE" or, for flags, several letters: "-xyz".
void ParsedWords::takeShort(const std::string& word) {
  const std::string name = word.substr(0, 2);
  const std::string rest = word.substr(2);
  const Option* option = find(name);
  if (option == nullptr) {
    strays_.push_back({word, true});
  } else if (option->value() == nullptr) {
    takeFlag(*option, name, "");
    if (!rest.empty()) take("-" + rest);
  } else {
    takeValue(*option, rest);
  }
}

void ParsedWords::takeFlag(const Option& option, const std::string& name,
                           const std::string& value) {
  if (value.empty() || value == kTrue)
    given_.push_back({&option, kTrue});
  else
    fault_ = Fault{name.substr(2), name.substr(2) + " was given a disallowed flag override"};
}

void ParsedWords::takeValue(const Option& option, const std::string& value) {
  if (value.empty() && next_ == words_.size())
    fault_ = Fault{option.name, concat(option.name, ": 1 required ", option.value(), " missing")};
  else
    given_.push_back({&option, value.empty() ? words_[next_++] : value});
}

}  // namespace camcfg::tool::cli
