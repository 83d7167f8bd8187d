#include "base/concat.h"
#include "parameters/parameter.h"

#include <camcfg/types.h>

#include <algorithm>

#include "base/plain_text.h"
#include "base/secret_input.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/placed.h"
#include "document/single.h"
#include "settings/secrets.h"

namespace camcfg::tool::commands {
namespace {

Json recordOf(const parameters::Parameter& parameter) {
  return {{"section", parameter.section},
          {"name", parameter.name},
          {"type", parameter.type()},
          {"value", parameter.value("Cur")}};
}

Json pathOrNull(const std::optional<parameters::Parameter>& found) {
  return found ? Json(found->path()) : Json();
}

bool isSame(const std::optional<parameters::Parameter>& found,
            const parameters::Parameter& parameter) {
  return found && found->element == parameter.element;
}

Answer list(const Arguments& arguments) {
  const parameters::Parameters parameters;
  Answer answer;
  answer.value = Json::array();
  for (const parameters::Parameter& parameter :
       arguments.given(kSection) ? parameters.in(arguments.text(kSection)) : parameters.all())
    answer.value.push_back(recordOf(parameter));
  answer.layout = {Table{"", {{"SECTION", "{section}"}, {"NAME", "{name}"}, {"VALUE", "{value}"}}}};
  return answer;
}

Answer get(const Arguments& arguments) {
  const std::string given = arguments.text(kSection);
  if (arguments.given(kName) && given.find('/') != std::string::npos)
    throw Refusal(Status::Usage,
                  "give one place, or SECTION NAME; 'list' and 'find' print several");
  const std::string word =
      beginsWith(given, "parameters.") ? document::placeInDocument(given) : given;
  if (given.empty()) throw Refusal(Status::Usage, "which setting? the argument is empty");
  if (!arguments.given(kName) && document::isInDocument(word))
    return Answer(document::getSingle(word), {Line{"{value}"}});
  const parameters::Parameters parameters;
  const parameters::Parameter parameter = parameters.requireAt(word, arguments.text(kName));
  if (parameter.text("Cur") == nullptr)
    throw Refusal(parameter.path() + ": it has no current value");

  Answer answer;
  answer.value = recordOf(parameter);
  answer.layout = {Line{"{value}"}};
  const auto found = parameters.lookup(parameter.section, parameter.name);
  answer.value["answeredBy"] = pathOrNull(found);
  if (!isSame(found, parameter))
    answer.notes.push_back(concat("note: applications that ask for ", parameter.path(), " get ",
                                  found ? found->path() : "nothing",
                                  ", since another name that begins with it comes first"));
  return answer;
}

bool isAssignment(const std::string& word) {
  return word.find('=') != std::string::npos;
}

// "PLACE=VALUE", as often as wanted.
std::vector<parameters::Assignment> assignmentsIn(const std::vector<std::string>& words) {
  std::vector<parameters::Assignment> assignments;
  for (const std::string& word : words) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0)
      throw Refusal(Status::Usage, quoted(word) + " is not PLACE=VALUE");
    assignments.push_back(
        {document::placeInDocument(word.substr(0, sign)), "", word.substr(sign + 1)});
  }
  return assignments;
}

// "SECTION NAME VALUE", or "PLACE VALUE".
parameters::Assignment assignmentOf(const std::vector<std::string>& words) {
  if (words.front().empty())
    throw Refusal(Status::Usage, "which setting? the first argument is empty");
  if (words.size() == 3) {
    const std::string place = concat(words[0], "/", words[1]);
    const std::string inDocument = document::placeInDocument(place);
    if (inDocument != place) return {inDocument, "", words[2]};
    return {words[0], words[1], words[2]};
  }
  if (words.size() == 2) return {document::placeInDocument(words[0]), "", words[1]};
  throw Refusal(Status::Usage, words.size() == 1
                                   ? concat("which value? give ", words[0], "=VALUE")
                                   : "give PLACE=VALUE for each, or SECTION NAME VALUE");
}

constexpr char kChangedLine[] = "{section}/{name}: {before} -> {value}";
constexpr char kUnchanged[] = "{section}/{name}: it is {value} already";

Answer setAll(const std::vector<parameters::Assignment>& assignments, bool force, bool rehearse) {
  const Outcome outcome = parameters::setParameters(assignments, force, rehearse);
  Answer answer;
  answer.layout = {cli::Lines{"changes", kChangedLine}, cli::Lines{"unchanged", kUnchanged}};
  answer.value["dryRun"] = rehearse;
  for (const auto& [name, list] : outcome.value.items()) answer.value[name] = list;
  if (rehearse || answer.value["changes"].empty())
    answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

// Of settings of which not all are parameters.
Answer setInDocument(const std::vector<parameters::Assignment>& assignments,
                     const Arguments& arguments) {
  std::vector<std::pair<std::string, std::string>> values;
  for (const auto& [place, name, value] : assignments) {
    const bool isAskedFor = value == "-" && settings::isSecretAt(place);
    values.emplace_back(place, isAskedFor ? readSecret(place) : value);
  }
  const bool rehearse = arguments.given(kDryRun);
  const device::Turn turn(filesFor(arguments, device::Turn::allFiles()));
  return changed(document::setSingles(values, {rehearse, false, arguments.given(kForce)}),
                 kSoAlready);
}

Answer set(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.texts(kAssignment);
  const bool force = arguments.given(kForce);
  const bool rehearse = arguments.given(kDryRun);
  const bool isOne = !isAssignment(words.front());
  const std::vector<parameters::Assignment> assignments =
      isOne ? std::vector{assignmentOf(words)} : assignmentsIn(words);
  if (std::any_of(assignments.begin(), assignments.end(), [](const auto& assignment) {
        return assignment.name.empty() && document::isInDocument(assignment.place);
      }))
    return setInDocument(assignments, arguments);
  const device::Turn turn(filesFor(arguments, {CFG_FILE_BUSINESS}));
  return isOne ? setOne(assignments.front(), force, rehearse)
               : setAll(assignments, force, rehearse);
}

// All parameters of exactly this name, first the one that the library finds without a section.
std::vector<parameters::Parameter> requireNamed(const parameters::Parameters& parameters,
                                                const std::string& name,
                                                const std::optional<parameters::Parameter>& found) {
  std::vector<parameters::Parameter> named;
  std::vector<std::string> names;
  for (const parameters::Parameter& parameter : parameters.all()) {
    names.push_back(parameter.name);
    if (parameter.name == name)
      named.insert(isSame(found, parameter) ? named.begin() : named.end(), parameter);
  }
  if (!named.empty()) return named;
  std::string lookup = found ? concat(" (a lookup finds ", found->path(), ")") : "";
  throw Refusal(concat("there is no parameter '", name, "'", lookup, didYouMean(name, names)));
}

std::vector<cli::Block> descriptionOf(const parameters::Parameter& parameter) {
  std::vector<cli::LabelledText> fields = {
      {"name", "{name}"}, {"section", "{section}"}, {"type", "{type}"}};
  if (parameter.form().isInteger())
    fields.insert(fields.end(), {{"range", "{min}..{max}"}, {"step", "{step}"}});
  else
    fields.push_back({"allowed", "{allowed}"});
  fields.insert(fields.end(), {{"default", "{default}"},
                               {"current", "{value}"},
                               {"answered by", "{answeredBy}"},
                               {"also in", "{alsoIn}"}});
  return {Fields{fields}};
}

// A setting that is no parameter, by its place in a document.
Answer describeInDocument(const std::string& place) {
  return Answer(document::getSingle(place), {Fields{{{"place", "{place}"},
                                                     {"meaning", "{help}"},
                                                     {"permitted", "{permitted}"},
                                                     {"unit", "{unit}"},
                                                     {"current", "{value}"}}}});
}

Answer describe(const Arguments& arguments) {
  const std::string word = document::placeInDocument(arguments.text(kName));
  if (document::isInDocument(word)) return describeInDocument(word);
  const parameters::Parameters parameters;
  const bool isPlace = isAmong(parameters.sections(), word.substr(0, word.find('/'))) &&
                       word.find('/') != std::string::npos;
  const std::string name = isPlace ? word.substr(word.find('/') + 1) : word;
  const auto found = isPlace ? parameters.requireAt(word) : parameters.lookup(name);
  const std::vector<parameters::Parameter> named = requireNamed(parameters, name, found);
  const parameters::Parameter& parameter = named.front();

  Answer answer;
  answer.value = recordOf(parameter);
  answer.value["default"] = parameter.value("Def");
  answer.value["min"] = parameter.value("Min");
  answer.value["max"] = parameter.value("Max");
  answer.value["step"] = parameter.value("Step");
  answer.value["allowed"] = parameter.value("OptTxt");
  answer.value["answeredBy"] = pathOrNull(found);
  answer.value["alsoIn"] = Json::array();
  for (std::size_t i = 1; i < named.size(); ++i) answer.value["alsoIn"].push_back(named[i].section);
  answer.layout = descriptionOf(parameter);
  return answer;
}

const Option kOfSection{
    Option::Argument, kSection,
    "Section of the parameter; or its place, SECTION/NAME, or a name that only one section has"};
const Option kWholeName{Option::OptionalArgument, kName,
                        "Whole name; PARENT/NAME for one inside another"};

}  // namespace

Answer setOne(const parameters::Assignment& assignment, bool force, bool rehearse) {
  const Outcome outcome = parameters::setParameters({assignment}, force, rehearse);
  const bool isChanged = !outcome.value.at("changes").empty();
  Answer answer;
  answer.value = outcome.value.at(isChanged ? "changes" : "unchanged").at(0);
  answer.layout = {Line{isChanged ? kChangedLine : kUnchanged}};
  if (rehearse || !isChanged) answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

CommandGroup parametersGroup() {
  return {
      "Parameters",
      {command("list", "List the parameters and their current values", list,
               {{Option::OptionalArgument, kSection, "Only this section"}}),
       command("get", "Print the current value of a parameter", get, {kOfSection, kWholeName}),
       changer("set", "Set parameters and save them with their backup", set,
               {{Option::Arguments, kAssignment,
                 "A place such as System/Rtsp, or a name that is only in one section, and an "
                 "integer within the range or an allowed text; also a place that 'find' prints, "
                 "or SECTION NAME VALUE"},
                {Option::Flag, kForce,
                 "Set a text that is only a part of an allowed one, or what 'network set --force' "
                 "takes, and confirm a change that is on trial first"},
                dryRun()}),
       command("describe", "Show a parameter's type, limits, default and value", describe,
               {{Option::Argument, kName,
                 "Whole name, or SECTION/NAME; or a place that 'find' prints"}})}};
}

}  // namespace camcfg::tool::commands
