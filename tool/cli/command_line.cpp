#include "cli/command_line.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "base/concat.h"
#include "base/plain_text.h"
#include "cli/help_page.h"
#include "cli/parsed_words.h"
#include "cli/raw_line.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kVersionText[] = "camcfg " CAMCFG_VERSION;

HostFile read(const std::string& path) {
  const Descriptor file(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  HostFile read{path, "", ""};
  if (!file || !readAll(file.get(), read.contents)) read.fault = std::strerror(errno);
  return read;
}

std::string contentsOf(const std::string& path) {
  HostFile file = read(path);
  if (!file.fault.empty()) throw Refusal::about(path, concat(path, ": ", file.fault));
  return std::move(file.contents);
}

std::vector<std::string> namesIn(const Descriptor& folder, std::string_view ending) {
  std::vector<std::string> names;
  for (std::string& name : tool::namesIn(folder.get()))
    if (hasEnding(name, ending)) names.push_back(std::move(name));
  std::sort(names.begin(), names.end());
  return names;
}

// The files of a directory that are there.
std::vector<HostFile> filesIn(const std::string& directory, const Option& option) {
  const Descriptor folder(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder && errno == ENOTDIR && option.isFolderOrFile)
    return {{directory, contentsOf(directory), ""}};
  if (!folder) throw Refusal::about(directory, concat(directory, ": ", std::strerror(errno)));
  std::vector<HostFile> files;
  std::vector<std::string> names(option.files.begin(), option.files.end());
  if (option.ending != nullptr) names = namesIn(folder, option.ending);
  for (const std::string& name : names) {
    const Descriptor file(openat(folder.get(), name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file && errno == ENOENT) continue;
    HostFile& read = files.emplace_back(HostFile{name, "", ""});
    if (!file || !readAll(file.get(), read.contents)) read.fault = std::strerror(errno);
  }
  if (option.listed != nullptr)
    for (const std::string& name : namesIn(folder, option.listed)) files.push_back({name, "", ""});
  return files;
}

// Makes an invocation of what the words of a command line are.
class Reader {
 public:
  Reader(const std::vector<CommandGroup>& groups, int argc, const char* const* argv,
         const Command* unnamed)
      : Reader(groups, argc, argv, wordsOfTheTool(groups, argc, argv), unnamed) {}

  Invocation invocation() const {
    Invocation invocation;
    invocation.json = words_.given(kJson);
    std::optional<ParsedWords::Fault> fault = words_.fault();
    if (!fault && words_.given(kVersion)) {
      invocation.answer = {Json{{"name", kTool}, {"version", CAMCFG_VERSION}},
                           {Line{kVersionText}}};
      return invocation;
    }
    if (!fault) fault = words_.repetition();
    if (!fault && words_.given(kHelp)) {
      invocation.answer = helpOn(words_.command());
      return invocation;
    }
    if (!fault) fault = words_.lack();
    if (const ParsedWords::Stray* stray = words_.stray()) refuse(*stray);
    if (fault) refuse(fault->place, fault->text);
    fill(invocation);
    return invocation;
  }

 private:
  Reader(const std::vector<CommandGroup>& groups, int argc, const char* const* argv, int own,
         const Command* unnamed)
      : groups_(groups),
        unnamed_(unnamed),
        words_(groups, own, argv),
        others_(argv + std::max(own, 1) - 1, argv + argc) {}

  Answer helpOn(const Command* command) const {
    const std::string text = helpPage(groups_, command);
    return {Json{{"command", command == nullptr ? Json() : Json(command->name)},
                 {"help", command == nullptr ? kAbout : command->help},
                 {"text", text}},
            {Verbatim{text}}};
  }

  [[noreturn]] void refuse(const std::string& place, const std::string& text,
                           const std::string& suggestion = "") const {
    const std::string command = words_.command() == nullptr ? "" : words_.command()->name;
    const std::string help =
        concat("; see 'camcfg ", command, command.empty() ? "" : " ", "--help'");
    const Refusal refusal =
        Refusal::about(place, text + (suggestion.empty() ? help : suggestion), Status::Usage);
    throw refusal.after(command.empty() ? "" : command + ": ", Status::Usage);
  }

  [[noreturn]] void refuse(const ParsedWords::Stray& stray) const {
    if (stray.isOption) {
      // What follows the sign may be a secret.
      const std::string name = stray.word.substr(0, stray.word.find('='));
      refuse(name, "unknown option " + tool::quoted(name), didYouMean(name, options()));
    }
    const std::vector<std::string> commands = commandsBelow();
    if (!commands.empty())
      refuse(stray.word, "unknown command " + tool::quoted(stray.word),
             didYouMean(stray.word, commands));
    refuse(stray.word, "unexpected argument " + tool::quoted(stray.word));
  }

  std::vector<std::string> commandsBelow() const {
    std::vector<std::string> names;
    const std::string above = words_.command() == nullptr ? "" : words_.command()->name;
    for (const Command* command : commandsIn(groups_))
      if (!command->hidden && command->above() == above) names.push_back(command->word());
    return names;
  }

  // Of the command that was named and of the tool.
  std::vector<std::string> options() const {
    std::vector<std::string> names = {kHelp};
    if (words_.command() != nullptr)
      for (const Option& option : words_.command()->options)
        if (option.isNamed()) names.emplace_back(option.name);
    for (const Option& option : globalOptions()) names.emplace_back(option.name);
    return names;
  }

  void fill(Invocation& invocation) const {
    const bool isNamed = words_.command() != nullptr;
    invocation.command = isNamed ? words_.command() : unnamed_;
    if (invocation.command == nullptr || !invocation.command->run)
      refuse("", "a command is missing");
    if (words_.given(kRoot)) invocation.root = words_.texts(kRoot).front();
    if (words_.given(kColor)) invocation.color = chosenColor();
    invocation.verbose = words_.given(kVerbose);
    if (invocation.command->becomesProgram) {
      Arguments::Given& root = invocation.arguments[kRoot];
      if (invocation.root) root.texts = {*invocation.root};
    }
    const std::vector<const Command*>& named = words_.named();
    for (auto command = named.rbegin(); command != named.rend(); ++command)
      for (const Option& option : (*command)->options)
        fill(invocation, option, command != named.rbegin());
    if (invocation.command->takesCommand) takeCommand(invocation);
  }

  void fill(Invocation& invocation, const Option& option, bool isOfHeading) const {
    const std::vector<std::string> texts = words_.texts(option);
    if (isOfHeading && option.isRequired() && !invocation.command->standsAlone && texts.empty())
      refuse(option.name, std::string(option.name) + " is required");
    give(invocation, option, texts);
    if (invocation.command->becomesProgram && option.takesMany())
      invocation.arguments[option.name].texts = {others_.begin() + 1, others_.end()};
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
    std::string word = words_.texts(kColor).back();
    if (isAmong(kColorWords, word)) return word;
    refuse(kColor, concat(kColor, ": '", word, "' is none of ", joined(kColorWords)),
           didYouMean(word, {std::begin(kColorWords), std::end(kColorWords)}));
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
    throw refusal.after(concat(invocation.command->name, ": ", option.name, " "),
                        invocation.command->whenRefused);
  } catch (const std::bad_alloc&) {
    throw Refusal(option.name + std::string(": out of memory"))
        .after(std::string(invocation.command->name) + ": ", invocation.command->whenRefused);
  }

  const std::vector<CommandGroup>& groups_;
  const Command* const unnamed_;
  const ParsedWords words_;
  const std::vector<const char*> others_;  // of another program or command, the first included
};

}  // namespace

std::string helpText(const std::vector<CommandGroup>& groups, const std::string& command) {
  return helpPage(groups, command.empty() ? nullptr : findCommand(groups, command));
}

Invocation readCommandLine(const std::vector<CommandGroup>& groups, int argc,
                           const char* const* argv, const Command* unnamed) {
  return Reader(groups, argc, argv, unnamed).invocation();
}

}  // namespace camcfg::tool::cli
