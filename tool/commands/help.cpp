#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "cli/command_line.h"
#include "cli/man_page.h"
#include "commands/groups.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kTopic[] = "TOPIC";

std::vector<const cli::Command*> shownCommands(const std::vector<cli::CommandGroup>& groups) {
  std::vector<const cli::Command*> commands;
  for (const cli::Command* command : cli::commandsIn(groups))
    if (!command->hidden) commands.push_back(command);
  return commands;
}

cli::Answer overview(const std::vector<cli::CommandGroup>& groups) {
  cli::Answer answer;
  answer.value = {{"commands", Json::array()}, {"topics", Json::array()}};
  for (const cli::Command* command : shownCommands(groups))
    answer.value["commands"].push_back({{"name", command->name}, {"help", command->help}});
  for (const cli::Topic& topic : cli::allTopics())
    answer.value["topics"].push_back({{"name", topic.name}, {"title", topic.title}});
  answer.layout = {cli::Verbatim{cli::helpText(groups, "")},
                   cli::Table{"topics", {{"TOPIC", "{name}"}, {"ABOUT", "{title}"}}}};
  return answer;
}

std::vector<cli::Candidate> explained(const cli::Arguments& before) {
  const std::string above = joined(before.texts(kTopic), " ");
  std::vector<cli::Candidate> candidates;
  const std::vector<cli::CommandGroup> groups = allGroups();
  for (const cli::Command* command : shownCommands(groups))
    if (command->above() == above) candidates.push_back({command->word(), command->help});
  if (above.empty())
    for (const cli::Topic& topic : cli::allTopics())
      candidates.push_back({topic.name, topic.title});
  return candidates;
}

[[noreturn]] void refuseUnknown(const std::vector<cli::CommandGroup>& groups,
                                const std::string& name) {
  std::vector<std::string> known;
  for (const cli::Command* command : shownCommands(groups)) known.emplace_back(command->name);
  for (const cli::Topic& topic : cli::allTopics()) known.emplace_back(topic.name);
  const std::string suggestion = didYouMean(name, known);
  throw Refusal(Status::Usage,
                "there is neither a command nor a topic '" + name + "'" +
                    (suggestion.empty() ? "; 'camcfg help' lists them" : suggestion));
}

cli::Answer help(const cli::Arguments& arguments) {
  const std::string name = joined(arguments.texts(kTopic), " ");
  const std::vector<cli::CommandGroup> groups = allGroups();
  if (!arguments.given(kTopic)) return overview(groups);
  if (const cli::Command* command = cli::findCommand(groups, name)) {
    const std::string text = cli::helpText(groups, name);
    return {Json{{"command", name}, {"help", command->help}, {"text", text}},
            {cli::Verbatim{text}}};
  }
  for (const cli::Topic& topic : cli::allTopics())
    if (name == topic.name)
      return {Json{{"topic", name}, {"title", topic.title}, {"text", topic.text}},
              {cli::Line{"{title}"}, cli::Verbatim{std::string("\n") + topic.text}}};
  refuseUnknown(groups, name);
}

cli::Answer manual(const cli::Arguments& /*arguments*/) {
  const std::string page = cli::manPage(allGroups(), cli::allTopics());
  return {Json{{"page", page}}, {cli::Verbatim{page}}};
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
