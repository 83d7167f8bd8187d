#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "report/facts.h"
#include "report/sources.h"
#include "settings/media.h"

namespace camcfg::tool::report {
namespace {

constexpr int kRtspPort = 554;

Json entriesOf(const Json& sections, const char* name) {
  for (const Json& section : sections)
    if (section.at("name") == name && section.contains("entries")) return section.at("entries");
  return Json::array();
}

// Where the device is reached: the address of its first card that has one, or its name.
std::string hostOf(const Json& sections) {
  std::string hostname = "DEVICE";
  for (const Json& section : sections) {
    if (section.at("name") != "network" || !section.contains("cards")) continue;
    for (const Json& card : section.at("cards")) {
      std::string address = document::textOf(document::memberOrNothing(card, "ipAddr"));
      if (document::memberOrNothing(card, "enable") != false && !address.empty()) return address;
    }
    const Json& name = section.at("hostname");
    if (name.is_string() && !name.text().empty()) hostname = name.text();
  }
  return hostname;
}

// IPv6 addresses are in brackets.
std::string bracketed(const std::string& host) {
  return std::count(host.begin(), host.end(), ':') > 1 && host[0] != '[' ? concat("[", host, "]")
                                                                         : host;
}

Json service(const char* name, const Json& session, const std::string& address,
             const std::string& needs, const Json& enabled) {
  return {{"service", name},
          {"name", document::textOf(session)},
          {"address", address},
          {"needs", needs},
          {"enabled", enabled}};
}

// What a path or the value of a query has as it is, RFC 3986.
constexpr char kPath[] = "-._~!$&'()*+,;=:@/";
constexpr char kQuery[] = "-._~!$'()*,=:@/";

// Placeholders stay as they are.
std::string nameIn(const Json& facts, const std::string& name, const char* punctuation) {
  return facts.at("made").at("anonymous") == true ? name : inUrl(name, punctuation);
}

void addSrt(const Json& facts, const std::string& host, Json& services) {
  for (const Json& instance : entriesOf(facts.at("sections"), "live.srt")) {
    const bool isCaller = !instance.at("hostname").is_null();
    const std::string other = isCaller ? bracketed(instance.at("hostname").text()) : host;
    std::string needs = isCaller ? "the device calls this address" : "";
    if (instance.at("aesMode") != 0)
      needs += std::string(needs.empty() ? "" : "; ") + "encrypted, the pass phrase is needed";
    for (const Json& stream : instance.at("streams"))
      services.push_back(
          service("SRT", concat(instance.at("id").dump(), ": ", stream.at("id").text()),
                  concat("srt://", other, ":", instance.at("port").dump(),
                         "?streamid=", nameIn(facts, stream.at("id").text(), kQuery)),
                  needs, true));
  }
}

}  // namespace

Json servicesOf(const Json& facts) {
  const Json& sections = facts.at("sections");
  const std::string host = bracketed(hostOf(sections));
  Json services = Json::array();
  const Json* port = facts.at("system").find_path("ports/rtsp");
  const bool hasPort = port != nullptr && port->is_number_integer() && *port != kRtspPort;
  for (const Json& session : entriesOf(sections, "live.rtsp"))
    services.push_back(service("RTSP", session.at("name"),
                               concat("rtsp://", host, hasPort ? ":" + port->dump() : "", "/",
                                      nameIn(facts, session.at("name").text(), kPath)),
                               "", true));
  for (const Json& target : entriesOf(sections, "live.rtmp"))
    services.push_back(service("RTMP", target.at("id"), target.at("url").text(),
                               "the device sends to this address", target.at("enabled")));
  addSrt(facts, host, services);
  for (const Json& instance : entriesOf(sections, "live.ndi"))
    services.push_back(service("NDI", instance.at("id"),
                               concat(instance.at("mainStreamName").text(), " in the group ",
                                      instance.at("groupName").text()),
                               "found by its name", instance.at("enabled")));
  for (const Json& session : entriesOf(sections, "live.websocket"))
    services.push_back(service("WebSocket", session.at("id"), session.at("name").text(),
                               "session of the device's own page", true));
  return services;
}

}  // namespace camcfg::tool::report
