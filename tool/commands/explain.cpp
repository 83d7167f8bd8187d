#include "network/network.h"

#include "commands/groups.h"
#include "document/exchange.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/media.h"

namespace camcfg::tool::commands {
namespace {

Json jsonOf(const device::ExplainedValue& value) {
  Json record = {{"name", value.name}};
  for (std::size_t i = 0; i < device::kPlaces.size(); ++i)
    record[device::wordFor(device::kPlaces[i])] = value.in[i];
  record["permitted"] = value.permitted.empty() ? Json() : Json(value.permitted);
  return record;
}

Json jsonOf(const device::ExplainedCopy& copy, device::Place place) {
  return {{"copy", device::wordFor(place)},
          {"path", copy.path},
          {"state", device::wordFor(copy.state)},
          {"line", copy.line ? Json(*copy.line) : Json()},
          {"fault", copy.fault.empty() ? Json() : Json(copy.fault)}};
}

Json jsonOf(const device::ExplainedLookup::Found& found) {
  return {{"name", found.name}, {"line", found.line}, {"match", found.exact ? "exact" : "prefix"}};
}

Json jsonOf(const device::ExplainedLookup& lookup) {
  Json record = {{"asked", lookup.asked}, {"path", lookup.path}};
  record["answeredBy"] = lookup.answeredBy ? jsonOf(*lookup.answeredBy) : Json();
  record["why"] = lookup.why;
  record["shadows"] = Json::array();
  for (const auto& found : lookup.shadows) record["shadows"].push_back(jsonOf(found));
  return record;
}

Fields fieldsOf(const device::ExplainedLookup& lookup, std::size_t index) {
  const std::string at = "{lookups/" + std::to_string(index);
  const std::string answerer =
      at + "/answeredBy/name} at " + at + "/path}:" + at + "/answeredBy/line}";
  return {{{"lookup of", at + "/asked}"},
           {"answered by", lookup.answeredBy ? answerer : "-"},
           {"why", at + "/why}"},
           {"shadows", at + "/shadows:{name} (line {line})}"}}};
}

void addLookups(Answer& answer, const std::vector<device::ExplainedLookup>& lookups) {
  for (const device::ExplainedLookup& lookup : lookups) {
    answer.layout.emplace_back(Line{""});
    answer.layout.emplace_back(fieldsOf(lookup, answer.value["lookups"].size()));
    answer.value["lookups"].push_back(jsonOf(lookup));
  }
}

Answer answerOf(const device::Explanation& explanation) {
  Answer answer;
  answer.value = {{"what", explanation.what},
                  {"values", Json::array()},
                  {"copies", Json::array()},
                  {"lookups", Json::array()}};
  for (const device::ExplainedValue& value : explanation.values)
    answer.value["values"].push_back(jsonOf(value));
  for (std::size_t i = 0; i < device::kPlaces.size(); ++i) {
    const device::ExplainedCopy& copy = explanation.copies[i];
    answer.value["copies"].push_back(jsonOf(copy, device::kPlaces[i]));
    if (!copy.fault.empty())
      answer.notes.push_back(
          "note: " + (copy.fault.find(copy.path) == 0 ? copy.fault : copy.path + " " + copy.fault));
  }
  answer.layout = {
      Line{"{what}"},
      Table{"values",
            {{"VALUE", "{name}"},
             {"MAIN", "{main}"},
             {"BACKUP", "{backup}"},
             {"DEFAULT", "{default}"},
             {"PERMITTED", "{permitted}"}}},
      Table{"copies",
            {{"COPY", "{copy}"}, {"STATE", "{state!}"}, {"FILE", "{path}"}, {"LINE", "{line}"}}}};
  addLookups(answer, explanation.lookups);
  return answer;
}

Answer parameter(const Arguments& arguments) {
  if (!arguments.given(kSection) || !arguments.given(kName))
    throw Refusal(Status::Usage,
                  "give SECTION NAME of a parameter, or 'card', 'preset' or 'session' and which");
  return answerOf(parameters::explainParameter(arguments.text(kSection), arguments.text(kName)));
}

Answer card(const Arguments& arguments) {
  return answerOf(network::explainCard(arguments.text(kCard), arguments.text(kField)));
}

Answer preset(const Arguments& arguments) {
  return answerOf(presets::explainPreset(arguments.text(kPreset)));
}

Answer session(const Arguments& arguments) {
  return answerOf(document::explainSession(arguments.text(kKind), arguments.text(kId),
                                           arguments.given(kShowSecrets)));
}

// "source, cache, websocket or rtsp"
const char* kindsOfSessions() {
  static const std::string kinds = [] {
    std::string words;
    const auto& tables = settings::mediaTables();
    for (const settings::Table* table : tables)
      words += std::string(words.empty()            ? ""
                           : table == tables.back() ? " or "
                                                    : ", ") +
               table->word;
    return words;
  }();
  return kinds.c_str();
}

}  // namespace

CommandGroup explainGroup() {
  return {
      "Parameters",
      {command("explain",
               "Show a setting's value in every copy, its limits, and which element answers for it",
               parameter,
               {{Option::OptionalArgument, kSection, "Section of a parameter"},
                {Option::OptionalArgument, kName, "Its name, or the beginning of it"}}),
       command("explain parameter",
               "The same, for a section that is called like one of these commands", parameter,
               {{Option::Argument, kSection, "Section of the parameter"},
                {Option::Argument, kName, "Its name, or the beginning of it"}}),
       command("explain card", "Explain a network card, or one field of it", card,
               {{Option::Argument, kCard, "Name of the card"},
                {Option::OptionalArgument, kField, "Name of the field"}}),
       command("explain preset", "Explain a camera position", preset,
               {{Option::Argument, kPreset, "An id, or a description"}}),
       command("explain session",
               "Explain a stream source or cache, or a session of a live media service", session,
               {{Option::Argument, kKind, kindsOfSessions()},
                {Option::Argument, kId, "Its id; an RTSP session's name"},
                {Option::Flag, kShowSecrets, "Show passwords"}})}};
}

}  // namespace camcfg::tool::commands
