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

}  // namespace camcfg::tool::cli

#endif
