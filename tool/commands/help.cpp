#include <cstdlib>

#include "base/concat.h"
#include "base/plain_text.h"
#include "cli/command_line.h"
#include "cli/completion.h"
#include "cli/man_page.h"
#include "commands/groups.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kTopic[] = "TOPIC";

std::vector<const cli::Command*> shownCommands(const std::vector<CommandGroup>& groups) {
  std::vector<const cli::Command*> commands;
  for (const cli::Command* command : cli::commandsIn(groups))
    if (!command->hidden) commands.push_back(command);
  return commands;
}

Answer overview(const std::vector<CommandGroup>& groups) {
  Answer answer;
  answer.value = {{"commands", Json::array()}, {"topics", Json::array()}};
  for (const cli::Command* command : shownCommands(groups))
    answer.value["commands"].push_back({{"name", command->name}, {"help", command->help}});
  for (const cli::Topic& topic : cli::allTopics())
    answer.value["topics"].push_back({{"name", topic.name}, {"title", topic.title}});
  answer.layout = {Verbatim{cli::helpText(groups, "")},
                   Table{"topics", {{"TOPIC", "{name}"}, {"ABOUT", "{title}"}}}};
  return answer;
}

Candidates explained(const Arguments& before) {
  const std::string above = joined(before.texts(kTopic), " ");
  Candidates candidates;
  const std::vector<CommandGroup> groups = allGroups();
  for (const cli::Command* command : shownCommands(groups))
    if (command->above() == above) candidates.push_back({command->word(), command->help});
  if (above.empty())
    for (const cli::Topic& topic : cli::allTopics())
      candidates.push_back({topic.name, topic.title});
  return candidates;
}

[[noreturn]] void refuseUnknown(const std::vector<CommandGroup>& groups, const std::string& name) {
  std::vector<std::string> known;
  for (const cli::Command* command : shownCommands(groups)) known.emplace_back(command->name);
  for (const cli::Topic& topic : cli::allTopics()) known.emplace_back(topic.name);
  const std::string near = didYouMean(name, known);
  throw Refusal(Status::Usage, concat("there is neither a command nor a topic ", quoted(name),
                                      near.empty() ? "; 'camcfg help' lists them" : near));
}

Answer help(const Arguments& arguments) {
  const std::string name = joined(arguments.texts(kTopic), " ");
  const std::vector<CommandGroup> groups = allGroups();
  if (!arguments.given(kTopic)) return overview(groups);
  if (const cli::Command* command = cli::findCommand(groups, name)) {
    const std::string text = cli::helpText(groups, name);
    return {Json{{"command", name}, {"help", command->help}, {"text", text}}, {Verbatim{text}}};
  }
  for (const cli::Topic& topic : cli::allTopics())
    if (name == topic.name)
      return {Json{{"topic", name}, {"title", topic.title}, {"text", topic.text}},
              {Line{"{title}"}, Verbatim{std::string("\n") + topic.text}}};
  refuseUnknown(groups, name);
}

Answer manual(const Arguments& /*arguments*/) {
  const std::string page = cli::manPage(allGroups(), cli::allTopics());
  return {Json{{"page", page}}, {Verbatim{page}}};
}

constexpr char kLineSoFar[] = "LINE";
constexpr char kBreaks[] = "BREAKS";
constexpr char kLineWord[] = "WORD";

// The shell has not yet put in the user's own directory.
std::string expanded(const std::string& directory) {
  const char* home = getenv("HOME");
  const bool isAtHome = home != nullptr && beginsWith(directory, "~/");
  return isAtHome ? home + directory.substr(1) : directory;
}

// A device that cannot be read offers no words, and whoever presses the key does not learn why.
Candidates candidatesAt(const cli::CompletionPlace& place) {
  try {
    if (place.words && place.root && !enterRoot(expanded(*place.root)).empty()) return {};
    return place.candidates();
  } catch (const Refusal&) {
    return {};
  }
}

Answer answerWith(cli::CompletionPlace::Kind kind, const std::vector<std::string>& words) {
  // Words that follow, or names that the shell knows itself.
  constexpr const char* kKinds[] = {"words", "files", "directories"};
  std::string lines = std::string(kKinds[kind]) + "\n";
  for (const std::string& word : words) lines += word + "\n";
  return {Json{{"complete", kKinds[kind]}, {"words", words}}, {Verbatim{lines}}};
}

// bash puts each word in as it is given it: quoted, and without what stays on the line.
Answer forBash(const Arguments& arguments) {
  cli::ShellLine line = cli::readShellLine(arguments.text(kLineSoFar), arguments.text(kBreaks));
  const std::string begun = line.words.back();
  line.words.erase(line.words.begin());
  const cli::CompletionPlace place = cli::placeIn(allGroups(), line.words);
  std::vector<std::string> words;
  for (const cli::Candidate& candidate : candidatesAt(place))
    if (beginsWith(candidate.word, begun))
      words.push_back(cli::shellQuoted(candidate.word.substr(line.kept.size()), line.quote));
  return answerWith(place.kind, words);
}

// zsh chooses and quotes itself, and takes "WORD:WHAT IT IS" with its own colons escaped.
Answer forZsh(const Arguments& arguments) {
  const cli::CompletionPlace place = cli::placeIn(allGroups(), arguments.texts(kLineWord));
  std::vector<std::string> words;
  for (const cli::Candidate& candidate : candidatesAt(place)) {
    std::string word;
    for (const char c : candidate.word)
      word += c == ':' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    words.push_back(candidate.help.empty() ? word : concat(word, ":", printable(candidate.help)));
  }
  return answerWith(place.kind, words);
}

}  // namespace

CommandGroup helpGroup() {
  CommandGroup group{
      "Help",
      {command("help", "Explain a command or a topic, or list them", help,
               {{Option::OptionalArguments, kTopic, "Name of a command or a topic", explained}}),
       command("man", "Print the manual page in the macros of man(7)", manual, {}, Status::Refused,
               true)}};
  group.commands.front().usesDevice = false;
  return group;
}

CommandGroup completeGroup() {
  return {
      "For shells",
      {command("complete", "Show a shell what may be typed next", nullptr, {}, Status::Refused,
               true),
       command("complete bash", "Show bash what may be typed at the end of a line", forBash,
               {{Option::Argument, kLineSoFar, "The line up to the cursor"},
                {Option::Argument, kBreaks, "Characters that break words when they are completed"}},
               Status::Refused, true),
       command("complete zsh", "Show zsh what may be in the place of the last word", forZsh,
               {{Option::Arguments, kLineWord, "The line's words after the tool's name"}},
               Status::Refused, true)}};
}

}  // namespace camcfg::tool::commands
