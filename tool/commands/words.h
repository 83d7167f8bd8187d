#ifndef CAMCFG_TOOL_COMMANDS_WORDS_H
#define CAMCFG_TOOL_COMMANDS_WORDS_H

#include <vector>

#include "cli/command.h"

namespace camcfg::tool::commands {

// The words that the device has, for the completion of command lines. Each is a `Words`: it
// looks at what is given on the command line before it, and throws a Refusal if the device's
// files are unusable. They load nothing but the file that the words are in.

using Candidates = std::vector<cli::Candidate>;

/// Gives the arguments and options that say nothing of the words that may be there those that go
/// by their names: what is called SECTION takes the name of a section.
void addWords(std::vector<cli::CommandGroup>& groups);

/// For an argument that is named like another one, but whose words nobody knows.
Candidates anyWord(const cli::Arguments& before);

/// A choice of these words.
cli::WordFinder oneOf(std::vector<const char*> words);

Candidates sectionWords(const cli::Arguments& before);
/// Parameters of the SECTION given, or of all; what each is set to helps to choose.
Candidates parameterWords(const cli::Arguments& before);
/// What may be set: the words of the CARD's FIELD given, or the texts of the parameter NAME of the
/// SECTION given.
Candidates valueWords(const cli::Arguments& before);

Candidates cardWords(const cli::Arguments& before);
Candidates cardFieldWords(const cli::Arguments& before);

/// Ids and descriptions.
Candidates presetWords(const cli::Arguments& before);
Candidates presetIdWords(const cli::Arguments& before);

Candidates sourceIdWords(const cli::Arguments& before);
Candidates cacheIdWords(const cli::Arguments& before);
/// Sources that the cache ID given allows.
Candidates allowedSourceWords(const cli::Arguments& before);

/// Everything of the media file that has an id: "source", "cache", and the live media services.
Candidates mediaKindWords(const cli::Arguments& before);
/// Ids of the KIND given; names, for RTSP sessions.
Candidates mediaIdWords(const cli::Arguments& before);

Candidates languageWords(const cli::Arguments& before);
/// Keys of the LANGUAGE given.
Candidates textKeyWords(const cli::Arguments& before);

}  // namespace camcfg::tool::commands

#endif
