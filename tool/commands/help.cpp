#include "commands/groups.h"
#include "frame/command_line.h"
#include "frame/man_page.h"
#include "frame/spelling.h"
#include "frame/status.h"
#include "topics/topics.h"

namespace camcfg::tool {
namespace {

constexpr char kTopic[] = "TOPIC";

std::vector<const Command*> shownCommands(const std::vector<CommandGroup>& groups) {
  std::vector<const Command*> commands;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands)
      if (!command.hidden) commands.push_back(&command);
  return commands;
}

Answer overview(const std::vector<CommandGroup>& groups) {
  Answer answer;
  answer.value = {{"commands", Json::array()}, {"topics", Json::array()}};
  for (const Command* command : shownCommands(groups))
    answer.value["commands"].push_back({{"name", command->name}, {"help", command->help}});
  for (const Topic& topic : allTopics())
    answer.value["topics"].push_back({{"name", topic.name}, {"title", topic.title}});
  answer.layout = {Verbatim{helpText(groups, "")},
                   Table{"topics", {{"TOPIC", "{name}"}, {"ABOUT", "{title}"}}}};
  return answer;
}

Answer explain(const Topic& topic) {
  Answer answer;
  answer.value = {{"topic", topic.name}, {"title", topic.title}, {"text", topic.text}};
  answer.layout = {Line{"{title}"}, Verbatim{std::string("\n") + topic.text}};
  return answer;
}

Answer explain(const std::vector<CommandGroup>& groups, const Command& command) {
  Answer answer;
  const std::string text = helpText(groups, command.name);
  answer.value = {{"command", command.name}, {"help", command.help}, {"text", text}};
  answer.layout = {Verbatim{text}};
  return answer;
}

std::vector<Candidate> explained(const Arguments& before) {
  std::string above;
  for (const std::string& word : before.texts(kTopic)) above += word + " ";
  std::vector<Candidate> candidates;
  const std::vector<CommandGroup> groups = allGroups();
  for (const Command* command : shownCommands(groups)) {
    const std::string name = command->name;
    if (name.compare(0, above.size(), above) == 0 &&
        name.find(' ', above.size()) == std::string::npos)
      candidates.push_back({name.substr(above.size()), command->help});
  }
  if (above.empty())
    for (const Topic& topic : allTopics()) candidates.push_back({topic.name, topic.title});
  return candidates;
}

[[noreturn]] void refuseUnknown(const std::vector<CommandGroup>& groups, const std::string& name) {
  std::vector<std::string> known;
  for (const Command* command : shownCommands(groups)) known.emplace_back(command->name);
  for (const Topic& topic : allTopics()) known.emplace_back(topic.name);
  const std::string suggestion = didYouMean(name, known);
  throw Refusal(Status::Usage,
                "there is neither a command nor a topic '" + name + "'" +
                    (suggestion.empty() ? "; 'camcfg help' lists them" : suggestion));
}

Answer help(const Arguments& arguments) {
  std::string name;
  for (const std::string& word : arguments.texts(kTopic)) name += (name.empty() ? "" : " ") + word;
  const std::vector<CommandGroup> groups = allGroups();
  if (!arguments.given(kTopic)) return overview(groups);
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands)
      if (name == command.name) return explain(groups, command);
  for (const Topic& topic : allTopics())
    if (name == topic.name) return explain(topic);
  refuseUnknown(groups, name);
}

Answer manual(const Arguments& /*arguments*/) {
  Answer answer;
  const std::string page = manPage(allGroups(), allTopics());
  answer.value = {{"page", page}};
  answer.layout = {Verbatim{page}};
  return answer;
}

}  // namespace

CommandGroup helpGroup() {
  return {"Help",
          {{"help",
            "Explain a command or a topic, or list them",
            {{Option::OptionalArguments, kTopic, "Name of a command or a topic", explained}},
            help},
           {"man",
            "Print the manual page in the macros of man(7)",
            {},
            manual,
            Status::Refused,
            true}}};
}

}  // namespace camcfg::tool
