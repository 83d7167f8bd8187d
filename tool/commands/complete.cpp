#include <cstdlib>

#include "base/plain_text.h"
#include "base/printable.h"
#include "base/refusal.h"
#include "cli/completion.h"
#include "cli/shell_line.h"
#include "commands/groups.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kLine[] = "LINE";
constexpr char kBreaks[] = "BREAKS";
constexpr char kWord[] = "WORD";
constexpr char kHome[] = "~/";

// What the shell is to complete: words that follow, or names that it knows itself.
const char* wordFor(cli::CompletionPlace::Kind kind) {
  constexpr const char* kWords[] = {"words", "files", "directories"};
  return kWords[kind];
}

// The shell has not yet put in the user's own directory.
std::string expanded(const std::string& directory) {
  const char* home = getenv("HOME");
  const bool isAtHome = home != nullptr && beginsWith(directory, kHome);
  return isAtHome ? home + directory.substr(1) : directory;
}

// A device that cannot be read offers no words, and whoever presses the key does not learn why.
std::vector<cli::Candidate> candidatesAt(const cli::CompletionPlace& place) {
  try {
    if (place.words && place.root && !enterRoot(expanded(*place.root)).empty()) return {};
    return place.candidates();
  } catch (const Refusal&) {
    return {};
  }
}

cli::Answer answerWith(cli::CompletionPlace::Kind kind, const std::vector<std::string>& words) {
  std::string lines = std::string(wordFor(kind)) + "\n";
  for (const std::string& word : words) lines += word + "\n";
  return {Json{{"complete", wordFor(kind)}, {"words", words}}, {cli::Verbatim{lines}}};
}

// bash puts each word in as it is given it: quoted, and without what stays on the line.
cli::Answer forBash(const cli::Arguments& arguments) {
  cli::ShellLine line = cli::readShellLine(arguments.text(kLine), arguments.text(kBreaks));
  const std::string begun = line.words.back();
  line.words.erase(line.words.begin());
  const cli::CompletionPlace place = cli::placeIn(allGroups(), line.words);
  std::vector<std::string> words;
  for (const cli::Candidate& candidate : candidatesAt(place))
    if (beginsWith(candidate.word, begun))
      words.push_back(cli::shellQuoted(candidate.word.substr(line.kept.size()), line.quote));
  return answerWith(place.kind, words);
}

// zsh chooses and quotes itself, and takes "WORD:WHAT IT IS" with its own colons escaped.
cli::Answer forZsh(const cli::Arguments& arguments) {
  const cli::CompletionPlace place = cli::placeIn(allGroups(), arguments.texts(kWord));
  std::vector<std::string> words;
  for (const cli::Candidate& candidate : candidatesAt(place)) {
    std::string word;
    for (const char c : candidate.word)
      word += c == ':' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    words.push_back(candidate.help.empty() ? word : word + ":" + printable(candidate.help));
  }
  return answerWith(place.kind, words);
}

}  // namespace

cli::CommandGroup completeGroup() {
  return {
      "For shells",
      {{"complete", "Show a shell what may be typed next", {}, nullptr, Status::Refused, true},
       {"complete bash",
        "Show bash what may be typed at the end of a line",
        {{cli::Option::Argument, kLine, "The line up to the cursor"},
         {cli::Option::Argument, kBreaks, "Characters that break words when they are completed"}},
        forBash,
        Status::Refused,
        true},
       {"complete zsh",
        "Show zsh what may be in the place of the last word",
        {{cli::Option::Arguments, kWord, "The line's words after the tool's name"}},
        forZsh,
        Status::Refused,
        true}}};
}

}  // namespace camcfg::tool::commands
