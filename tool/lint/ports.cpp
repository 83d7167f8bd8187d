#include <map>
#include <set>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/media.h"
#include "settings/network.h"
#include "settings/system.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

using Ports = std::map<int, const XMLElement*>;

Ports systemPortsIn(const Source& source, const char* side, Findings* findings) {
  Ports ports;
  const XMLElement* system = source.document->FirstChildElement(settings::kSystemSection);
  if (system == nullptr) return ports;
  for (const XMLElement* element : childrenOf(*system)) {
    bool isPort = false;
    for (const settings::SystemPort& port : settings::systemPorts())
      isPort = isPort || std::string_view(port.parameter) == element->Name();
    const std::optional<int> number = settings::integerIn(*element, side);
    if (!isPort || !number) continue;
    const auto [first, isNew] = ports.emplace(*number, element);
    if (isNew || findings == nullptr || first->second->Name() == std::string_view(element->Name()))
      continue;
    if (side == std::string_view("Def") &&
        settings::integerIn(*element, "Cur") == settings::integerIn(*first->second, "Cur"))
      continue;
    Item{*element, std::string("System/") + element->Name(), *findings}.addOf(
        kPortOfTwoServices, side,
        concat(" ", *number, " is the port of ", first->second->Name(), atLine(*first->second),
               ", too"));
  }
  return ports;
}

bool isListener(const XMLElement& instance) {
  return isSameWord(textOf(instance, "Mode"), "Listener");
}

// The only source of a kind; of several it cannot be said which belong together.
const Source* onlyOf(FileKind kind, const std::vector<Source>& sources) {
  const Source* only = nullptr;
  for (const Source& source : sources) {
    if (!source.isWhole() || source.kind != kind) continue;
    if (only != nullptr) return nullptr;
    only = &source;
  }
  return only;
}

// The names and addresses by which the device itself is called.
std::set<std::string> ownHosts(const Source& parameters) {
  std::set<std::string> hosts = {"localhost", "127.0.0.1", "::1"};
  const XMLElement* network = parameters.document->FirstChildElement(settings::kNetworkSection);
  if (network == nullptr) return hosts;
  for (const XMLElement* card : childrenOf(*network)) {
    const auto is = [&](const char* name, const char* word) {
      const XMLElement* field = card->FirstChildElement(name);
      return field != nullptr && textOf(*field, "Cur") == word;
    };
    const XMLElement* address = card->FirstChildElement("IpAddr");
    if (address != nullptr && !is("Enable", "Off") && is("IpMode", "StaticIp"))
      hosts.insert(textOf(*address, "Cur"));
  }
  return hosts;
}

void checkCalls(const Source& parameters, const Source& media, Findings& findings) {
  const Elements instances = entriesIn(*media.document, settings::srt());
  Ports listeners;
  for (const XMLElement* instance : instances)
    if (const auto port = settings::integerIn(*instance, "Port"); port && isListener(*instance))
      listeners.emplace(*port, instance);
  const std::set<std::string> own = ownHosts(parameters);
  for (const XMLElement* instance : instances) {
    const auto listener = listeners.find(settings::integerIn(*instance, "Port").value_or(-1));
    if (isListener(*instance) || listener == listeners.end() ||
        own.count(textOf(*instance, "Hostname")) == 0)
      continue;
    Item{*instance, concat(tag(instance->Name()), " ", quoted(textOf(*instance, "Id"))), findings}
        .addAt(kCallsItself, "Hostname", " calls the listener" + atLine(*listener->second));
  }
}

}  // namespace

void checkSystemPorts(const Source& source, Findings& findings) {
  for (const char* side : {"Cur", "Def"}) systemPortsIn(source, side, &findings);
}

void checkPortsOfAll(const std::vector<Source>& sources, std::vector<Findings>& findings) {
  const Source* parameters = onlyOf(FileKind::Parameters, sources);
  const Source* media = onlyOf(FileKind::Media, sources);
  if (parameters == nullptr || media == nullptr) return;
  checkCalls(*parameters, *media, findings[static_cast<std::size_t>(media - sources.data())]);
  const Ports system = systemPortsIn(*parameters, "Cur", nullptr);
  const bool isLater = media > parameters;
  const Source& later = isLater ? *media : *parameters;
  const Source& earlier = isLater ? *parameters : *media;
  Findings& found = findings[static_cast<std::size_t>(&later - sources.data())];
  for (const XMLElement* instance : entriesIn(*media->document, settings::srt())) {
    const auto port = system.find(settings::integerIn(*instance, "Port").value_or(-1));
    if (!isListener(*instance) || port == system.end()) continue;
    const XMLElement& place = isLater ? *instance : *port->second;
    const XMLElement& other = isLater ? *port->second : *instance;
    found.add(kPortOfTwoServices, place,
              concat(tag(place.Name()), ": ", port->first, " is the port of ", tag(other.Name()),
                     " in ", earlier.name, atLine(other), ", too"));
  }
}

}  // namespace camcfg::tool::lint
