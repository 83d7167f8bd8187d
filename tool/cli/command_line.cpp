#include "cli/command_line.h"

#include <fcntl.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>

#include "base/plain_text.h"
#include "cli/raw_line.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kTool[] = "camcfg";
constexpr char kAbout[] = "Reads, changes and repairs the settings of a network video device.";
constexpr char kVersionText[] = "camcfg " CAMCFG_VERSION;
// Before the number of a word that came after "--".
constexpr char kLiteral[] = "\x01--";
constexpr char kFooterBegin[] =
    "Answers go to standard output, everything else to standard error.\nExit status:\n";
constexpr char kFooterEnd[] =
    "'camcfg help COMMAND' shows what a command takes, 'camcfg help' lists further topics.";

std::string footerOf(const Command& command) {
  const std::string details = command.details ? command.details() + "\n" : "";
  const std::string examples = command.examples.empty() ? "" : "\n\n" + examplesOf(command);
  return details + "'camcfg --help' lists the options that every command takes.\n\nExit status:\n" +
         exitStatuses(&command) + examples;
}

HostFile read(const std::string& path) {
  const Descriptor file(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  HostFile read{path, "", ""};
  if (!file || !readAll(file.get(), read.contents)) read.fault = std::strerror(errno);
  return read;
}

std::string contentsOf(const std::string& path) {
  HostFile file = read(path);
  if (!file.fault.empty()) throw Refusal::about(path, path + ": " + file.fault);
  return std::move(file.contents);
}

std::vector<std::string> namesIn(const std::string& directory, const char* ending) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error))
    if (entry.path().extension() == ending) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

// The files of a directory that are there.
std::vector<HostFile> filesIn(const std::string& directory, const Option& option) {
  const Descriptor folder(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder && errno == ENOTDIR && option.isFolderOrFile)
    return {{directory, contentsOf(directory), ""}};
  if (!folder) throw Refusal::about(directory, directory + ": " + std::strerror(errno));
  std::vector<HostFile> files;
  std::vector<std::string> names(option.files.begin(), option.files.end());
  if (option.ending != nullptr) names = namesIn(directory, option.ending);
  for (const std::string& name : names) {
    const Descriptor file(openat(folder.get(), name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file && errno == ENOENT) continue;
    HostFile& read = files.emplace_back(HostFile{name, "", ""});
    if (!file || !readAll(file.get(), read.contents)) read.fault = std::strerror(errno);
  }
  if (option.listed != nullptr)
    for (const std::string& name : namesIn(directory, option.listed))
      files.push_back({name, "", ""});
  return files;
}

// The parser's tree of commands, made from the records.
class Parser {
 public:
  explicit Parser(const std::vector<CommandGroup>& groups, const Command* unnamed = nullptr)
      : groups_(groups), unnamed_(unnamed) {
    app_.name(kTool);
    app_.footer([] { return kFooterBegin + exitStatuses(nullptr) + kFooterEnd; });
    for (const Option& option : globalOptions()) addGlobal(option);
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
    invocation.json = asksForJson(groups_, argc, argv);
    const int own = wordsOfTheTool(groups_, argc, argv);
    others_.assign(argv + std::max(own, 1) - 1, argv + argc);
    const std::vector<std::string> words = withoutLiterals(own, argv);
    std::vector<const char*> pointers;
    pointers.reserve(words.size());
    for (const std::string& word : words) pointers.push_back(word.c_str());
    try {
      app_.parse(static_cast<int>(pointers.size()), pointers.data());
    } catch (const CLI::CallForHelp&) {
      invocation.answer = helpOn(selected());
      return invocation;
    } catch (const CLI::CallForVersion&) {
      invocation.answer = {Json{{"name", kTool}, {"version", CAMCFG_VERSION}},
                           {Line{kVersionText}}};
      return invocation;
    } catch (const CLI::ParseError& error) {
      refuseUnknownWords();
      // "NAME is required", "--pan: 1 required VALUE missing"
      const std::string text = error.what();
      refuse(text.substr(0, text.find_first_of(": ")), text);
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

  void addGlobal(const Option& option) {
    if (option.name == std::string_view(kHelp))
      app_.set_help_flag(namesOf(option), option.help);
    else if (option.name == std::string_view(kVersion))
      app_.set_version_flag(namesOf(option), kVersionText, option.help);
    else
      add(app_, option);
  }

  void add(const Command& command, const char* group) {
    CLI::App& parent = command.above().empty() ? app_ : *apps_.at(command.above());
    CLI::App* app = parent.add_subcommand(command.word(), command.help);
    app->group(command.hidden ? "" : &parent == &app_ ? group : "Commands");
    app->footer([&command] { return footerOf(command); });
    prepare(*app);
    // Whether a heading needs its arguments is known with the command below it.
    for (const Option& option : command.options)
      add(*app, option).required(option.isRequired() && command.run);
    apps_[command.name] = app;
    commands_[app] = &command;
  }

  // Words after "--" are arguments, whatever they look like. The parser gives up where an option that
  // takes many has one already, so it is given names for them that look like arguments.
  std::vector<std::string> withoutLiterals(int argc, const char* const* argv) {
    std::vector<std::string> words(argv, argv + argc);
    const auto mark = std::find(words.begin(), words.end(), "--");
    if (mark == words.end()) return words;
    for (auto word = words.erase(mark); word != words.end(); ++word) {
      literals_.push_back(*word);
      *word = kLiteral + std::to_string(literals_.size() - 1);
    }
    return words;
  }

  std::string meant(const std::string& word) const {
    if (!beginsWith(word, kLiteral)) return word;
    const std::optional<std::int32_t> index = decimal32(word.substr(std::strlen(kLiteral)));
    const bool isKnown =
        index && *index >= 0 && static_cast<std::size_t>(*index) < literals_.size();
    return isKnown ? literals_[static_cast<std::size_t>(*index)] : word;
  }

  static std::string namesOf(const Option& option) {
    return (option.shortName == nullptr ? "" : std::string(option.shortName) + ",") + option.name;
  }

  static CLI::Option& add(CLI::App& app, const Option& option) {
    if (option.isNamed() && option.value() == nullptr)
      return *app.add_flag(namesOf(option), option.help)->disable_flag_override();
    CLI::Option* added = app.add_option(namesOf(option), CLI::callback_t(), option.help);
    if (option.isNamed()) added->type_name(option.value());
    if (option.kind == Option::Values) added->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    if (option.takesMany())
      added->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
    return *added;
  }

  // The command that was named, or the tool itself.
  const CLI::App& selected() const {
    const CLI::App* app = &app_;
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return *app;
  }

  // A command with what those above it require, as it has to be typed.
  std::string usage(const CLI::App& app) const {
    const CLI::App* parent = app.get_parent();
    if (parent == nullptr) return app.get_name();
    std::string words = usage(*parent);
    if (parent != &app_ && !commands_.at(&app)->standsAlone)
      for (const Option& option : commands_.at(parent)->options)
        if (option.isRequired()) words += std::string(" ") + option.name;
    return words + " " + app.get_name();
  }

  std::string help(const CLI::App& app) const {
    const std::string text =
        app.get_formatter()->make_help(&app, usage(app), CLI::AppFormatMode::Normal);
    return text.substr(0, text.find_last_not_of('\n') + 1) + "\n";
  }

  Answer helpOn(const CLI::App& app) const {
    const auto found = commands_.find(&app);
    const bool isTool = found == commands_.end();
    const std::string text = help(app);
    return {Json{{"command", isTool ? Json() : Json(found->second->name)},
                 {"help", isTool ? kAbout : found->second->help},
                 {"text", text}},
            {Verbatim{text}}};
  }

  [[noreturn]] void refuse(const std::string& place, const std::string& text,
                           const std::string& suggestion = "") const {
    const auto found = commands_.find(&selected());
    const std::string command = found == commands_.end() ? "" : found->second->name;
    const std::string help = "; see 'camcfg " + command + (command.empty() ? "" : " ") + "--help'";
    const Refusal refusal =
        Refusal::about(place, text + (suggestion.empty() ? help : suggestion), Status::Usage);
    throw refusal.after(command.empty() ? "" : command + ": ", Status::Usage);
  }

  void refuseUnknownWords() const {
    for (const std::string& given : app_.remaining(true)) {
      if (given == "--") continue;
      const CLI::App& app = selected();
      if (given.size() > 1 && given[0] == '-') {
        // What follows the sign may be a secret.
        const std::string name = given.substr(0, given.find('='));
        refuse(name, "unknown option " + tool::quoted(name), didYouMean(name, optionsOf(app)));
      }
      const std::string word = meant(given);
      if (!commandsBelow(app).empty())
        refuse(word, "unknown command " + tool::quoted(word), didYouMean(word, commandsBelow(app)));
      refuse(word, "unexpected argument " + tool::quoted(word));
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
    invocation.command = found == commands_.end() ? unnamed_ : found->second;
    if (invocation.command == nullptr || !invocation.command->run)
      refuse("", "a command is missing");
    if (app_.count(kRoot) != 0) invocation.root = textsOf(app_, kRoot).front();
    if (app_.count(kColor) != 0) invocation.color = chosenColor();
    invocation.json = app_.count(kJson) != 0;
    invocation.verbose = app_.count(kVerbose) != 0;
    if (invocation.command->becomesProgram) {
      Arguments::Given& root = invocation.arguments[kRoot];
      if (invocation.root) root.texts = {*invocation.root};
    }
    for (const CLI::App* named = &app; named != &app_; named = named->get_parent())
      for (const Option& option : commands_.at(named)->options) {
        if (named != &app && option.isRequired() && !invocation.command->standsAlone &&
            textsOf(*named, option.name).empty())
          refuse(option.name, std::string(option.name) + " is required");
        give(invocation, option, textsOf(*named, option.name));
        if (invocation.command->becomesProgram && option.takesMany())
          invocation.arguments[option.name].texts = {others_.begin() + 1, others_.end()};
      }
    if (invocation.command->takesCommand) takeCommand(invocation);
  }

  // Options that every command takes may be given to either.
  void takeCommand(Invocation& invocation) const {
    std::vector<const char*> words = {kTool};
    words.insert(words.end(), others_.begin(), others_.end());
    Invocation inner = readCommandLine(groups_, static_cast<int>(words.size()), words.data());
    invocation.json = invocation.json || inner.json;
    invocation.verbose = invocation.verbose || inner.verbose;
    if (inner.root) invocation.root = inner.root;
    if (inner.color != "auto") invocation.color = inner.color;
    if (inner.command == nullptr) {
      invocation.command = nullptr;
      invocation.answer = std::move(inner.answer);
      return;
    }
    if (!inner.command->changesSettings)
      refuse(inner.command->name, tool::quoted(inner.command->name) +
                                      " cannot be tried; only commands that change settings can");
    invocation.arguments.setInner(*inner.command, std::move(inner.arguments));
  }

  std::string chosenColor() const {
    std::string word = textsOf(app_, kColor).back();
    if (isAmong(kColorWords, word)) return word;
    refuse(kColor, std::string(kColor) + ": '" + word + "' is none of " + joined(kColorWords),
           didYouMean(word, {std::begin(kColorWords), std::end(kColorWords)}));
  }

  std::vector<std::string> textsOf(const CLI::App& app, const char* name) const {
    std::vector<std::string> texts = app.get_option(name)->results();
    for (std::string& text : texts) text = meant(text);
    return texts;
  }

  // Whatever is outside the device's root is opened now, before the root is entered.
  static void give(Invocation& invocation, const Option& option,
                   const std::vector<std::string>& texts) try {
    Arguments::Given& given = invocation.arguments[option.name];
    if (texts.empty()) return;
    if (option.kind == Option::HostFiles) {
      given.files.resize(texts.size());
      std::transform(texts.begin(), texts.end(), given.files.begin(), read);
      if (option.isReplaced)
        for (HostFile& file : given.files) locate(file);
    } else if (option.isHostFile()) {
      given.texts = {contentsOf(texts.front())};
    } else if (option.kind == Option::HostFolder) {
      given.files = filesIn(texts.front(), option);
      given.texts = texts;
    } else if (option.kind == Option::HostDirectory) {
      given.directory = std::make_unique<HostDirectory>(texts.front());
    } else {
      given.texts = texts;
    }
  } catch (const Refusal& refusal) {
    throw refusal.after(std::string(invocation.command->name) + ": " + option.name + " ",
                        invocation.command->whenRefused);
  } catch (const std::bad_alloc&) {
    throw Refusal(option.name + std::string(": out of memory"))
        .after(std::string(invocation.command->name) + ": ", invocation.command->whenRefused);
  }

  const std::vector<CommandGroup>& groups_;
  const Command* const unnamed_;
  CLI::App app_{kAbout};
  std::map<std::string, CLI::App*> apps_;
  std::map<const CLI::App*, const Command*> commands_;
  std::vector<std::string> literals_;
  std::vector<const char*> others_;  // words of another program or command, the first included
};

}  // namespace

std::string helpText(const std::vector<CommandGroup>& groups, const std::string& command) {
  return Parser(groups).help(command);
}

Invocation readCommandLine(const std::vector<CommandGroup>& groups, int argc,
                           const char* const* argv, const Command* unnamed) {
  return Parser(groups, unnamed).parse(argc, argv);
}

}  // namespace camcfg::tool::cli
