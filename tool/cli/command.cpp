#include "cli/command.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "base/plain_text.h"

namespace camcfg::tool::cli {

const Arguments::Given& Arguments::at(TextRef name) const {
  const auto found = known_.find(name.view());
  if (found == known_.end())
    throw std::logic_error("no argument is named " + std::string(name.view()));
  return found->second;
}

bool Arguments::given(TextRef name) const {
  return !texts(name).empty();
}

std::string Arguments::text(TextRef name) const {
  return given(name) ? texts(name).front() : "";
}

const std::vector<std::string>& Arguments::texts(TextRef name) const {
  return at(name).texts;
}

HostDirectory* Arguments::directory(TextRef name) const {
  return at(name).directory.get();
}

const std::vector<HostFile>& Arguments::files(TextRef name) const {
  return at(name).files;
}

const Channel& Arguments::channel() const {
  if (channel_ == nullptr) throw Refusal("nobody takes its answers");
  return *channel_;
}

std::vector<const Command*> commandsIn(const std::vector<CommandGroup>& groups) {
  std::vector<const Command*> all;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands) all.push_back(&command);
  return all;
}

const Command* findCommand(const std::vector<CommandGroup>& groups, const std::string& name) {
  for (const Command* command : commandsIn(groups))
    if (name == command->name) return command;
  return nullptr;
}

std::string examplesOf(const Command& command) {
  std::string text = "Examples:\n";
  for (const char* example : command.examples)
    text.append("  camcfg ").append(example).append("\n");
  return text;
}

const std::vector<Option>& globalOptions() {
  static const std::vector<Option> options = {
      {Option::Flag, kHelp, "Show this help", {}, "-h"},
      {Option::Flag, kVersion, "Show the tool's version"},
      {Option::HostDirectory, kRoot, "Work on the device tree under DIR"},
      {Option::Flag, kJson, "Answer in JSON"},
      {Option::Value, kColor, "Colour answers: auto (on a terminal), always or never",
       oneOf({std::begin(kColorWords), std::end(kColorWords)}), nullptr, "WHEN"},
      {Option::Flag, kVerbose, "Show what the library prints and logs", {}, "-v"}};
  return options;
}

namespace {

// Whether a row of "set, live: ..." is about a command: "set", or any below "live" that only reads.
bool isAbout(const std::string& names, const Command& command) {
  for (std::size_t begin = 0; begin < names.size();) {
    const std::size_t end = std::min(names.find(", ", begin), names.size());
    const std::string name = names.substr(begin, end - begin);
    if (command.name == name) return true;
    if (!command.changesSettings && beginsWith(command.name, name + " ")) return true;
    begin = end + 2;
  }
  return false;
}

}  // namespace

std::string exitStatuses(const Command* command) {
  constexpr std::size_t kMeaningAt = 5;
  std::string list;
  for (const Topic& topic : allTopics())
    if (std::strcmp(topic.name, "exit-status") == 0)
      list.assign(topic.text, std::strstr(topic.text, "\n\n") + 1);
  if (command == nullptr) return list;
  std::map<std::string, std::string> meanings;
  for (const std::string& line : parts(list, '\n')) {
    if (line.empty()) continue;
    const std::string meaning = line.substr(kMeaningAt);
    const std::size_t colon = meaning.find(": ");
    const bool isGeneral = colon == std::string::npos;
    if (isGeneral || isAbout(meaning.substr(0, colon), *command))
      meanings[line.substr(0, kMeaningAt)] = meaning.substr(isGeneral ? 0 : colon + 2);
  }
  if (!command->usesDevice) meanings.erase("  3  ");
  if (!command->changesDevice) meanings.erase("  5  ");
  std::string shown;
  for (const auto& [status, meaning] : meanings)
    shown.append(shown.empty() ? "" : "\n").append(status).append(meaning);
  return shown;
}

}  // namespace camcfg::tool::cli
