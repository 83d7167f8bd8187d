#include <camcfg/types.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/concat.h"
#include "base/elements.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "document/document.h"
#include "document/keyed.h"
#include "lint/fix.h"
#include "media/media.h"
#include "report/remedy.h"
#include "report/sources.h"
#include "settings/network.h"
#include "settings/presets.h"

namespace camcfg::tool::report {
namespace {

using tinyxml2::XMLElement;

// What can be typed for a place, where it begins in a file: "live.srt[1]", "System/Rtsp".
using Places = std::map<int, std::string>;

void addCard(const XMLElement& card, Places& places) {
  const std::string place = std::string("network.cards.") + card.Name();
  for (const XMLElement* field : childrenOf(card))
    if (const settings::Setting* setting = settings::cardSettingOf(field->Name()))
      places[field->GetLineNum()] = memberPlace(place, setting->member);
    else
      places[field->GetLineNum()] = place;
  places.emplace(card.GetLineNum(), place);
}

void addParameters(const tinyxml2::XMLDocument& document, Places& places) {
  for (const XMLElement* section : childrenOf(document)) {
    places[section->GetLineNum()] = section->Name();
    const bool isNetwork = std::string_view(section->Name()) == settings::kNetworkSection;
    for (const XMLElement* parameter : childrenOf(*section))
      if (isNetwork && parameter->FirstChildElement() != nullptr)
        addCard(*parameter, places);
      else
        places[parameter->GetLineNum()] = concat(section->Name(), "/", parameter->Name());
  }
}

void addMedia(const tinyxml2::XMLDocument& document, Places& places) {
  for (const XMLElement* top : childrenOf(document))
    for (const XMLElement* section : childrenOf(*top)) places[section->GetLineNum()];
  for (const settings::Table* table : settings::mediaTables())
    if (const XMLElement* section = media::sectionIn(document, *table)) {
      places[section->GetLineNum()] = table->place;
      for (const XMLElement* entry : media::entriesOf(*section, table->elements)) {
        const char* key = entry->Attribute(table->find(table->key)->attributes.front().name);
        places[entry->GetLineNum()] =
            key == nullptr ? table->place : document::placeOf(table->place, std::string(key));
      }
    }
}

void addPresets(const tinyxml2::XMLDocument& document, Places& places) {
  for (const XMLElement* group : childrenOf(document))
    for (const XMLElement* preset : childrenOf(*group))
      if (const char* id = preset->Attribute("Id"))
        places[preset->GetLineNum()] = document::placeOf(document::kPresets, std::string(id));
}

Places placesIn(const lint::Source& source) {
  Places places;
  if (!source.isWhole()) return places;
  if (source.kind == lint::FileKind::Parameters) addParameters(*source.document, places);
  if (source.kind == lint::FileKind::Media) addMedia(*source.document, places);
  if (source.kind == lint::FileKind::Presets) addPresets(*source.document, places);
  return places;
}

// The setting of an entry that a finding quotes by its attribute; the entry if it quotes none.
std::string settingAt(const std::string& place, const std::string& text) {
  if (place.empty() || place.back() != ']') return place;
  const auto namedOf = [&](const settings::Settings& all) {
    for (const settings::Setting& setting : all)
      for (const auto& attribute : setting.attributes)
        if (text.find(concat("\"", attribute.name, "\"")) != std::string::npos)
          return memberPlace(place, setting.member);
    return place;
  };
  if (beginsWith(place, document::kPresets)) return namedOf(settings::presetSettings());
  for (const settings::Table* table : settings::mediaTables())
    if (beginsWith(place, std::string(table->place) + "[")) return namedOf(table->settings);
  return place;
}

Json finding(const char* severity, const std::string& text) {
  return {{"severity", severity}, {"text", text},    {"place", nullptr},
          {"why", nullptr},       {"fix", nullptr},  {"command", nullptr},
          {"rule", nullptr},      {"file", nullptr}, {"line", nullptr}};
}

// The beginnings of findings of a file's state are on its copies, the others on what is in them.
void addHealth(const Json& health, bool isDevice, Json& findings) {
  std::map<std::string, std::string> states;
  for (const Json& file : health.at("files"))
    states[file.at("name").text()] = file.at("health").text();
  std::set<std::string> missing;
  for (const Json& copy : health.at("copies"))
    if (copy.at("state") == "missing") missing.insert(copy.at("path").text());
  const Json& texts = health.at("findings");
  const Json& advice = health.at("advice");
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const bool isAdvice = i < advice.size();
    const std::string path = isAdvice ? advice[i].at("path").text() : "";
    const bool isMain = path == device::pathOf(device::Place::Main, path);
    if (isAdvice && !isDevice && (!isMain || missing.count(path) != 0)) continue;
    const bool isUnusable = isMain && states[device::nameOf(path)] == "unusable";
    Json one = finding(isUnusable ? "unusable" : "degraded", texts[i].text());
    one["why"] =
        isUnusable
            ? "The device cannot read these settings, and runs without them or not at all."
            : "The device works, but has one copy less to fall back on, or leaves a part out.";
    if (!isAdvice) {
      one["place"] = texts[i].text().substr(0, texts[i].text().find(' '));
      one["command"] = "camcfg help recovery";
    } else {
      one["file"] = path;
      one["place"] = path;
      if (!advice[i].at("move").empty())
        one["fix"] = "Move away first: " + document::textOf(advice[i].at("move"));
      if (!advice[i].at("command").is_null())
        one["command"] = "camcfg " + advice[i].at("command").text();
    }
    findings.push_back(std::move(one));
  }
}

// Whether a rule is about what only a device has: other copies, and texts of languages.
bool isOfDevice(const lint::Rule& rule) {
  return std::string_view(rule.subject) == "copies" || beginsWith(rule.id, "language-");
}

void addLint(bool isDevice, Json& findings) {
  const device::FileSet set = device::surveyFiles();
  const std::vector<lint::Source> sources = lint::sourcesOf(set);
  const std::vector<lint::Finding> found = lint::lint(sources);
  for (const lint::Source& source : sources) {
    const Places places = placesIn(source);
    std::set<std::pair<int, const lint::Rule*>> fixable;
    for (const lint::Fix& fix : lint::fixed(source, found).fixes)
      fixable.emplace(fix.line, fix.rule);
    for (const lint::Finding& each : found) {
      if (each.file != source.name || (!isDevice && isOfDevice(*each.rule))) continue;
      Json one = finding(wordFor(each.severity), each.text);
      const auto next = places.upper_bound(each.line);
      const std::string place =
          settingAt(next == places.begin() ? "" : std::prev(next)->second, each.text);
      one["place"] = place.empty() ? each.file : place;
      one["why"] = each.rule->why;
      one["fix"] = each.rule->fix;
      const std::string command = fixable.count({each.line, each.rule}) != 0
                                      ? "camcfg lint --fix"
                                      : remedyFor(place, each.rule->fix);
      if (!command.empty()) one["command"] = command;
      one["rule"] = each.rule->id;
      one["file"] = each.file;
      one["line"] = each.line;
      findings.push_back(std::move(one));
    }
  }
}

std::size_t rankOf(const Json& finding) {
  constexpr const char* kWorstFirst[] = {"unusable", "error", "degraded", "warning"};
  std::size_t rank = 0;
  while (rank < std::size(kWorstFirst) && finding.at("severity") != kWorstFirst[rank]) ++rank;
  return rank;
}

}  // namespace

Json findingsOf(const Json& health, bool isDevice) {
  Json findings = Json::array();
  addHealth(health, isDevice, findings);
  addLint(isDevice, findings);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Json& a, const Json& b) { return rankOf(a) < rankOf(b); });
  return findings;
}

}  // namespace camcfg::tool::report
