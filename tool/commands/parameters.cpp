#include "device/parameter.h"

#include "commands/groups.h"
#include "device/parameter_change.h"
#include "frame/spelling.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

Json recordOf(const Parameter& parameter) {
  return {{"section", parameter.section},
          {"name", parameter.name},
          {"type", parameter.type()},
          {"value", parameter.value("Cur")}};
}

Json pathOrNull(const std::optional<Parameter>& found) {
  return found ? Json(found->path()) : Json();
}

bool isSame(const std::optional<Parameter>& found, const Parameter& parameter) {
  return found && found->element == parameter.element;
}

Answer list(const Arguments& arguments) {
  const Parameters parameters;
  Answer answer;
  answer.value = Json::array();
  for (const Parameter& parameter :
       arguments.given("SECTION") ? parameters.in(arguments.text("SECTION")) : parameters.all())
    answer.value.push_back(recordOf(parameter));
  answer.layout = {Table{"", {{"SECTION", "{section}"}, {"NAME", "{name}"}, {"VALUE", "{value}"}}}};
  return answer;
}

Answer get(const Arguments& arguments) {
  const Parameters parameters;
  const Parameter parameter = parameters.require(arguments.text("SECTION"), arguments.text("NAME"));
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
                           ", since another name that begins like this comes first");
  return answer;
}

Answer set(const Arguments& arguments) {
  return setParameter(arguments.text("SECTION"), arguments.text("NAME"), arguments.text("VALUE"),
                      arguments.given("--force"));
}

// All parameters of exactly this name, the one that the library finds by name alone in front.
std::vector<Parameter> requireNamed(const Parameters& parameters, const std::string& name,
                                    const std::optional<Parameter>& found) {
  std::vector<Parameter> named;
  std::vector<std::string> names;
  for (const Parameter& parameter : parameters.all()) {
    names.push_back(parameter.name);
    if (parameter.name == name)
      named.insert(isSame(found, parameter) ? named.begin() : named.end(), parameter);
  }
  if (!named.empty()) return named;
  std::string lookup = found ? " (a lookup finds " + found->path() + ")" : "";
  throw Refusal("there is no parameter '" + name + "'" + lookup + didYouMean(name, names));
}

std::vector<Block> descriptionOf(const Parameter& parameter) {
  std::vector<Field> fields = {{"name", "{name}"}, {"section", "{section}"}, {"type", "{type}"}};
  if (parameter.isInteger())
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
  const std::string name = arguments.text("NAME");
  const Parameters parameters;
  const auto found = parameters.lookup(name);
  const std::vector<Parameter> named = requireNamed(parameters, name, found);
  const Parameter& parameter = named.front();

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

const Option kSection{Option::Argument, "SECTION", "Section of the parameter"};
const Option kName{Option::Argument, "NAME", "Whole name; PARENT/NAME for one inside another"};

}  // namespace

CommandGroup parametersGroup() {
  return {"Parameters",
          {{"list",
            "List the parameters and their current values",
            {{Option::OptionalArgument, "SECTION", "Only this section"}},
            list},
           {"get", "Print the current value of a parameter", {kSection, kName}, get},
           {"set",
            "Set a parameter and save it with its backup",
            {kSection,
             kName,
             {Option::Argument, "VALUE", "An integer within the range, or an allowed text"},
             {Option::Flag, "--force", "Set a text that is only a part of an allowed one"}},
            set},
           {"describe", "Tell a parameter's type, limits, default and value", {kName}, describe}}};
}

}  // namespace camcfg::tool
