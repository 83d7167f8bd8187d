#include "base/outcome.h"

namespace camcfg::tool {
namespace {

bool isChanged = false;

// How long the place is at the beginning of a text; 0 if there is none.
std::size_t placeLengthIn(const std::string& text) {
  const std::string word = text.substr(0, text.find(' '));
  if (word.size() > 1 && word.back() == ':' && word.size() < text.size()) return word.size() - 1;
  return word.compare(0, 1, "/") == 0 || word.compare(0, 2, "--") == 0 ? word.size() : 0;
}

}  // namespace

Refusal::Refusal(Status status, const std::string& text)
    : Refusal(status, text, 0, placeLengthIn(text)) {}

Refusal Refusal::about(const std::string& place, const std::string& text, Status status) {
  const std::size_t at = text.find(place);
  return at == std::string::npos ? Refusal(status, text) : Refusal(status, text, at, place.size());
}

Refusal Refusal::after(const std::string& beginning, Status status) const {
  return {status, beginning + what(), beginning.size() + placeAt_, placeLength_};
}

void noteChange() {
  isChanged = true;
}

bool changeWasMade() {
  return isChanged;
}

}  // namespace camcfg::tool
