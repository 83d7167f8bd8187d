#ifndef CAMCFG_TOOL_CLI_COMPLETION_H
#define CAMCFG_TOOL_CLI_COMPLETION_H

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

/// The place of a word that is being typed, by the records of the commands.
struct CompletionPlace {
  enum Kind { OfWords, OfFiles, OfDirectories };
  Kind kind = OfWords;
  std::vector<Candidate> fixed;     ///< commands and options that may be there
  WordFinder words;                 ///< finds what else may; may be empty
  Arguments before;                 ///< what is given before it
  std::string prefix;               ///< part of the word that is settled: "--format="
  std::optional<std::string> root;  ///< the device that the command line is about

  /// Everything that may be there, whole words; asks the device if it has to. What cannot be
  /// typed, having control characters, is left out.
  /// @throws Refusal if the device cannot be read
  std::vector<Candidate> candidates() const;
};

/// Finds the place of the last word of a command line.
/// @param words  the command line without the tool's name; the last is the begun one, maybe empty
CompletionPlace placeIn(const std::vector<CommandGroup>& groups,
                        const std::vector<std::string>& words);

/// A command line as it is typed into a shell, up to the cursor.
struct ShellLine {
  std::vector<std::string> words;  ///< without their quotes; the last is the begun one, maybe empty
  char quote = 0;                  ///< the quote that is open at the end; 0: none
  /// What the shell leaves in place of the last word when it completes it, without quotes: all up to
  /// the last character that breaks words, or up to the open quote.
  std::string kept;
};

/// Reads a line as bash does; variables and substitutions stand for themselves.
/// @param breaks  the characters that break words when bash completes them (COMP_WORDBREAKS)
ShellLine readShellLine(const std::string& line, const std::string& breaks);

/// A text as it has to be typed after an open quote, or outside of quotes.
std::string shellQuoted(const std::string& text, char quote);

}  // namespace camcfg::tool::cli

#endif
