#include "upgrade/limits.h"

#include <algorithm>
#include <optional>

#include "base/concat.h"
#include "base/plain_text.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::upgrade {
namespace {

using settings::Objection;
using settings::Range;
using tinyxml2::XMLElement;

constexpr settings::Setting const* kNone = nullptr;

// The setting that a card's element is; null for other parameters.
const settings::Setting* cardSettingOf(const XMLElement& element) {
  const tinyxml2::XMLNode* card = element.Parent();
  const XMLElement* network = card->Parent() == nullptr ? nullptr : card->Parent()->ToElement();
  const bool isCard = network != nullptr && network->Name() == std::string_view("NetWork");
  return isCard ? settings::cardSettingOf(element.Name()) : kNone;
}

// Whether an element says what it permits.
bool hasLimits(const XMLElement& element) {
  if (settings::ParameterForm(element).isInteger())
    return settings::integerIn(element, "Min") && settings::integerIn(element, "Max");
  return element.Attribute("OptTxt") != nullptr;
}

Objection objectionIn(const XMLElement& element, const std::string& value) {
  const settings::Setting* card = cardSettingOf(element);
  if (card != nullptr && value.empty()) return {};
  if (card != nullptr)
    return settings::objectionTo(*card, value, settings::limitsIn(element, card->limits));
  return hasLimits(element) ? settings::ParameterForm(element).objectionTo(value) : Objection();
}

bool isNumber(const XMLElement& element) {
  const settings::Setting* card = cardSettingOf(element);
  return card != nullptr ? card->kind == settings::Kind::Integer
                         : settings::ParameterForm(element).isInteger();
}

Range limitsOf(const XMLElement& element) {
  const settings::Setting* card = cardSettingOf(element);
  return settings::limitsIn(element, card == nullptr ? Range() : card->limits);
}

// How far a number is above the step below it.
std::int64_t offStep(const XMLElement& element, std::int64_t number) {
  const std::int64_t step = settings::integerIn(element, "Step").value_or(1);
  const std::int64_t least = limitsOf(element).least;
  return step > 1 && number >= least ? (number - least) % step : 0;
}

std::int64_t nearestIn(const XMLElement& element, std::int64_t number) {
  const Range limits = limitsOf(element);
  const std::int64_t within = std::clamp(number, limits.least, limits.most);
  const std::int64_t off = offStep(element, within);
  const std::int64_t step = settings::integerIn(element, "Step").value_or(1);
  const bool isUp = off != 0 && 2 * off >= step && within - off + step <= limits.most;
  return within - off + (isUp ? step : 0);
}

// A text, or what is no number.
Permitted textFor(const XMLElement& element, const XMLElement* previous, const std::string& value,
                  const std::string& factory) {
  const Objection now = objectionIn(element, value);
  if (now.why.empty()) return {value, ""};
  const bool wasMinded = previous != nullptr && !objectionIn(*previous, value).why.empty();
  if (now.canBeForced && wasMinded) return {value, ""};
  return {factory, now.why + "; it has the factory value"};
}

}  // namespace

Permitted permittedFor(const XMLElement& element, const XMLElement* previous,
                       const std::string& value, const std::string& factory) {
  const std::optional<long long> number = decimal(value);
  if (!isNumber(element) || !number) return textFor(element, previous, value, factory);
  const Range limits = limitsOf(element);
  if (limits.least > limits.most) return {value, ""};
  if (!limits.has(*number))
    return {std::to_string(nearestIn(element, *number)),
            concat(value, " is outside ", limits.text(), "; it has the nearest permitted value")};
  const bool wasOnStep = previous == nullptr || offStep(*previous, *number) == 0;
  if (offStep(element, *number) == 0 || !wasOnStep) return {value, ""};
  return {std::to_string(nearestIn(element, *number)),
          concat(value, " is not on a step of ", textOf(element, "Step"),
                 "; it has the nearest permitted value")};
}

}  // namespace camcfg::tool::upgrade
