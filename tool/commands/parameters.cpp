#include "parameters/parameter.h"

#include <camcfg/types.h>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"

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
  const parameters::Parameters parameters;
  const parameters::Parameter parameter =
      parameters.require(arguments.text(kSection), arguments.text(kName));
  if (parameter.text("Cur") == nullptr)
    throw Refusal(parameter.path() + ": it has no current value");

  Answer answer;
  answer.value = recordOf(parameter);
  answer.layout = {Line{"{value}"}};
  const auto found = parameters.lookup(parameter.section, parameter.name);
  answer.value["answeredBy"] = pathOrNull(found);
  if (!isSame(found, parameter))
    answer.notes.push_back("note: applications that ask for " + parameter.path() + " get " +
                           (found ? found->path() : "nothing") +
                           ", since another name that begins with it comes first");
  return answer;
}

Answer set(const Arguments& arguments) {
  const device::Turn turn({CFG_FILE_BUSINESS});
  return Answer(parameters::setParameter(arguments.text(kSection), arguments.text(kName),
                                         arguments.text(kValue), arguments.given(kForce)),
                {Line{"{section}/{name}: {before} -> {value}"}});
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
  std::string lookup = found ? " (a lookup finds " + found->path() + ")" : "";
  throw Refusal("there is no parameter '" + name + "'" + lookup + didYouMean(name, names));
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

Answer describe(const Arguments& arguments) {
  const std::string name = arguments.text(kName);
  const parameters::Parameters parameters;
  const auto found = parameters.lookup(name);
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

const Option kOfSection{Option::Argument, kSection, "Section of the parameter"};
const Option kWholeName{Option::Argument, kName, "Whole name; PARENT/NAME for one inside another"};

}  // namespace

CommandGroup parametersGroup() {
  return {
      "Parameters",
      {command("list", "List the parameters and their current values", list,
               {{Option::OptionalArgument, kSection, "Only this section"}}),
       command("get", "Print the current value of a parameter", get, {kOfSection, kWholeName}),
       changer(
           "set", "Set a parameter and save it with its backup", set,
           {kOfSection,
            kWholeName,
            {Option::Argument, kValue, "An integer within the range, or an allowed text"},
            {Option::Flag, kForce,
             "Set a text that is only a part of an allowed one, and confirm a change that is on "
             "trial first"}}),
       command("describe", "Show a parameter's type, limits, default and value", describe,
               {kWholeName})}};
}

}  // namespace camcfg::tool::commands
