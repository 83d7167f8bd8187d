#include "base/outcome.h"
#include "document/document.h"
#include "document/keyed.h"
#include "parameters/parameter.h"
#include "report/facts.h"
#include "report/sources.h"
#include "settings/network.h"
#include "settings/presets.h"
#include "settings/secrets.h"
#include "settings/subnet.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::report {
namespace {

using settings::Setting;
using settings::Settings;

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json described(const char* name, const Setting& setting) {
  return {{"name", name},
          {"permitted", textOrNull(settings::permittedFor(setting))},
          {"unit", setting.unit == nullptr ? Json() : Json(setting.unit)},
          {"help", setting.help}};
}

Json rowOf(Json description, const Json& value, const Json& factory) {
  Json row = {{"name", description.at("name")}, {"value", value}, {"factory", factory}};
  for (const auto& [name, member] : description.items())
    if (name != "name") row[name] = member;
  return row;
}

// The factory set's section; null if it cannot be read.
Json factoryOf(const document::CopiedSections& factory, const std::string& name) {
  const auto found = factory.find(name);
  return found == factory.end() || !found->second.fault.empty() ? Json() : found->second.value;
}

Json helpOf(const parameters::Parameter& parameter) {
  if (parameter.section == settings::kSystemSection)
    for (const settings::SystemPort& port : settings::systemPorts())
      if (parameter.name == port.parameter) return port.label;
  return nullptr;
}

// Empty if the card has none.
std::string fieldOf(const Json& card, const char* member) {
  return document::textOf(document::memberOrNothing(card, member));
}

// A section of parameters each.
void addParameters(const Json& factory, Json& sections) {
  const parameters::Parameters parameters;
  for (const std::string& name : parameters.sections()) {
    if (name == settings::kNetworkSection) continue;
    Json section = {{"name", name}, {"rows", Json::array()}};
    const Json& originals = document::memberOrNothing(factory, name);
    for (const parameters::Parameter& parameter : parameters.in(name))
      section["rows"].push_back({{"name", parameter.name},
                                 {"value", parameter.value("Cur")},
                                 {"factory", document::memberOrNothing(originals, parameter.name)},
                                 {"permitted", textOrNull(parameter.form().permitted())},
                                 {"unit", nullptr},
                                 {"help", helpOf(parameter)}});
    sections.push_back(std::move(section));
  }
}

Json cardRows(const Json& card, const Json& factory) {
  Json rows = Json::array();
  for (const Setting& setting : settings::cardSettings())
    if (card.contains(setting.member))
      rows.push_back(rowOf(described(setting.member, setting), card.at(setting.member),
                           document::memberOrNothing(factory, setting.member)));
  return rows;
}

Json networkOf(const Json& value, const Json& factory) {
  Json section = {{"name", document::kNetwork},
                  {"hostname", value.at("hostname")},
                  {"cards", Json::array()},
                  {"rows", Json::array()}};
  section["rows"].push_back(rowOf(described("hostname", settings::hostnameSetting()),
                                  value.at("hostname"),
                                  document::memberOrNothing(factory, "hostname")));
  const Json& originals = document::memberOrNothing(factory, document::kCards);
  for (const auto& [name, card] : value.at(document::kCards).items()) {
    const std::optional<settings::Subnet> subnet =
        settings::Subnet::of(fieldOf(card, "ipAddr"), fieldOf(card, "netMask"));
    Json named = {{"name", name},
                  {"subnet", subnet ? Json(subnet->text()) : Json()},
                  {"card", Json::array()}};
    for (const auto& [member, field] : card.items()) named[member] = field;
    named["card"] = cardRows(card, document::memberOrNothing(originals, name));
    section["cards"].push_back(std::move(named));
  }
  return section;
}

Json listOf(const std::string& name, const Settings& settings, const Json& value,
            const Json& factory) {
  Json section = {
      {"name", name}, {"members", Json::array()}, {"entries", Json()}, {"factory", Json()}};
  for (const Setting& setting : settings)
    section["members"].push_back(described(setting.member, setting));
  section["entries"] = settings::withMaskedSecrets(value, settings);
  section["factory"] = factory.is_null() ? Json() : settings::withMaskedSecrets(factory, settings);
  return section;
}

Json sectionOf(const device::Section& section, const Json& value, const Json& factory) {
  if (section.name == document::kNetwork) return networkOf(value, factory);
  return section.table == nullptr ? listOf(section.name, settings::presetSettings(), value, factory)
                                  : listOf(section.name, section.table->settings, value, factory);
}

void addSection(const device::Section& section, const Json& factory, Json& sections) try {
  if (section.name == document::kParameters) return addParameters(factory, sections);
  const device::Readable readable = readableOf(section);
  Json one = sectionOf(section, readable.value, factory);
  one["unread"] = Json::array();
  for (const device::Unread& unread : readable.unread) one["unread"].push_back(unread.fault);
  sections.push_back(std::move(one));
} catch (const Refusal& refusal) {
  sections.push_back({{"name", section.name}, {kFault, refusal.what()}});
}

}  // namespace

document::CopiedSections factorySet() try {
  return document::loadFrom(device::Place::Default);
} catch (const Refusal&) {
  return {};
}

Json sectionsOf(const document::CopiedSections& factory) {
  Json sections = Json::array();
  for (const device::Section& section : document::allSections())
    addSection(section, factoryOf(factory, section.name), sections);
  return sections;
}

}  // namespace camcfg::tool::report
