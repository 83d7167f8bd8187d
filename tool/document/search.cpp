#include "document/search.h"

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "document/placed.h"
#include "parameters/parameter.h"
#include "settings/network.h"
#include "settings/secrets.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::document {
namespace {

Json orNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

// Files say nothing of what parameters mean; the library knows some.
Json helpOf(const parameters::Parameter& parameter) {
  if (parameter.section == settings::kSystemSection)
    for (const settings::SystemPort& port : settings::systemPorts())
      if (parameter.name == port.parameter) return port.label;
  return nullptr;
}

// Those are settings of the network.
bool isOfCard(const parameters::Parameter& parameter) {
  const std::string& name = parameter.name;
  return parameter.section == settings::kNetworkSection && parameter.isInner() &&
         settings::cardSettingOf(name.substr(name.rfind('/') + 1)) != nullptr;
}

class Search {
 public:
  explicit Search(const std::vector<std::string>& words) {
    for (const std::string& given : words)
      for (const std::string& word : parts(given, ' '))
        if (!word.empty()) words_.push_back(inLowerCase(word));
  }

  void inParameters() {
    const parameters::Parameters parameters;
    for (const parameters::Parameter& parameter : parameters.all())
      if (!isOfCard(parameter))
        add({{"place", parameter.path()},
             {"value", parameter.value("Cur")},
             {"of", nullptr},
             {"unit", nullptr},
             {"help", helpOf(parameter)},
             {"permitted", orNull(parameter.form().permitted())}});
  }

  void in(const device::Section& section, Json value) {
    forEachSetting(section, value, [this](const Placed& placed) {
      const settings::Setting& setting = placed.setting;
      add({{"place", placed.place},
           {"value", settings::maskedAt(placed.place, placed.value)},
           {"of", orNull(placed.of)},
           {"unit", setting.unit == nullptr ? Json() : Json(setting.unit)},
           {"help", setting.help},
           {"permitted", orNull(settings::permittedFor(setting))}});
    });
  }

  Json takeFound() { return std::move(found_); }

 private:
  void add(const Json& setting) {
    std::string text;
    for (const auto& [name, value] : setting.items()) text += inLowerCase(textOf(value)) + "\n";
    if (std::all_of(words_.begin(), words_.end(),
                    [&](const std::string& word) { return text.find(word) != std::string::npos; }))
      found_.push_back(setting);
  }

  std::vector<std::string> words_;
  Json found_ = Json::array();
};

void searchSection(const device::Section& section, Search& search, Outcome& outcome) {
  if (section.name == kParameters) return search.inParameters();
  device::Readable readable = readableOf(section);
  for (const device::Unread& unread : readable.unread)
    outcome.notes.push_back(concat("left out of ", section.name, ": ", unread.fault));
  search.in(section, std::move(readable.value));
}

}  // namespace

Outcome findSettings(const std::vector<std::string>& words) {
  Search search(words);
  Outcome outcome;
  std::size_t unusable = 0;
  for (const device::Section& section : allSections()) try {
      searchSection(section, search, outcome);
    } catch (const Refusal& refusal) {
      if (refusal.status() != Status::Unusable || ++unusable == allSections().size()) throw;
      outcome.notes.push_back(concat("left out: ", section.name, ": ", refusal.what()));
    }
  if (!outcome.notes.empty()) outcome.status = Status::Degraded;
  outcome.value = search.takeFound();
  if (!outcome.value.empty()) return outcome;
  outcome.status = std::max(outcome.status, Status::Refused);
  outcome.notes.push_back("no setting has " + joined(words, " and "));
  return outcome;
}

}  // namespace camcfg::tool::document
