#include <arpa/inet.h>

#include <algorithm>
#include <map>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/network.h"
#include "settings/subnet.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

bool isOn(const Item& item, const char* attribute, const char* otherwise) {
  return isSameWord(item.has(attribute) ? item.text(attribute) : otherwise, "true");
}

// Entries of which no two may have the same of something.
using Firsts = std::map<std::string, const XMLElement*>;

void takeOnce(const Rule& rule, const Item& item, const char* attribute, const std::string& key,
              const std::string& what, Firsts& firsts) {
  const auto [first, isNew] = firsts.emplace(key, &item.element);
  if (!isNew)
    item.addOf(rule, attribute, concat(" is ", what, " of the one", atLine(*first->second)));
}

void checkHasChannels(const Item& item, const char* inner) {
  if (media::entriesOf(item.element, {inner}).empty())
    item.add(kNothingSent, concat(" has no <", inner, ">, so nothing is sent"));
}

std::string whyNotIpv6(const std::string& text) {
  in6_addr address{};
  if (inet_pton(AF_INET6, text.substr(0, text.find('%')).c_str(), &address) != 1)
    return quoted(text) + " is no IPv6 address, and host names have no colon";
  return IN6_IS_ADDR_MULTICAST(&address) ? quoted(text) + " is a multicast address" : "";
}

// Resolvers take more than what a device may call itself: underscores, a dot at the end.
std::string whyNotToBeCalled(const std::string& host) {
  if (host.find(':') != std::string::npos) return whyNotIpv6(host);
  if (!host.empty() && host.find_first_not_of("0123456789.") == std::string::npos)
    return settings::whyNotAServer(host);
  std::string name = host;
  std::replace(name.begin(), name.end(), '_', 'x');
  if (name.size() > 1 && name.back() == '.') name.pop_back();
  return settings::whyNotAHostname(name);
}

// "HOST", "HOST:PORT", "[IPV6]:PORT"
std::string whyNotAServer(const std::string& server) {
  const std::size_t bracket = server.rfind(']');
  const std::size_t colon = server.find(':', bracket == std::string::npos ? 0 : bracket);
  const bool isBare = bracket == std::string::npos && colon != server.rfind(':');
  if (server.empty() || colon == 0) return "names no host";
  if (colon != std::string::npos && !isBare) {
    const auto number = decimal32(server.substr(colon + 1));
    if (!number || !settings::kPorts.has(*number)) return "has a port that is not one";
  }
  std::string host = isBare ? server : server.substr(0, colon);
  if (host.front() == '[') host = host.substr(1, bracket - 1);
  return whyNotToBeCalled(host);
}

// Addresses may hold keys and passwords: findings do not show them.
std::string whyNotAUrl(const std::string& url) {
  if (url.find_first_of(" \t\r\n") != std::string::npos) return "has white space in it";
  const std::size_t colon = url.find("://");
  if (colon == std::string::npos) return "has no scheme as in rtmp://";
  const std::string scheme = url.substr(0, colon);
  constexpr const char* kSchemes[] = {"rtmp",  "rtmps",  "rtmpt", "rtmpe",
                                      "rtmfp", "rtmpte", "rtmpts"};
  if (std::none_of(std::begin(kSchemes), std::end(kSchemes),
                   [&](const char* known) { return isSameWord(scheme, known); }))
    return "is not of RTMP: its scheme is " + quoted(scheme);
  const std::size_t path = std::min(url.find_first_of("/?#", colon + 3), url.size());
  const std::string place = url.substr(colon + 3, path - colon - 3);
  std::string why = whyNotAServer(place.substr(place.rfind('@') + 1));
  if (!why.empty()) return why;
  return path + 1 < url.size() ? "" : "names no application, as in rtmp://HOST/APP";
}

// The same for all ways of writing one: case counts in the path only.
std::string plainUrl(const std::string& url) {
  constexpr std::string_view kDefaultPort = ":1935";
  const std::size_t colon = std::min(url.find("://"), url.size());
  const std::size_t path = std::min(url.find('/', colon + 3), url.size());
  std::string place = inLowerCase(std::string_view(url).substr(0, path));
  const bool hasDefault =
      place.size() > kDefaultPort.size() &&
      place.compare(place.size() - kDefaultPort.size(), std::string::npos, kDefaultPort) == 0;
  if (hasDefault && colon == std::string_view("rtmp").size())
    place.resize(place.size() - kDefaultPort.size());
  return place + url.substr(path);
}

void checkTarget(const Item& target, Firsts& urls) {
  checkHasChannels(target, "Channel");
  if (!target.has("Enable")) target.add(kExpectedAttribute, " has no \"Enable\", so it is sent to");
  const std::string url = target.text("url");
  const std::string why = whyNotAUrl(url);
  if (!isOn(target, "Enable", "true")) {
    if (!url.empty() && !why.empty()) target.addOf(kUrlWhenEnabled, "url", " " + why);
    return;
  }
  if (target.has("url") && !why.empty()) target.addOf(kRtmpUrl, "url", " " + why);
  if (!url.empty()) takeOnce(kUrlTwice, target, "url", plainUrl(url), "that", urls);
  if (!isBlank(target.text("username"))) target.checkName("username");
  if (!target.text("username").empty() && target.text("password").empty())
    target.addAt(kAccountIncomplete, "username", " has a user name without a password");
}

// Several have commas between them.
void checkDiscovery(const Item& instance) {
  const std::string servers = instance.text("DiscoveryServer");
  if (servers.empty())
    return instance.addAt(kDiscoveryWithoutServer, "DiscoveryServerEnable",
                          " uses a discovery server, but names none");
  for (const std::string& server : parts(servers, ',')) {
    const std::size_t begin = std::min(server.find_first_not_of(' '), server.size());
    const std::string why =
        whyNotAServer(server.substr(begin, server.find_last_not_of(' ') + 1 - begin));
    if (!why.empty())
      return instance.addOf(kDiscoveryServer, "DiscoveryServer",
                            concat(" ", quoted(clipped(servers)), ": ", clipped(why)));
  }
}

// The first channel of a type; null if there is none.
const XMLElement* channelOf(const Item& instance, const char* type) {
  for (const XMLElement* channel : media::entriesOf(instance.element, {"Channel"}))
    if (isSameWord(textOf(*channel, "Type"), type)) return channel;
  return nullptr;
}

void checkPictures(const Item& instance) {
  const XMLElement* main = channelOf(instance, "MainVideo");
  const XMLElement* sub = channelOf(instance, "SubVideo");
  if (sub == nullptr) return;
  const Item item{*sub, instance.name, instance.findings};
  if (main == nullptr)
    item.add(kMainVideoMissing, " has a channel of type SubVideo, but none of type MainVideo");
  else if (has(*sub, "Id") && textOf(*sub, "Id") == textOf(*main, "Id"))
    item.addOf(kChannelTwice, "Id", " is that of the one" + atLine(*main));
}

// Routers keep these addresses in their subnet.
constexpr std::uint32_t kLocalMulticast = 0xe0000000;
constexpr std::uint32_t kLocalMask = 0xffffff00;

void checkReach(const Item& instance) {
  if (!isOn(instance, "MulticastEnable", "false")) return;
  if (settings::integerIn(instance.element, "MulticastTTL") == 0)
    instance.addOf(kMulticastTtl, "MulticastTTL", " 0 keeps it on the device");
  const auto address = settings::ipv4Of(instance.text("MulticastIp"));
  if (address && (*address & kLocalMask) == kLocalMulticast)
    instance.addOf(kMulticastLocal, "MulticastIp",
                   concat(" ", instance.text("MulticastIp"), " is of the protocols of routers"));
}

void checkInstance(const Item& instance, Firsts& names) {
  checkHasChannels(instance, "Channel");
  if (!isOn(instance, "Enable", "false")) return;
  checkPictures(instance);
  const std::string name = instance.text("MainStreamName");
  instance.checkName("MainStreamName");
  if (!name.empty())
    takeOnce(kStreamNameTwice, instance, "MainStreamName", inLowerCase(name), "that", names);
  if (isOn(instance, "DiscoveryServerEnable", "false")) checkDiscovery(instance);
  checkReach(instance);
}

// The shortest and the longest pass phrase of the protocol.
constexpr settings::Range kPassPhrase{10, 79};
constexpr int kLongLatency = 10000;
constexpr std::size_t kLongestStreamId = 512;

void checkEncryption(const Item& instance) {
  if (instance.element.IntAttribute("AesMode", 0) <= 0) return;
  const auto length = static_cast<std::int64_t>(instance.text("Password").size());
  if (length == 0)
    instance.addAt(kSrtPasswordMissing, "AesMode", " is encrypted, but has no password");
  else if (!kPassPhrase.has(length))
    instance.addOf(kSrtPasswordLength, "Password",
                   concat(" has ", length, " bytes, outside ", kPassPhrase.text()));
}

void checkStreamsOf(const Item& instance) {
  checkHasChannels(instance, "Stream");
  const Elements streams = media::entriesOf(instance.element, {"Stream"});
  const XMLElement* marked = nullptr;
  for (const XMLElement* element : streams) {
    const Item stream{*element, concat(tag(element->Name()), " ", quoted(textOf(*element, "Id"))),
                      instance.findings};
    checkHasChannels(stream, "Channel");
    const std::string id = stream.text("Id");
    stream.checkName("Id");
    if (id.size() > kLongestStreamId)
      stream.addOf(
          kStreamIdTooLong, "Id",
          concat(" has ", id.size(), " bytes, and callers send ", kLongestStreamId, " at most"));
    Firsts channels;
    for (const XMLElement* channel : media::entriesOf(*element, {"Channel"}))
      takeOnce(kChannelTwice, {*channel, stream.name, instance.findings}, "Id",
               textOf(*channel, "Id"), "that", channels);
    if (element->IntAttribute("Default", 0) == 0) continue;
    if (marked != nullptr)
      stream.addAt(kStreamDefault, "Default", " is a default, as the one" + atLine(*marked));
    else
      marked = element;
  }
  if (streams.size() > 1 && marked == nullptr)
    instance.add(kStreamDefault, " has no default among its streams");
}

struct Calls {
  Firsts listeners;
  Firsts callers;
};

void checkSrt(const Item& instance, Calls& calls) {
  checkEncryption(instance);
  checkStreamsOf(instance);
  if (instance.element.IntAttribute("Latency", 0) > kLongLatency)
    instance.addOf(
        kSrtLatency, "Latency",
        concat(" ", clipped(instance.text("Latency")), " is more than ", kLongLatency, " ms"));
  const std::optional<int> number = settings::integerIn(instance.element, "Port");
  if (!number) return;
  const std::string port = std::to_string(*number);
  if (isSameWord(instance.text("Mode"), "Listener"))
    return takeOnce(kPortTwice, instance, "Port", port, "the port", calls.listeners);
  const std::string host = instance.text("Hostname");
  if (!instance.has("Hostname")) return;
  const std::string why = whyNotToBeCalled(host);
  if (!why.empty()) instance.addOf(kSrtHost, "Hostname", ": " + clipped(why));
  takeOnce(kCallTwice, instance, "Port", concat(host, " ", port), "the host and port",
           calls.callers);
}

void checkEachName(const Elements& entries, Findings& findings) {
  for (const XMLElement* entry : entries)
    Item{*entry, tag(entry->Name()), findings}.checkName("Name");
}

// The name of a session is the path of its address.
void checkSessionName(const Item& session, Firsts& names) {
  const std::string name = session.text("Name");
  if (isBlank(name)) return;
  if (name.find("://") != std::string::npos)
    session.addAt(kSessionName, "Name", " is called by an address; its name is the path");
  else if (name.find_first_of(" \t\r\n") != std::string::npos)
    session.addAt(kSessionName, "Name", " has white space in its name");
  else if (name.find('#') != std::string::npos)
    session.addAt(kSessionName, "Name", " has \"#\" in its name, where players end the address");
  const std::string path = inLowerCase(name.front() == '/' ? name.substr(1) : name);
  const auto [first, isNew] = names.emplace(path, &session.element);
  if (!isNew && textOf(*first->second, "Name") != name)
    session.addAt(kSessionName, "Name",
                  concat(" is called as the one", atLine(*first->second),
                         " except for case or the first slash"));
}

Item entryOf(const XMLElement& entry, Findings& findings) {
  return {entry, concat(tag(entry.Name()), " ", quoted(textOf(entry, "Id"))), findings};
}

}  // namespace

void checkServices(const Source& source, Findings& findings) {
  const XMLDocument& document = *source.document;
  for (const settings::Table* table : settings::mediaTables())
    checkEachName(entriesIn(document, *table), findings);
  for (const auto* table :
       {&settings::streamSources(), &settings::streamCaches(), &settings::websocket()})
    checkEqualNames(entriesIn(document, *table), "Name", std::string("this ") + table->entry,
                    findings);
  Firsts sessions;
  for (const XMLElement* session : entriesIn(document, settings::rtsp())) {
    const Item item{*session, "session " + quoted(textOf(*session, "Name")), findings};
    checkHasChannels(item, "Channel");
    checkSessionName(item, sessions);
    const Elements channels = media::entriesOf(*session, {"Channel"});
    checkEachName(channels, findings);
    checkEqualNames(channels, "Name", "this channel", findings);
  }
  Firsts urls;
  for (const XMLElement* target : entriesIn(document, settings::rtmp()))
    checkTarget(entryOf(*target, findings), urls);
  Firsts names;
  for (const XMLElement* instance : entriesIn(document, settings::ndi()))
    checkInstance(entryOf(*instance, findings), names);
  Calls calls;
  for (const XMLElement* instance : entriesIn(document, settings::srt()))
    checkSrt(entryOf(*instance, findings), calls);
}

}  // namespace camcfg::tool::lint
