#include "document/search.h"

#include <algorithm>

#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "parameters/parameter.h"
#include "settings/network.h"
#include "settings/presets.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

using settings::Setting;
using settings::Settings;

constexpr char kParameters[] = "parameters";
constexpr char kNetwork[] = "network";
constexpr char kPresets[] = "presets";
constexpr char kCards[] = "cards";

Json orNull(const char* text) {
  return text == nullptr ? Json() : Json(text);
}

Json orNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

// Of the letters that commands and files are written with.
std::string lowerCase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

std::string textOf(const Json& value) {
  return value.is_string() ? value.text() : value.is_null() ? "" : value.dump();
}

class Search {
 public:
  explicit Search(const std::vector<std::string>& words) {
    for (const std::string& word : words) words_.push_back(lowerCase(word));
  }

  void inParameters() {
    const parameters::Parameters parameters;
    for (const parameters::Parameter& parameter : parameters.all())
      add({{"place", parameter.path()},
           {"value", parameter.value("Cur")},
           {"of", nullptr},
           {"unit", nullptr},
           {"help", nullptr},
           {"permitted", orNull(parameter.form().permitted())}});
  }

  void inNetwork(const Json& network) {
    const Setting& hostname = settings::hostnameSetting();
    add(memberPlace(kNetwork, hostname.member), hostname, memberOrNothing(network, hostname.member),
        nullptr);
    for (const auto& [name, card] : memberOrNothing(network, kCards).items())
      inEntry(memberPlace(memberPlace(kNetwork, kCards), name), settings::cardSettings(), card,
              name);
  }

  void inEntries(const std::string& list, const Settings& settings, const char* key,
                 const char* label, const Json& entries) {
    const Keyed keyed(entries, key == nullptr ? "" : key);
    for (const Json& each : keyed.keys()) {
      const Json& entry = keyed.at(each);
      inEntry(placeOf(list, each), settings, entry,
              memberOrNothing(entry, label == nullptr ? "" : label));
    }
  }

  Json takeFound() { return std::move(found_); }

 private:
  void inEntry(const std::string& place, const Settings& settings, const Json& entry,
               const Json& of) {
    for (const Setting& setting : settings) {
      const Json& value = memberOrNothing(entry, setting.member);
      const std::string own = memberPlace(place, setting.member);
      if (setting.kind == settings::Kind::List)
        inEntries(own, setting.inner->settings, setting.inner->key, setting.inner->label, value);
      else
        add(own, setting, value, of);
    }
  }

  void add(const std::string& place, const Setting& setting, const Json& value, const Json& of) {
    add({{"place", place},
         {"value", settings::maskedAt(place, value)},
         {"of", of},
         {"unit", orNull(setting.unit)},
         {"help", orNull(setting.help)},
         {"permitted", orNull(settings::permittedFor(setting))}});
  }

  void add(const Json& setting) {
    std::string text;
    for (const auto& [name, value] : setting.items()) text += lowerCase(textOf(value)) + "\n";
    if (std::all_of(words_.begin(), words_.end(),
                    [&](const std::string& word) { return text.find(word) != std::string::npos; }))
      found_.push_back(setting);
  }

  std::vector<std::string> words_;
  Json found_ = Json::array();
};

void searchSection(const device::Section& section, Search& search, Outcome& outcome) {
  if (section.name == kParameters) return search.inParameters();
  const device::Readable readable = readableOf(section);
  for (const device::Unread& unread : readable.unread)
    outcome.notes.push_back("left out of " + section.name + ": " + unread.fault);
  if (section.name == kNetwork)
    search.inNetwork(readable.value);
  else if (section.name == kPresets)
    search.inEntries(kPresets, settings::presetSettings(), settings::kPresetId,
                     settings::kPresetDescription, readable.value);
  else
    search.inEntries(section.name, section.table->settings, section.table->key,
                     section.table->label, readable.value);
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
      outcome.notes.push_back("left out: " + section.name + ": " + refusal.what());
    }
  if (!outcome.notes.empty()) outcome.status = Status::Degraded;
  outcome.value = search.takeFound();
  if (!outcome.value.empty()) return outcome;
  outcome.status = std::max(outcome.status, Status::Refused);
  outcome.notes.push_back("no setting has " + joined(words, " and "));
  return outcome;
}

}  // namespace camcfg::tool::document
