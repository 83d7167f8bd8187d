#ifndef CAMCFG_TOOL_CLI_TONE_H
#define CAMCFG_TOOL_CLI_TONE_H

#include <string>

namespace camcfg::tool::cli {

/// What a piece of text means to its reader.
enum class Tone { Plain, Good, Warning, Bad, Former, New };

/// What the word for a state means: "good", "damaged". Other words are plain.
Tone toneOfState(const std::string& word);

/// The text as a terminal colours it.
std::string coloured(const std::string& text, Tone tone);

/// How many characters of a text a terminal shows; colours take no room.
std::size_t shownWidth(const std::string& text);

/// Whether to colour what goes to a place.
/// @param when        "auto", "always" or "never"
/// @param isTerminal  whether the place is a terminal, which "auto" asks for; not one that calls
///                    itself "dumb", nor where NO_COLOR is set and not empty
bool wantsColours(const std::string& when, bool isTerminal);

}  // namespace camcfg::tool::cli

#endif
