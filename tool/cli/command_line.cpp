#include "cli/command_line.h"

#include <fcntl.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/refusal.h"
#include "base/spelling.h"
#include "cli/global_options.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kVersion[] = "camcfg " CAMCFG_VERSION;

constexpr char kCommandFooter[] = "'camcfg --help' lists the options that every command takes.";
constexpr char kFooter[] =
    "Answers go to standard output, everything else to standard error.\n"
    "Exit status: 0 done, 1 refused or not found, 2 usage, 3 the device's files are unusable.\n"
    "'camcfg help COMMAND' tells what a command takes, 'camcfg help' lists further topics.";

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

bool takesMany(Option::Kind kind) {
  return kind == Option::Arguments || kind == Option::OptionalArguments ||
         kind == Option::HostFiles;
}

std::vector<HostFile> readEach(const std::vector<std::string>& paths) {
  std::vector<HostFile> files(paths.size());
  std::transform(paths.begin(), paths.end(), files.begin(), read);
  return files;
}

// The parser's tree of commands, made from the records.
class Parser {
 public:
  explicit Parser(const std::vector<CommandGroup>& groups) {
    app_.name("camcfg");
    app_.footer(kFooter);
    app_.set_help_flag(kHelpOption.names(), kHelpOption.help);
    app_.set_version_flag(kVersionOption.names(), kVersion, kVersionOption.help);
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
    return command.empty() ? help(app_) : help(*apps_.at(command));
  }

  Invocation parse(int argc, const char* const* argv) {
    Invocation invocation;
    try {
      app_.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
      invocation.text = help(selected());
      return invocation;
    } catch (const CLI::CallForVersion&) {
      invocation.text = std::string(kVersion) + "\n";
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
  static void addFlag(CLI::App& app, const std::string& name, const char* const help) {
    app.add_flag(name, help)->disable_flag_override();
  }

  void add(const GlobalOption& option) {
    if (option.value == nullptr)
      addFlag(app_, option.names(), option.help);
    else
      app_.add_option(option.names(), CLI::callback_t(), option.help)->type_name(option.value);
  }

  static void prepare(CLI::App& app) {
    app.require_subcommand(0, 1);
    app.allow_extras();
    app.fallthrough();
  }

  void add(const Command& command, const char* group) {
    const std::string name = command.name;
    const std::size_t space = name.rfind(' ');
    const bool below = space != std::string::npos;
    CLI::App& parent = below ? *apps_.at(name.substr(0, space)) : app_;
    CLI::App* app = parent.add_subcommand(below ? name.substr(space + 1) : name, command.help);
    app->group(command.hidden ? "" : below ? "Commands" : group);
    app->footer(kCommandFooter);
    prepare(*app);
    for (const Option& option : command.options) add(*app, option);
    apps_[name] = app;
    commands_[app] = &command;
  }

  static void add(CLI::App& app, const Option& option) {
    if (option.kind == Option::Flag) {
      addFlag(app, option.name, option.help);
      return;
    }
    CLI::Option* added = app.add_option(option.name, CLI::callback_t(), option.help);
    if (takesMany(option.kind))
      added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
    switch (option.kind) {
      case Option::Arguments:
      case Option::Argument:
      case Option::HostFile:
        added->required();
        break;
      case Option::Value:
        added->type_name("VALUE");
        break;
      case Option::HostDirectory:
        added->type_name("DIR");
        break;
      default:
        break;
    }
  }

  // The command that was named, or the tool itself.
  const CLI::App& selected() const {
    const CLI::App* app = &app_;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return *app;
  }

  static std::string path(const CLI::App& app) {
    if (app.get_parent() == nullptr) return "";
    const std::string above = path(*app.get_parent());
    return above.empty() ? app.get_name() : above + " " + app.get_name();
  }

  // The same with what each of the commands requires, as it has to be typed.
  static std::string usage(const CLI::App& app) {
    if (app.get_parent() == nullptr) return app.get_name();
    std::string words = usage(*app.get_parent()) + " " + app.get_name();
    for (const CLI::Option* option : app.get_options())
      if (option->get_positional() && option->get_required()) words += " " + option->get_name(true);
    return words;
  }

  static std::string help(const CLI::App& app) {
    return app.get_formatter()->make_help(&app,
                                          app.get_parent() == nullptr
                                              ? app.get_name()
                                              : usage(*app.get_parent()) + " " + app.get_name(),
                                          CLI::AppFormatMode::Normal);
  }

  [[noreturn]] void refuse(const std::string& text, const std::string& suggestion = "") const {
    const std::string command = path(selected());
    const std::string help = command.empty() ? "camcfg --help" : "camcfg " + command + " --help";
    throw Refusal(Status::Usage, (command.empty() ? "" : command + ": ") + text +
                                     (suggestion.empty() ? "; see '" + help + "'" : suggestion));
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
    if (app_.count(kColor) != 0) invocation.color = chosen(kColor);
    invocation.json = app_.count(kJson) != 0;
    invocation.verbose = app_.count(kVerbose) != 0;
    for (const CLI::App* named = &app; named != &app_; named = named->get_parent())
      for (const Option& option : commands_.at(named)->options) {
        invocation.arguments.declare(option.name);
        if (named->count(option.name) != 0) give(invocation, option, textsOf(*named, option.name));
      }
  }

  // What was chosen among the words that an option takes.
  std::string chosen(const std::string& name) const {
    const std::string& word = textsOf(app_, name.c_str()).back();
    std::vector<std::string> words;
    for (const GlobalOption& option : globalOptions())
      if (option.name == name) words.assign(option.values.begin(), option.values.end());
    if (std::find(words.begin(), words.end(), word) != words.end()) return word;
    std::string all;
    for (const std::string& each : words) all += (all.empty() ? "" : ", ") + each;
    refuse(name + ": '" + word + "' is none of " + all, didYouMean(word, words));
  }

  static const std::vector<std::string>& textsOf(const CLI::App& app, const char* name) {
    return app.get_option(name)->results();
  }

  // Whatever is outside the device's root is opened now, before the root is entered.
  static void give(Invocation& invocation, const Option& option,
                   const std::vector<std::string>& texts) try {
    Arguments& arguments = invocation.arguments;
    if (option.kind == Option::HostDirectory)
      arguments.add(option.name, std::make_unique<HostDirectory>(texts.front()));
    else if (option.kind == Option::HostFile || option.kind == Option::OptionalHostFile)
      arguments.add(option.name, std::vector<std::string>{contentsOf(texts.front())});
    else if (option.kind == Option::HostFiles)
      arguments.add(option.name, readEach(texts));
    else
      arguments.add(option.name, texts);
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
