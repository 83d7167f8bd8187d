#include <algorithm>
#include <utility>

#include "base/concat.h"
#include "base/plain_text.h"
#include "network/contradictions.h"
#include "network/network.h"
#include "settings/subnet.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Condition;
using settings::Setting;
using tinyxml2::XMLElement;

constexpr char kForced[] = "; '--force' sets it anyway";

[[noreturn]] void refuseUnknown(const std::string& name) {
  std::vector<std::string> known;
  for (const Setting& setting : settings::plainCardSettings()) known.emplace_back(setting.member);
  for (const Setting& setting : settings::cardSettings())
    known.emplace_back(settings::elementOf(setting));
  throw Refusal(concat("cards have no field '", name, "'", didYouMean(name, known)));
}

// "mode=static"
std::string plainly(const Condition& condition, const std::string& word) {
  const Setting& setting = *settings::cardSettingOf(condition.element);
  for (const settings::Word& known : setting.words)
    if (known.written() == word)
      return concat(settings::plainNameOf(setting), "=", known.plainText());
  return concat(settings::plainNameOf(setting), "=", word);
}

// Fields of a card, as they are given and as they follow from those.
class Assignment {
 public:
  Assignment(XMLElement& card, bool force) : card_(card), force_(force) {}

  void add(const std::string& word) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0)
      throw Refusal(Status::Usage, quoted(word) + " is not FIELD=VALUE");
    const std::string name = word.substr(0, sign);
    const std::string text = word.substr(sign + 1);
    const std::vector<const Setting*> called = settings::cardSettingsCalled(name);
    if (called.empty()) refuseUnknown(name);
    if (called.size() == 1) return putTyped(*called.front(), text);
    putList(name, called, text);
  }

  void addConsequences() {
    const Fields given = fields_;
    for (const auto& [setting, value] : given) follow(*setting, setting->onlyWith);
    for (const auto& [setting, value] : Fields(fields_))
      for (const settings::Word& word : setting->words)
        if (word.written() == value) assume(word.brings);
  }

  Json over(Json card) const {
    requireNone(faults_);
    for (const auto& [setting, value] : fields_)
      card[setting->member] = settings::valueIn(*setting, value);
    return card;
  }

  /// Refuses what cannot be on one network, if these fields have to do with that.
  void checkTogether(const Json& card, const Json& cards) const {
    if (force_) return;
    std::vector<std::string> faults;
    addShared(card, cards, faults);
    const Json mode = memberOf(card, *settings::cardSettingOf(kMode));
    const bool isOwn = mode.is_null() || mode == kStatic;
    if (isOwn && concernsAddress()) addMissing(card, faults);
    if (isOwn && concernsAddress() && faults.empty()) addContradictions(card, faults);
    requireNone(faults);
  }

 private:
  using Fields = std::vector<std::pair<const Setting*, std::string>>;

  static constexpr char kMode[] = "IpMode";
  static constexpr char kStatic[] = "StaticIp";

  static void requireNone(const std::vector<std::string>& faults) {
    if (!faults.empty()) throw Refusal(joined(faults, "; "));
  }

  const std::string* valueOf(const Setting& setting) const {
    for (const auto& [known, value] : fields_)
      if (known == &setting) return &value;
    return nullptr;
  }
  const std::string* valueOf(const char* element) const {
    return valueOf(*settings::cardSettingOf(element));
  }

  std::string fault(const Setting& setting, const std::string& why) const {
    return concat(pathOf(card_, setting), ": ", why);
  }
  void refuse(const Setting& setting, const std::string& why) {
    faults_.push_back(fault(setting, why));
  }

  // Of a netmask that was typed as a prefix length.
  static std::optional<std::string> maskOf(const Setting& setting, const std::string& text) {
    const settings::Settings& all = settings::cardSettings();
    const bool isMask = std::any_of(all.begin(), all.end(), [&](const Setting& other) {
      return other.prefixSets != nullptr && settings::cardSettingOf(other.prefixSets) == &setting;
    });
    return isMask ? settings::maskOfPrefix(text) : std::nullopt;
  }

  // A value as it was typed: a word as people say it, an address with a prefix length.
  void putTyped(const Setting& setting, const std::string& text) {
    const std::size_t slash = setting.prefixSets == nullptr ? std::string::npos : text.find('/');
    if (slash == std::string::npos)
      return put(setting, maskOf(setting, text).value_or(settings::fromPlain(setting, text)));
    const std::string length = text.substr(slash + 1);
    const std::optional<std::string> mask = settings::maskOfPrefix(length);
    if (!mask) return refuse(setting, quoted(length) + " is not a prefix length, 1..32");
    put(setting, text.substr(0, slash));
    put(*settings::cardSettingOf(setting.prefixSets), *mask);
  }

  // What is not in the list is empty then.
  void putList(const std::string& name, std::vector<const Setting*> called,
               const std::string& text) {
    const auto isMissing = [&](const Setting* setting) {
      return childOf(card_, settings::elementOf(*setting)) == nullptr;
    };
    const Setting& first = *called.front();
    called.erase(std::remove_if(called.begin(), called.end(), isMissing), called.end());
    if (called.empty()) return put(first, text);
    const std::vector<std::string> values = parts(text, ',');
    if (values.size() > called.size())
      return refuse(first, concat(name, "= has ", values.size(), " values, the card has room for ",
                                  called.size()));
    for (std::size_t i = 0; i < called.size(); ++i)
      put(*called[i], i < values.size() ? values[i] : "");
  }

  void put(const Setting& setting, const std::string& value) {
    if (valueOf(setting) != nullptr) return refuse(setting, "it is given twice");
    const XMLElement* element = childOf(card_, settings::elementOf(setting));
    if (element == nullptr) return refuse(setting, "the card has no such element");
    const std::string why = objectionTo(setting, *element, value);
    if (!why.empty()) refuse(setting, why);
    fields_.emplace_back(&setting, value);
  }

  std::string objectionTo(const Setting& setting, const XMLElement& element,
                          const std::string& value) const {
    if (!setting.words.empty() && !isAmong(settings::wordsOf(setting), value)) {
      const std::vector<std::string> words = settings::plainWordsOf(setting);
      return concat(quoted(value), " is none of ", joined(words),
                    settings::nearestOf(value, words));
    }
    const settings::Range limits = settings::limitsIn(element, setting.limits);
    return settings::objectionTo(setting, value, limits).refusal(force_);
  }

  // What a field is only used with.
  void follow(const Setting& setting, const Condition& condition) {
    if (condition.element == nullptr) return;
    const std::string* value = valueOf(condition.element);
    if (value == nullptr) return assume(condition);
    if (*value == condition.word || isAmong(contradicted_, condition.element)) return;
    contradicted_.emplace_back(condition.element);
    refuse(setting, concat("it is for ", plainly(condition, condition.word), ", and ",
                           plainly(condition, *value), " is given"));
  }

  void assume(const Condition& condition) {
    if (condition.element == nullptr || valueOf(condition.element) != nullptr ||
        childOf(card_, condition.element) == nullptr)
      return;
    fields_.emplace_back(settings::cardSettingOf(condition.element), condition.word);
  }

  bool concernsAddress() const {
    return std::any_of(fields_.begin(), fields_.end(),
                       [](const auto& field) {
                         const char* with = field.first->onlyWith.element;
                         return with != nullptr && std::string_view(with) == kMode;
                       }) ||
           valueOf(kMode) != nullptr;
  }

  // What was on the card already counts, too.
  void addMissing(const Json& card, std::vector<std::string>& faults) const {
    for (const auto& [setting, element] : fieldsOf(card_)) {
      if (setting.neededIf.element == nullptr || valueOf(setting) != nullptr) continue;
      const std::string why =
          setting.whyNotUsable(settings::inFile(setting, card.at(setting.member)));
      if (!why.empty()) faults.push_back(fault(setting, why + giveAsWell(setting)));
    }
  }

  void addContradictions(const Json& card, std::vector<std::string>& faults) const {
    for (const auto& [setting, why] : contradictionsIn(card))
      faults.push_back(fault(setting, why + giveAsWell(setting)));
  }

  // Another card with the same interface would take this one's place.
  void addShared(const Json& card, const Json& cards, std::vector<std::string>& faults) const {
    const Setting& interface = *settings::cardSettingOf("Intf");
    if (valueOf(interface) == nullptr) return;
    for (const auto& [name, other] : cards.items())
      if (name != card_.Value() && memberOf(other, interface) == memberOf(card, interface))
        faults.push_back(fault(interface, concat(name, " has this interface already", kForced)));
  }

  static Json memberOf(const Json& card, const Setting& setting) {
    const Json* value = card.find_path(setting.member);
    return value == nullptr ? Json() : *value;
  }

  std::string giveAsWell(const Setting& setting) const {
    const std::string hint = concat("; give ", settings::plainNameOf(setting), "= as well");
    return (valueOf(setting) == nullptr ? hint : "") + kForced;
  }

  XMLElement& card_;
  const bool force_;
  Fields fields_;
  std::vector<std::string> faults_;
  std::vector<std::string> contradicted_;  // elements
};

}  // namespace

Json setCard(const Json& network, const std::string& word, const std::vector<std::string>& words,
             bool force) {
  const Network device;
  XMLElement& card = device.requireReachable(word);
  Assignment assignment(card, force);
  for (const std::string& field : words) assignment.add(field);
  assignment.addConsequences();

  Json after = network;
  Json& own = after[kCards][card.Value()];
  own = assignment.over(own);
  if (after == network) return after;
  assignment.checkTogether(own, after.at(kCards));
  requireSettable(network, after);
  return after;
}

}  // namespace camcfg::tool::network
