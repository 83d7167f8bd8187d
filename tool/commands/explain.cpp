#include "commands/groups.h"
#include "device/explanation.h"
#include "exchange/session.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

constexpr char kShowSecrets[] = "--show-secrets";

Json jsonOf(const ExplainedValue& value) {
  Json record = {{"name", value.name}};
  for (std::size_t i = 0; i < kPlaces.size(); ++i) record[wordFor(kPlaces[i])] = value.in[i];
  record["permitted"] = value.permitted.empty() ? Json() : Json(value.permitted);
  return record;
}

Json jsonOf(const ExplainedCopy& copy, Place place) {
  return {{"copy", wordFor(place)},
          {"path", copy.path},
          {"state", wordFor(copy.state)},
          {"line", copy.line ? Json(*copy.line) : Json()},
          {"fault", copy.fault.empty() ? Json() : Json(copy.fault)}};
}

Json jsonOf(const ExplainedLookup::Found& found) {
  return {{"name", found.name}, {"line", found.line}, {"match", found.exact ? "exact" : "prefix"}};
}

Json jsonOf(const ExplainedLookup& lookup) {
  Json record = {{"asked", lookup.asked}, {"path", lookup.path}};
  record["answeredBy"] = lookup.answeredBy ? jsonOf(*lookup.answeredBy) : Json();
  record["why"] = lookup.why;
  record["shadows"] = Json::array();
  for (const auto& found : lookup.shadows) record["shadows"].push_back(jsonOf(found));
  return record;
}

Fields fieldsOf(const ExplainedLookup& lookup, std::size_t index) {
  const std::string at = "{lookups/" + std::to_string(index);
  const std::string answerer =
      at + "/answeredBy/name} at " + at + "/path}:" + at + "/answeredBy/line}";
  return {{{"lookup of", at + "/asked}"},
           {"answered by", lookup.answeredBy ? answerer : "-"},
           {"why", at + "/why}"},
           {"shadows", at + "/shadows:{name} (line {line})}"}}};
}

void addLookups(Answer& answer, const std::vector<ExplainedLookup>& lookups) {
  for (const ExplainedLookup& lookup : lookups) {
    answer.layout.emplace_back(Line{""});
    answer.layout.emplace_back(fieldsOf(lookup, answer.value["lookups"].size()));
    answer.value["lookups"].push_back(jsonOf(lookup));
  }
}

Answer answerOf(const Explanation& explanation) {
  Answer answer;
  answer.value = {{"what", explanation.what},
                  {"values", Json::array()},
                  {"copies", Json::array()},
                  {"lookups", Json::array()}};
  for (const ExplainedValue& value : explanation.values)
    answer.value["values"].push_back(jsonOf(value));
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    const ExplainedCopy& copy = explanation.copies[i];
    answer.value["copies"].push_back(jsonOf(copy, kPlaces[i]));
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
  if (!arguments.given("SECTION") || !arguments.given("NAME"))
    throw Refusal(Status::Usage,
                  "give SECTION NAME of a parameter, or 'card', 'preset' or 'session' and which");
  return answerOf(explainParameter(arguments.text("SECTION"), arguments.text("NAME")));
}

Answer card(const Arguments& arguments) {
  return answerOf(explainCard(arguments.text("CARD"), arguments.text("FIELD")));
}

Answer preset(const Arguments& arguments) {
  return answerOf(explainPreset(arguments.text("PRESET")));
}

Answer session(const Arguments& arguments) {
  return answerOf(
      explainSession(arguments.text("KIND"), arguments.text("ID"), arguments.given(kShowSecrets)));
}

}  // namespace

CommandGroup explainGroup() {
  return {"Parameters",
          {{"explain",
            "Tell a setting's value in every copy, its limits, and which element answers for it",
            {{Option::OptionalArgument, "SECTION", "Section of a parameter"},
             {Option::OptionalArgument, "NAME", "Its name, or the beginning of it"}},
            parameter},
           {"explain parameter",
            "The same, for a section that is called like one of these commands",
            {{Option::Argument, "SECTION", "Section of the parameter"},
             {Option::Argument, "NAME", "Its name, or the beginning of it"}},
            parameter},
           {"explain card",
            "Explain a network card, or one field of it",
            {{Option::Argument, "CARD", "Name of the card"},
             {Option::OptionalArgument, "FIELD", "Name of the field"}},
            card},
           {"explain preset",
            "Explain a camera position",
            {{Option::Argument, "PRESET", "An id, or a description"}},
            preset},
           {"explain session",
            "Explain a stream source or cache, or a session of a live media service",
            {{Option::Argument, "KIND", "source, cache, websocket, rtsp, rtmp, ndi or srt"},
             {Option::Argument, "ID", "Its id; an RTSP session's name"},
             {Option::Flag, kShowSecrets, "Show passwords"}},
            session}}};
}

}  // namespace camcfg::tool
