#include "report/remedy.h"

#include <algorithm>
#include <iterator>

#include "base/plain_text.h"

namespace camcfg::tool::report {
namespace {

// A word of a command line.
std::string asWord(const std::string& text) {
  constexpr char kPlain[] =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./=:,+";
  if (text.find_first_not_of(kPlain) == std::string::npos) return text;
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

// Commands that rules name, by the places that they are for.
struct Spoken {
  const char* place;
  const char* command;
};
constexpr Spoken kSpoken[] = {
    {"stream.caches[", "camcfg stream cache "}, {"stream.sources[", "camcfg stream source "},
    {"live.srt[", "camcfg live srt "},          {"presets[", "camcfg preset "},
    {"network.cards.", "camcfg network set "},  {"network.hostname", "camcfg network hostname "},
    {"System/", "camcfg set System/"},          {"", "camcfg verify"}};

// The key of an entry, the name of a card.
std::string keyIn(const std::string& place) {
  if (beginsWith(place, "network.cards.")) {
    const std::string card = place.substr(place.find("cards.") + 6);
    return card.substr(0, card.find('.'));
  }
  const std::size_t at = place.find('[');
  return at == std::string::npos ? "" : place.substr(at + 1, place.rfind(']') - at - 1);
}

// A command that a rule names for such places, about this one; empty if there is none.
std::string commandIn(const std::string& fix, const std::string& place) {
  constexpr char kBegin[] = "'camcfg ";
  for (std::size_t at = fix.find(kBegin); at != std::string::npos; at = fix.find(kBegin, at + 1)) {
    std::string command = fix.substr(at + 1, fix.find('\'', at + 1) - at - 1);
    const bool isFor = std::any_of(std::begin(kSpoken), std::end(kSpoken), [&](const Spoken& each) {
      return beginsWith(command, each.command) &&
             (*each.place == '\0' ? place.empty() : beginsWith(place, each.place));
    });
    if (!isFor) continue;
    for (const std::string key : {" ID", " PRESET", " CARD"})
      if (const std::size_t found = command.find(key + " "); found != std::string::npos)
        command.replace(found + 1, key.size() - 1, asWord(keyIn(place)));
    return command;
  }
  return "";
}

}  // namespace

std::string remedyFor(const std::string& place, const std::string& fix) {
  std::string command = commandIn(fix, place);
  if (!command.empty() || place.empty()) return command;
  const bool isEntry = place.back() == ']';
  const bool isSetting =
      place.find('/') != std::string::npos || place.find("].") != std::string::npos ||
      (beginsWith(place, "network.cards.") && std::count(place.begin(), place.end(), '.') > 2);
  if (!isSetting && !isEntry) return "camcfg find " + asWord(place);
  return "camcfg set " + asWord(place + (isEntry ? ".MEMBER=VALUE" : "=VALUE"));
}

}  // namespace camcfg::tool::report
