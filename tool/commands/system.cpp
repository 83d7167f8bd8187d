#include <camcfg/params.h>

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/files.h"
#include "device/turn.h"
#include "parameters/system.h"
#include "settings/system.h"

namespace camcfg::tool::commands {
namespace {

using settings::kSystemSection;
using settings::SystemPort;

constexpr char kPort[] = "PORT";

Answer system(const Arguments& /*arguments*/) {
  return {parameters::systemJson(), {systemFields("")}};
}

Answer showPort(const SystemPort& port) {
  device::requireDocument(CFG_FILE_BUSINESS);
  const std::optional<int> number = port.read();
  const std::string path = concat(kSystemSection, "/", port.parameter);
  if (!number) throw Refusal(path + ": no port is set there");
  return {Json{{"port", port.member}, {"parameter", path}, {"value", *number}}, {Line{"{value}"}}};
}

cli::Command commandFor(const SystemPort& port) {
  return {
      port.command,
      port.help,
      {{Option::OptionalArgument, kPort, "The new port; without it the port is shown"}, dryRun()},
      [&port](const Arguments& arguments) {
        if (!arguments.given(kPort)) return showPort(port);
        const device::Turn turn(filesFor(arguments, {CFG_FILE_BUSINESS}));
        return setOne({kSystemSection, port.parameter, arguments.text(kPort)}, false,
                      arguments.given(kDryRun));
      }};
}

// The library leaves the buffer alone when there is no such key, and otherwise writes a text with
// its terminator into it: one without any terminator was left alone.
bool findText(const std::string& language, const std::string& key, std::string& text) {
  std::vector<char> buffer(CFG_LANG_TEXT_SIZE, '?');
  if (CFG_LANG_GetString(device::argument(language), device::argument(key), buffer.data()) != 0)
    return false;
  const auto end = std::find(buffer.begin(), buffer.end(), '\0');
  text.assign(buffer.begin(), end);
  return end != buffer.end();
}

Answer lang(const Arguments& arguments) {
  const std::string language = arguments.text(kLanguage);
  const std::string key = arguments.text(kKey);
  const device::Document texts = device::requireTexts(language);
  std::string text;
  if (!findText(language, key, text))
    throw Refusal(
        concat(language, " has no text '", key, "'", didYouMean(key, device::keysOf(*texts))));
  return {Json{{"language", language}, {"key", key}, {"text", text}}, {Line{"{text}"}}};
}

}  // namespace

Fields systemFields(const std::string& above) {
  Fields fields;
  for (const char* name : {"name", "model", "language"})
    fields.fields.push_back({name, concat("{", above, name, "}")});
  for (const SystemPort& port : settings::systemPorts())
    fields.fields.push_back({port.label, concat("{", above, "ports/", port.member, "}")});
  return fields;
}

CommandGroup systemGroup() {
  CommandGroup group{"System", {}};
  group.commands.push_back(command("system", "Show the device's name, language and ports", system));
  for (const SystemPort& port : settings::systemPorts()) {
    group.commands.push_back(commandFor(port));
    group.commands.back().changesDevice = true;
    group.commands.back().changesSettings = true;
  }
  return group;
}

CommandGroup languageGroup() {
  return {"Texts",
          {command("lang", "Print a translated text", lang,
                   {{Option::Argument, kLanguage, "Name of a language file, without .xml"},
                    {Option::Argument, kKey, "Key of the text"}})}};
}

}  // namespace camcfg::tool::commands
