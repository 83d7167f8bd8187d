#ifndef CAMCFG_TOOL_COMMANDS_VOCABULARY_H
#define CAMCFG_TOOL_COMMANDS_VOCABULARY_H

#include <vector>

#include "cli/command.h"

namespace camcfg::tool::commands {

/// Gives the arguments and options that say nothing of the words that may stand there those that go
/// by their names: what is called SECTION takes the name of a section.
void addWords(std::vector<cli::CommandGroup>& groups);

/// For an argument that is named like another one, but whose words nobody knows.
std::vector<cli::Candidate> anyWord(const cli::Arguments& before);

/// A choice of these words.
cli::WordFinder oneOf(std::vector<const char*> words);

}  // namespace camcfg::tool::commands

#endif
