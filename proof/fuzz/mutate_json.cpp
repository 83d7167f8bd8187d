#include <nlohmann/json.hpp>

#include "fuzz/mutation.h"

namespace camcfg::fuzz {
namespace {

// Keeps members in their order.
using Json = nlohmann::ordered_json;

constexpr std::size_t kLongerBy = 64;

void collect(Json& value, std::vector<Json*>& values) {
  values.push_back(&value);
  if (!value.is_structured()) return;
  for (Json& element : value) collect(element, values);
}

// A number that is one in JSON as well.
Json oddValue(Dice& dice) {
  const std::string text = oddText(dice);
  switch (dice.below(4)) {
    case 0:
      return text;
    case 1:
      return dice.oneIn(2) ? Json(nullptr) : Json(dice.oneIn(2));
    case 2:
      return dice.oneIn(2) ? Json::array() : Json::object();
    default: {
      const Json number = Json::parse(text, nullptr, false);
      return number.is_number() ? number : Json(0.5);
    }
  }
}

struct Change {
  Json& value;  // the one that is changed
  std::vector<Json*>& values;
  Dice& dice;
  const ByteMutator& mutateBytes;

  Json& other() const { return *dice.among(values); }

  std::string key() const {
    const auto index = static_cast<std::ptrdiff_t>(dice.below(value.size()));
    return std::next(value.begin(), index).key();
  }
};

void replace(const Change& change) {
  change.value = oddValue(change.dice);
}

void copyOther(const Change& change) {
  const Json copy = change.other();
  change.value = copy;
}

void wrap(const Change& change) {
  const Json copy = change.value;
  change.value = Json::array({copy});
}

void duplicateElement(const Change& change) {
  if (!change.value.is_array() || change.value.empty()) return;
  const Json copy = change.value[change.dice.below(change.value.size())];
  change.value.push_back(copy);
}

void removeChild(const Change& change) {
  if (change.value.is_object() && !change.value.empty())
    change.value.erase(change.key());
  else if (change.value.is_array() && !change.value.empty())
    change.value.erase(change.dice.below(change.value.size()));
}

void renameMember(const Change& change) {
  if (!change.value.is_object() || change.value.empty()) return;
  const std::string key = change.key();
  const Json member = change.value[key];
  change.value.erase(key);
  change.value[change.mutateBytes(key, key.size() + kLongerBy)] = member;
}

void addMember(const Change& change) {
  const Json copy = change.other();
  if (change.value.is_object()) change.value[oddText(change.dice)] = copy;
  if (change.value.is_array()) change.value.push_back(copy);
}

void mutateText(const Change& change) {
  if (!change.value.is_string()) return;
  const auto text = change.value.get<std::string>();
  change.value = change.mutateBytes(text, text.size() + kLongerBy);
}

void moveNumber(const Change& change) {
  if (!change.value.is_number_integer()) return;
  const auto number = change.value.get<std::uint64_t>();
  const std::uint64_t next = change.dice.oneIn(2) ? number + 1 : number - 1;
  change.value = static_cast<std::int64_t>(next);
}

constexpr void (*kChanges[])(const Change&) = {
    replace,   copyOther,  wrap,       duplicateElement, removeChild,
    addMember, mutateText, moveNumber, renameMember,     replace};

}  // namespace

std::string mutateJson(const std::string& text, Dice& dice, const ByteMutator& mutateBytes) {
  Json document = Json::parse(text, nullptr, false);
  if (document.is_discarded()) return text;
  std::vector<Json*> values;
  collect(document, values);
  Json& value = *dice.among(values);
  dice.among(kChanges)({value, values, dice, mutateBytes});
  return document.dump(dice.oneIn(2) ? 1 : -1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace camcfg::fuzz
