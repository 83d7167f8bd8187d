#include "cli/command_line.h"

#include <fcntl.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "cli/global_options.h"
#include "cli/topic.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kVersionText[] = "camcfg " CAMCFG_VERSION;
constexpr char kCommandFooter[] = "'camcfg --help' lists the options that every command takes.";
constexpr char kFooterBegin[] =
    "Answers go to standard output, everything else to standard error.\nExit status:\n";
constexpr char kFooterEnd[] =
    "'camcfg help COMMAND' shows what a command takes, 'camcfg help' lists further topics.";

// The list at the beginning of the topic.
std::string exitStatuses() {
  for (const Topic& topic : allTopics())
    if (std::strcmp(topic.name, "exit-status") == 0)
      return {topic.text, std::strstr(topic.text, "\n\n") + 1};
  return "";
}

HostFile read(const std::string& path) {
  const Descriptor file(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  HostFile read{path, "", ""};
  if (!file || !readAll(file.get(), read.contents)) read.fault = std::strerror(errno);
  return read;
}

std::string contentsOf(const std::string& path) {
  HostFile file = read(path);
  if (!file.fault.empty()) throw Refusal(path + ": " + file.fault);
  return std::move(file.contents);
}

// The parser's tree of commands, made from the records.
class Parser {
 public:
  explicit Parser(const std::vector<CommandGroup>& groups) {
    app_.name("camcfg");
    app_.footer(kFooterBegin + exitStatuses() + kFooterEnd);
    for (const GlobalOption& option : globalOptions()) add(option);
    app_.get_formatter()->column_width(30);
    app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app_.get_formatter()->label("Positionals", "Arguments");
    app_.get_formatter()->label("REQUIRED", "");
    prepare(app_);
    for (const CommandGroup& group : groups)
      for (const Command& command : group.commands) add(command, group.title);
  }

  std::string help(const std::string& command) const {
    return help(command.empty() ? app_ : *apps_.at(command));
  }

  Invocation parse(int argc, const char* const* argv) {
    Invocation invocation;
    try {
      app_.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
      invocation.text = help(selected());
      return invocation;
    } catch (const CLI::CallForVersion&) {
      invocation.text = std::string(kVersionText) + "\n";
      return invocation;
    } catch (const CLI::ParseError& error) {
      refuseUnknownWords();
      refuse(error.what());
    }
    refuseUnknownWords();
    fill(invocation);
    return invocation;
  }

 private:
  static void prepare(CLI::App& app) {
    app.require_subcommand(0, 1);
    app.allow_extras();
    app.fallthrough();
  }

  void add(const GlobalOption& option) {
    if (option.name == kHelp)
      app_.set_help_flag(option.names(), option.help);
    else if (option.name == kVersion)
      app_.set_version_flag(option.names(), kVersionText, option.help);
    else
      add(app_, option.names(), option.help, option.value);
  }

  void add(const Command& command, const char* group) {
    CLI::App& parent = command.above().empty() ? app_ : *apps_.at(command.above());
    CLI::App* app = parent.add_subcommand(command.word(), command.help);
    app->group(command.hidden ? "" : &parent == &app_ ? group : "Commands");
    app->footer(kCommandFooter);
    prepare(*app);
    for (const Option& option : command.options) add(*app, option);
    apps_[command.name] = app;
    commands_[app] = &command;
  }

  static void add(CLI::App& app, const Option& option) {
    if (option.isNamed()) return add(app, option.name, option.help, option.value());
    CLI::Option* added = app.add_option(option.name, CLI::callback_t(), option.help);
    if (option.takesMany())
      added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
    added->required(option.isRequired());
  }

  // An option with its value, or a flag if it takes none.
  static void add(CLI::App& app, const std::string& names, const std::string& help,
                  const char* value) {
    if (value == nullptr)
      app.add_flag(names, help)->disable_flag_override();
    else
      app.add_option(names, CLI::callback_t(), help)->type_name(value);
  }

  // The command that was named, or the tool itself.
  const CLI::App& selected() const {
    const CLI::App* app = &app_;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return *app;
  }

  // A command with what those above it require, as it has to be typed.
  static std::string usage(const CLI::App& app) {
    if (app.get_parent() == nullptr) return app.get_name();
    std::string words = usage(*app.get_parent());
    for (const CLI::Option* option : app.get_parent()->get_options())
      if (option->get_positional() && option->get_required()) words += " " + option->get_name(true);
    return words + " " + app.get_name();
  }

  static std::string help(const CLI::App& app) {
    return app.get_formatter()->make_help(&app, usage(app), CLI::AppFormatMode::Normal);
  }

  [[noreturn]] void refuse(const std::string& text, const std::string& suggestion = "") const {
    const auto found = commands_.find(&selected());
    const std::string command = found == commands_.end() ? "" : found->second->name;
    const std::string help = "; see 'camcfg " + command + (command.empty() ? "" : " ") + "--help'";
    throw Refusal(Status::Usage, (command.empty() ? "" : command + ": ") + text +
                                     (suggestion.empty() ? help : suggestion));
  }

  void refuseUnknownWords() const {
    for (const std::string& word : app_.remaining(true)) {
      if (word == "--") continue;
      const CLI::App& app = selected();
      if (word.size() > 1 && word[0] == '-')
        refuse("unknown option '" + word + "'", didYouMean(word, optionsOf(app)));
      if (!commandsBelow(app).empty())
        refuse("unknown command '" + word + "'", didYouMean(word, commandsBelow(app)));
      refuse("unexpected argument '" + word + "'");
    }
  }

  static std::vector<std::string> commandsBelow(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; }))
      if (!below->get_group().empty()) names.push_back(below->get_name());
    return names;
  }

  std::vector<std::string> optionsOf(const CLI::App& app) const {
    std::vector<std::string> names;
    for (const CLI::App* owner : {&app, &app_})
      for (const CLI::Option* option : owner->get_options())
        if (option->nonpositional()) names.push_back(option->get_name(false, false));
    return names;
  }

  void fill(Invocation& invocation) const {
    const CLI::App& app = selected();
    const auto found = commands_.find(&app);
    if (found == commands_.end() || !found->second->run) refuse("a command is missing");
    invocation.command = found->second;
    if (app_.count(kRoot) != 0) invocation.root = textsOf(app_, kRoot).front();
    if (app_.count(kColor) != 0) invocation.color = chosenColor();
    invocation.json = app_.count(kJson) != 0;
    invocation.verbose = app_.count(kVerbose) != 0;
    for (const CLI::App* named = &app; named != &app_; named = named->get_parent())
      for (const Option& option : commands_.at(named)->options) {
        invocation.arguments.declare(option.name);
        if (named->count(option.name) != 0) give(invocation, option, textsOf(*named, option.name));
      }
  }

  std::string chosenColor() const {
    const std::string& word = textsOf(app_, kColor).back();
    const std::vector<std::string>& words = findGlobalOption(kColor)->values;
    if (isAmong(words, word)) return word;
    refuse(std::string(kColor) + ": '" + word + "' is none of " + joined(words),
           didYouMean(word, words));
  }

  static const std::vector<std::string>& textsOf(const CLI::App& app, const char* name) {
    return app.get_option(name)->results();
  }

  // Whatever is outside the device's root is opened now, before the root is entered.
  static void give(Invocation& invocation, const Option& option,
                   const std::vector<std::string>& texts) try {
    Arguments& arguments = invocation.arguments;
    if (option.kind == Option::HostDirectory) {
      arguments.add(option.name, std::make_unique<HostDirectory>(texts.front()));
    } else if (option.kind == Option::HostFile || option.kind == Option::OptionalHostFile) {
      arguments.add(option.name, std::vector<std::string>{contentsOf(texts.front())});
    } else if (option.kind == Option::HostFiles) {
      std::vector<HostFile> files(texts.size());
      std::transform(texts.begin(), texts.end(), files.begin(), read);
      arguments.add(option.name, std::move(files));
    } else {
      arguments.add(option.name, texts);
    }
  } catch (const Refusal& refusal) {
    throw Refusal(invocation.command->whenRefused, std::string(invocation.command->name) + ": " +
                                                       option.name + " " + refusal.what());
  }

  CLI::App app_{"Reads, changes and repairs the settings of a network video device."};
  std::map<std::string, CLI::App*> apps_;
  std::map<const CLI::App*, const Command*> commands_;
};

}  // namespace

std::string helpText(const std::vector<CommandGroup>& groups, const std::string& command) {
  return Parser(groups).help(command);
}

Invocation readCommandLine(const std::vector<CommandGroup>& groups, int argc,
                           const char* const* argv) {
  return Parser(groups).parse(argc, argv);
}

}  // namespace camcfg::tool::cli
