#include "base/concat.h"
#include "network/network.h"

#include "base/plain_text.h"
#include "commands/groups.h"
#include "document/exchange.h"
#include "document/placed.h"
#include "document/single.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/media.h"

namespace camcfg::tool::commands {
namespace {

Fields fieldsOf(const Json& lookup, std::size_t index) {
  const std::string at = "{lookups/" + std::to_string(index);
  const std::string answerer =
      concat(at, "/answeredBy/name} at ", at, "/path}:", at, "/answeredBy/line}");
  return {{{"lookup of", at + "/asked}"},
           {"answered by", lookup["answeredBy"].is_null() ? "-" : answerer},
           {"why", at + "/why}"},
           {"shadows", at + "/shadows:{name} (line {line})}"}}};
}

Answer answerOf(const device::Explanation& explanation) {
  Answer answer(
      {{"what", explanation.what},
       {"values", explanation.values},
       {"copies", explanation.copies},
       {"lookups", explanation.lookups}},
      {Line{"{what}"},
       Table{"values",
             {{"VALUE", "{name}"},
              {"MAIN", "{main}"},
              {"BACKUP", "{backup}"},
              {"DEFAULT", "{default}"},
              {"PERMITTED", "{permitted}"}}},
       Table{"copies",
             {{"COPY", "{copy}"}, {"STATE", "{state!}"}, {"FILE", "{path}"}, {"LINE", "{line}"}}}});
  for (const Json& copy : explanation.copies) {
    if (copy["fault"].is_null()) continue;
    const std::string& fault = copy["fault"].text();
    const std::string& path = copy["path"].text();
    std::string& note = answer.notes.emplace_back("note: ");
    if (!beginsWith(fault, path)) note.append(path).append(" ");
    note += fault;
  }
  for (std::size_t i = 0; i < explanation.lookups.size(); ++i) {
    answer.layout.emplace_back(Line{""});
    answer.layout.emplace_back(fieldsOf(explanation.lookups[i], i));
  }
  return answer;
}

Answer parameter(const Arguments& arguments) {
  const std::string word = arguments.text(kSection);
  return answerOf(parameters::explainParameter(
      beginsWith(word, "parameters.") ? document::placeInDocument(word) : word,
      arguments.text(kName)));
}

Answer place(const Arguments& arguments) {
  if (!arguments.given(kSection))
    throw Refusal(Status::Usage, "give a parameter, or 'card', 'preset' or 'session' and which");
  const std::string place = arguments.text(kSection);
  const bool isOneWord = !arguments.given(kName);
  if (isOneWord && document::isInDocument(place))
    return answerOf(document::explainSingle(place, arguments.given(kShowSecrets)));
  return parameter(arguments);
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
               place,
               {{Option::OptionalArgument, kSection,
                 "Section of a parameter; or a place, SECTION/NAME or what 'find' prints"},
                {Option::OptionalArgument, kName, "Its name, or the beginning of it"},
                {Option::Flag, kShowSecrets, "Show passwords"}}),
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
