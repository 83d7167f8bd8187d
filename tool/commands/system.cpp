#include <camcfg/params.h>

#include <algorithm>
#include <limits>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/files.h"
#include "device/turn.h"
#include "parameters/parameter.h"

namespace camcfg::tool::commands {
namespace {

constexpr int kUnset = std::numeric_limits<int>::min();
constexpr char kPort[] = "PORT";
constexpr char kSystem[] = "System";

struct Port {
  const char* command;
  const char* name;  ///< in the answer of "system"
  const char* parameter;
  const char* help;
  int (*read)();
};

int webPort(std::size_t which) {
  int ports[] = {kUnset, kUnset};
  CFG_SYSTEM_GetHttpPort(&ports[0], &ports[1]);
  return ports[which];
}

int orUnset(int port) {
  return port == 0 ? kUnset : port;
}

constexpr Port kPorts[] = {
    {"system http-port", "http", "WebHttp", "Show or set the HTTP port", [] { return webPort(0); }},
    {"system https-port", "https", "WebHttps", "Show or set the HTTPS port",
     [] { return webPort(1); }},
    {"system rtsp-port", "rtsp", "Rtsp", "Show or set the RTSP port",
     [] { return orUnset(CFG_SYSTEM_GetRtspPort()); }},
    {"system rtsp-over-http-port", "rtspOverHttp", "RtspOverHttp",
     "Show or set the port of RTSP over HTTP",
     [] { return orUnset(CFG_SYSTEM_GetRtspOverHttpPort()); }},
};

Json portOrNull(const Port& port) {
  const int number = port.read();
  return number == kUnset ? Json() : Json(number);
}

// Neither text need be there; the library writes no terminator after the language.
Json languageOrNull() {
  char language[CFG_TXT_CUR_SIZE + 1] = {};
  return CFG_SYSTEM_GetLanguage(language) == 0 ? Json(language) : Json();
}

Answer system(const Arguments& /*arguments*/) {
  device::requireDocument(CFG_FILE_BUSINESS);
  char name[CFG_TXT_CUR_SIZE] = {};
  char model[CFG_TXT_CUR_SIZE] = {};
  const bool named = CFG_SYSTEM_GetDeviceName(name, model) == 0;

  Answer answer;
  answer.value["name"] = named ? Json(name) : Json();
  answer.value["model"] = named ? Json(model) : Json();
  answer.value["language"] = languageOrNull();
  for (const Port& port : kPorts) answer.value["ports"][port.name] = portOrNull(port);
  answer.layout = {Fields{{{"name", "{name}"},
                           {"model", "{model}"},
                           {"language", "{language}"},
                           {"HTTP port", "{ports/http}"},
                           {"HTTPS port", "{ports/https}"},
                           {"RTSP port", "{ports/rtsp}"},
                           {"RTSP over HTTP port", "{ports/rtspOverHttp}"}}}};
  return answer;
}

Answer showPort(const Port& port) {
  device::requireDocument(CFG_FILE_BUSINESS);
  const Json number = portOrNull(port);
  const std::string path = std::string(kSystem) + "/" + port.parameter;
  if (number.is_null()) throw Refusal(path + ": no port is set there");
  return {Json{{"port", port.name}, {"parameter", path}, {"value", number}}, {Line{"{value}"}}};
}

cli::Command commandFor(const Port& port) {
  return {port.command,
          port.help,
          {{Option::OptionalArgument, kPort, "The new port; without it the port is shown"}},
          [&port](const Arguments& arguments) {
            if (!arguments.given(kPort)) return showPort(port);
            const device::Turn turn({CFG_FILE_BUSINESS});
            return Answer(
                parameters::setParameter(kSystem, port.parameter, arguments.text(kPort), false),
                {Line{"{section}/{name}: {before} -> {value}"}});
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
    throw Refusal(language + " has no text '" + key + "'" +
                  didYouMean(key, device::keysOf(*texts)));
  return {Json{{"language", language}, {"key", key}, {"text", text}}, {Line{"{text}"}}};
}

}  // namespace

CommandGroup systemGroup() {
  CommandGroup group{"System", {}};
  group.commands.push_back({"system", "Show the device's name, language and ports", {}, system});
  for (const Port& port : kPorts) {
    group.commands.push_back(commandFor(port));
    group.commands.back().changesDevice = true;
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
