#include "base/refusal.h"
#include "base/spelling.h"
#include "cli/command_line.h"
#include "cli/man_page.h"
#include "commands/groups.h"
#include "topics/topics.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kTopic[] = "TOPIC";

std::vector<const cli::Command*> shownCommands(const std::vector<cli::CommandGroup>& groups) {
  std::vector<const cli::Command*> commands;
  for (const cli::CommandGroup& group : groups)
    for (const cli::Command& command : group.commands)
      if (!command.hidden) commands.push_back(&command);
  return commands;
}

cli::Answer overview(const std::vector<cli::CommandGroup>& groups) {
  cli::Answer answer;
  answer.value = {{"commands", Json::array()}, {"topics", Json::array()}};
  for (const cli::Command* command : shownCommands(groups))
    answer.value["commands"].push_back({{"name", command->name}, {"help", command->help}});
  for (const cli::Topic& topic : allTopics())
    answer.value["topics"].push_back({{"name", topic.name}, {"title", topic.title}});
  answer.layout = {cli::Verbatim{cli::helpText(groups, "")},
                   cli::Table{"topics", {{"TOPIC", "{name}"}, {"ABOUT", "{title}"}}}};
  return answer;
}

cli::Answer explain(const cli::Topic& topic) {
  cli::Answer answer;
  answer.value = {{"topic", topic.name}, {"title", topic.title}, {"text", topic.text}};
  answer.layout = {cli::Line{"{title}"}, cli::Verbatim{std::string("\n") + topic.text}};
  return answer;
}

cli::Answer explain(const std::vector<cli::CommandGroup>& groups, const cli::Command& command) {
  cli::Answer answer;
  const std::string text = cli::helpText(groups, command.name);
  answer.value = {{"command", command.name}, {"help", command.help}, {"text", text}};
  answer.layout = {cli::Verbatim{text}};
  return answer;
}

std::vector<cli::Candidate> explained(const cli::Arguments& before) {
  std::string above;
  for (const std::string& word : before.texts(kTopic)) above += word + " ";
  std::vector<cli::Candidate> candidates;
  const std::vector<cli::CommandGroup> groups = allGroups();
  for (const cli::Command* command : shownCommands(groups)) {
    const std::string name = command->name;
    if (name.compare(0, above.size(), above) == 0 &&
        name.find(' ', above.size()) == std::string::npos)
      candidates.push_back({name.substr(above.size()), command->help});
  }
  if (above.empty())
    for (const cli::Topic& topic : allTopics()) candidates.push_back({topic.name, topic.title});
  return candidates;
}

[[noreturn]] void refuseUnknown(const std::vector<cli::CommandGroup>& groups,
                                const std::string& name) {
  std::vector<std::string> known;
  for (const cli::Command* command : shownCommands(groups)) known.emplace_back(command->name);
  for (const cli::Topic& topic : allTopics()) known.emplace_back(topic.name);
  const std::string suggestion = didYouMean(name, known);
  throw Refusal(Status::Usage,
                "there is neither a command nor a topic '" + name + "'" +
                    (suggestion.empty() ? "; 'camcfg help' lists them" : suggestion));
}

cli::Answer help(const cli::Arguments& arguments) {
  std::string name;
  for (const std::string& word : arguments.texts(kTopic)) name += (name.empty() ? "" : " ") + word;
  const std::vector<cli::CommandGroup> groups = allGroups();
  if (!arguments.given(kTopic)) return overview(groups);
  for (const cli::CommandGroup& group : groups)
    for (const cli::Command& command : group.commands)
      if (name == command.name) return explain(groups, command);
  for (const cli::Topic& topic : allTopics())
    if (name == topic.name) return explain(topic);
  refuseUnknown(groups, name);
}

cli::Answer manual(const cli::Arguments& /*arguments*/) {
  cli::Answer answer;
  const std::string page = cli::manPage(allGroups(), allTopics());
  answer.value = {{"page", page}};
  answer.layout = {cli::Verbatim{page}};
  return answer;
}

}  // namespace

cli::CommandGroup helpGroup() {
  return {"Help",
          {{"help",
            "Explain a command or a topic, or list them",
            {{cli::Option::OptionalArguments, kTopic, "Name of a command or a topic", explained}},
            help},
           {"man",
            "Print the manual page in the macros of man(7)",
            {},
            manual,
            Status::Refused,
            true}}};
}

}  // namespace camcfg::tool::commands
