#ifndef CAMCFG_TOOL_CLI_PARSED_WORDS_H
#define CAMCFG_TOOL_CLI_PARSED_WORDS_H

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

/// What the words of a command line are, by the records of the commands: names of commands, options
/// with their values, and arguments. Options of the tool and of every command that was named may be
/// anywhere after it; an argument is of the last of these commands that still takes one. Words after
/// "--" are no options.
class ParsedWords {
 public:
  /// What makes a command line wrong.
  struct Fault {
    std::string place;  ///< the option or argument
    std::string text;   ///< "NAME is required"
  };
  /// A word that nothing takes.
  struct Stray {
    std::string word;
    bool isOption;  ///< it looks like one
  };

  /// @param groups  the commands; must outlive this object
  /// @param argv    the tool's name and the words
  ParsedWords(const std::vector<CommandGroup>& groups, int argc, const char* const* argv);

  /// The command that was named; null if none was.
  const Command* command() const noexcept { return named_.empty() ? nullptr : named_.back(); }
  /// The same after those above it.
  const std::vector<const Command*>& named() const noexcept { return named_; }
  /// What was given to an option of one of these, or for an argument; "true" each time for a flag.
  std::vector<std::string> texts(const Option& option) const;
  /// The same, of an option that every command takes.
  std::vector<std::string> texts(const char* name) const { return texts(global(name)); }
  bool given(const char* name) const { return count(global(name)) != 0; }

  /// The first word that nothing takes; null if there is none.
  const Stray* stray() const noexcept { return strays_.empty() ? nullptr : &strays_.front(); }
  /// An option without its value, or a flag with one. What follows it was not read.
  const std::optional<Fault>& fault() const noexcept { return fault_; }
  /// An option that was given more often than its command takes it.
  std::optional<Fault> repetition() const;
  /// An argument that the command needs and was not given.
  std::optional<Fault> lack() const;

 private:
  struct Given {
    const Option* option;
    std::string text;
  };

  static const Option& global(const char* name);
  std::size_t count(const Option& option) const noexcept;
  bool lacks(const Option& option) const noexcept;
  const Command* below(const std::string& word) const;
  const Option* find(const std::string& name) const;

  void take(const std::string& word);
  void takeArgument(const std::string& word, bool isOption);
  void takeLong(const std::string& word);
  void takeShort(const std::string& word);
  void takeFlag(const Option& option, const std::string& name, const std::string& value);
  void takeValue(const Option& option, const std::string& value);

  const std::vector<CommandGroup>& groups_;
  std::vector<std::string> words_;  // without the first "--"
  std::size_t next_ = 0;            // of these, the first that is not taken yet
  std::vector<const Command*> named_;
  std::vector<Given> given_;
  std::vector<Stray> strays_;
  std::optional<Fault> fault_;
};

}  // namespace camcfg::tool::cli

#endif
