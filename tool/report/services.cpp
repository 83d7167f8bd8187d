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

Json service(const char* name, const Json& session, const std::string& address,
             const std::string& needs, const Json& enabled) {
  return {{"service", name},
          {"name", document::textOf(session)},
          {"address", address},
          {"needs", needs},
          {"enabled", enabled}};
}

// An SRT address, which has the stream's name in it.
std::string srtAddress(const std::string& host, const Json& instance, const Json& stream) {
  return "srt://" + host + ":" + instance.at("port").dump() + "?streamid=" + stream.at("id").text();
}

void addSrt(const Json& sections, const std::string& host, Json& services) {
  for (const Json& instance : entriesOf(sections, "live.srt")) {
    const bool isCaller = !instance.at("hostname").is_null();
    const std::string other = isCaller ? instance.at("hostname").text() : host;
    std::string needs = isCaller ? "the device calls this address" : "";
    if (instance.at("aesMode") != 0)
      needs += std::string(needs.empty() ? "" : "; ") + "the pass phrase";
    for (const Json& stream : instance.at("streams"))
      services.push_back(service("SRT", instance.at("id").dump() + ": " + stream.at("id").text(),
                                 srtAddress(other, instance, stream), needs, true));
  }
}

}  // namespace

Json servicesOf(const Json& facts) {
  const Json& sections = facts.at("sections");
  const std::string host = hostOf(sections);
  Json services = Json::array();
  const Json* port = facts.at("system").find_path("ports/rtsp");
  const bool hasPort = port != nullptr && port->is_number_integer() && *port != kRtspPort;
  for (const Json& session : entriesOf(sections, "live.rtsp"))
    services.push_back(service(
        "RTSP", session.at("name"),
        "rtsp://" + host + (hasPort ? ":" + port->dump() : "") + "/" + session.at("name").text(),
        "", true));
  for (const Json& target : entriesOf(sections, "live.rtmp"))
    services.push_back(service("RTMP", target.at("id"), target.at("url").text(),
                               "the device sends to this address", target.at("enabled")));
  addSrt(sections, host, services);
  for (const Json& instance : entriesOf(sections, "live.ndi"))
    services.push_back(service(
        "NDI", instance.at("id"),
        instance.at("mainStreamName").text() + " in the group " + instance.at("groupName").text(),
        "found by its name", instance.at("enabled")));
  for (const Json& session : entriesOf(sections, "live.websocket"))
    services.push_back(service("WebSocket", session.at("id"), session.at("name").text(),
                               "session of the device's own page", true));
  return services;
}

}  // namespace camcfg::tool::report
