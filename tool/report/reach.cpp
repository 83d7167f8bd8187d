#include "base/concat.h"
#include "base/html.h"
#include "document/keyed.h"
#include "report/facts.h"
#include "report/parts.h"

namespace camcfg::tool::report {
namespace {

// What makes an address one that does not answer.
std::string reachHtml(const Json& network) {
  if (isFault(network)) return "";
  std::string first;
  std::string html;
  for (const Json& card : network.at("cards")) {
    const std::string address = document::textOf(document::memberOrNothing(card, "ipAddr"));
    if (document::memberOrNothing(card, "enable") == false || address.empty()) continue;
    const std::string& name = card.at("name").text();
    std::string text;
    if (first.empty())
      write(text, "The device's address below is that of its card ", name, ".");
    else
      write(text, "On the network of ", name, ", put ", address, " in place of ", first, ".");
    if (document::memberOrNothing(card, "ipMode") == "DhcpIp")
      write(text, " ", name, " gets its address by DHCP: it may have another one than its file, ",
            address, ".");
    if (first.empty()) first = address;
    html += paragraph(text);
  }
  return html;
}

}  // namespace

std::string servicesHtml(const Json& facts) {
  const Json& services = facts.at("services");
  if (services.empty()) return paragraph("No service has a session that can be read.");
  HtmlTable table("Addresses of all sessions",
                  {"Session", "Service", "Address", "Note", "Enabled"});
  for (const Json& service : services)
    table.row({service.at("name").text(), service.at("service").text(),
               service.at("address").text(), service.at("needs").text(),
               service.at("enabled") == true ? "yes" : "no"});
  return reachHtml(facts.at("network")) + table.html();
}

std::string networkHtml(const Json& network) {
  if (isFault(network)) return faultHtml(network);
  HtmlTable table("Network cards", {"Card", "Interface", "Enabled", "Mode", "Address", "Netmask",
                                    "Gateway", "DNS servers", "MTU"});
  for (const Json& card : network.at("cards")) {
    const auto field = [&](const char* name) {
      return shown(document::memberOrNothing(card, name));
    };
    table.row({card.at("name").text(), field("intf"), field("enable") == "true" ? "yes" : "no",
               field("ipMode"), field("ipAddr"), field("netMask"), field("gateWay"),
               concat(field("dns1"), field("dns2").empty() ? "" : ", ", field("dns2")),
               field("mtu")});
  }
  return concat(paragraph("Host name: " + shown(network.at("hostname"))), table.html(),
                scrolled("Subnets", subnetsPicture(network.at("cards"))));
}

}  // namespace camcfg::tool::report
