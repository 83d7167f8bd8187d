#include "cli/tone.h"

#include <cstdlib>
#include <iterator>

#include "base/printable.h"

namespace camcfg::tool::cli {
namespace {

struct State {
  const char* word;
  Tone tone;
};
constexpr State kStates[] = {
    {"good", Tone::Good},        {"ok", Tone::Good},        {"well", Tone::Good},
    {"missing", Tone::Bad},      {"damaged", Tone::Bad},    {"no-element", Tone::Bad},
    {"unreadable", Tone::Bad},   {"not-a-file", Tone::Bad}, {"cut-short", Tone::Bad},
    {"unusable", Tone::Bad},     {"error", Tone::Bad},      {"out-of-step", Tone::Warning},
    {"degraded", Tone::Warning}, {"warning", Tone::Warning}};

constexpr const char* kSequences[] = {"", "\x1b[32m", "\x1b[33m", "\x1b[31m", "\x1b[2m", "\x1b[1m"};
static_assert(std::size(kSequences) == static_cast<std::size_t>(Tone::New) + 1);
constexpr char kEnd[] = "\x1b[0m";

std::string variable(const char* name) {
  const char* value = getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

Tone toneOfState(const std::string& word) {
  for (const State& state : kStates)
    if (word == state.word) return state.tone;
  return Tone::Plain;
}

std::string coloured(const std::string& text, Tone tone) {
  if (tone == Tone::Plain || text.empty()) return text;
  return kSequences[static_cast<std::size_t>(tone)] + text + kEnd;
}

std::size_t shownWidth(const std::string& text) {
  std::string shown;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\x1b')
      at = text.find('m', at);
    else
      shown += text[at];
  }
  return characters(shown);
}

bool wantsColours(const std::string& when, bool isTerminal) {
  if (when != "auto") return when == "always";
  const std::string terminal = variable("TERM");
  return isTerminal && !terminal.empty() && terminal != "dumb" && variable("NO_COLOR").empty();
}

}  // namespace camcfg::tool::cli
