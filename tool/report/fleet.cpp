#include "report/fleet.h"

#include <algorithm>
#include <map>
#include <optional>

#include "base/concat.h"
#include "base/html.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "report/facts.h"
#include "report/page.h"
#include "settings/secrets.h"

namespace camcfg::tool::report {
namespace {

constexpr std::size_t kMostPlaces = 100;  // of a device, on the page

struct Device {
  std::string name;
  Json state;                                 // its health, findings and version
  std::map<std::string, std::string> values;  // by place
};

// What differs is found by place; lists are by the keys of their entries.
void addValues(const std::string& place, const Json& value, Device& device) {
  if (value.is_object()) {
    for (const auto& [name, member] : value.items())
      addValues(memberPlace(place, name), member, device);
    return;
  }
  const char* key = value.empty() ? nullptr : document::keyOf({&value});
  if (key == nullptr || *key == '\0') {
    const Json masked = settings::maskedAt(place, value);
    device.values[place] = shown(masked);
    return;
  }
  for (const Json& entry : value) {
    const std::string own = document::placeOf(place, entry.at(key));
    for (const auto& [name, member] : entry.items())
      if (name != key) addValues(memberPlace(own, name), member, device);
  }
}

std::size_t countOf(const Json& findings, std::initializer_list<const char*> severities) {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(), [&](const Json& finding) {
        return std::any_of(severities.begin(), severities.end(), [&](const char* severity) {
          return finding.at("severity") == severity;
        });
      }));
}

void addRows(const std::string& place, const Json& rows, Device& device) {
  for (const Json& row : rows) {
    const std::string& name = row.at("name").text();
    const bool isInner = name.find('/') != std::string::npos;  // no document has those
    if (!isInner) device.values[memberPlace(place, name)] = shown(row.at("value"));
  }
}

void addFacts(const Json& facts, Device& device) {
  for (const Json& section : facts.at("sections")) {
    const std::string& name = section.at("name").text();
    if (section.contains("entries")) {
      addValues(name, section.at("entries"), device);
    } else if (section.contains("cards")) {
      addRows(name, section.at("rows"), device);
      for (const Json& card : section.at("cards"))
        addRows(concat(name, ".cards.", card.at("name").text()), card.at("card"), device);
    } else if (section.contains("rows")) {
      addRows("parameters." + name, section.at("rows"), device);
    }
  }
  const Json& findings = facts.at("findings");
  device.state = {{"health", facts.at("health").at("health")},
                  {"errors", countOf(findings, {"unusable", "error", "degraded"})},
                  {"warnings", countOf(findings, {"warning"})},
                  {"version", facts.at("made").at("by")}};
}

void addDocument(const Json& document, Device& device) {
  for (const device::Section& section : document::allSections())
    if (const Json* value = document.find_path(document::pathTo(section)))
      addValues(section.name, *value, device);
}

bool areFacts(const Json& value) {
  return value.contains("sections") && value.contains("findings") && value.contains("made");
}

// Throws std::logic_error where a file only looks like one of the two.
std::optional<Device> deviceIn(const HostFile& file) {
  const JsonText read = readJson(file.contents);
  if (read.fault != 0 || !read.value.is_object()) return std::nullopt;
  Device device{file.path.substr(0, file.path.rfind('.')), {}, {}};
  if (areFacts(read.value))
    addFacts(read.value, device);
  else if (read.value.contains(document::kVersionMember))
    addDocument(read.value, device);
  else
    return std::nullopt;
  return device;
}

// The values that more than half of the devices have, by place.
std::map<std::string, std::string> majorityOf(const std::vector<Device>& devices) {
  std::map<std::string, std::map<std::string, std::size_t>> counts;
  for (const Device& device : devices)
    for (const auto& [place, value] : device.values) ++counts[place][value];
  std::map<std::string, std::string> majority;
  for (const auto& [place, values] : counts)
    for (const auto& [value, count] : values)
      if (2 * count > devices.size()) majority[place] = value;
  return majority;
}

Json driftOf(const Device& device, const std::map<std::string, std::string>& majority) {
  Json drift = Json::array();
  for (const auto& [place, common] : majority) {
    const auto own = device.values.find(place);
    if (own != device.values.end() && own->second == common) continue;
    drift.push_back({{"place", place},
                     {"value", own == device.values.end() ? Json() : Json(own->second)},
                     {"majority", common}});
  }
  for (const auto& [place, value] : device.values)
    if (majority.count(place) == 0 && place.find(']') != std::string::npos)
      drift.push_back({{"place", place}, {"value", value}, {"majority", nullptr}});
  return drift;
}

Json rowOf(const Device& device, const std::map<std::string, std::string>& majority) {
  Json row = {{"name", device.name}};
  for (const char* member : {"health", "errors", "warnings", "version"})
    row[member] = document::memberOrNothing(device.state, member);
  row["drift"] = driftOf(device, majority);
  return row;
}

std::string anchorOf(std::size_t index) {
  return "device-" + std::to_string(index + 1);
}

// A document has settings only.
constexpr char kNotKnown[] = "not known";

std::string orNotKnown(const Json& value) {
  return value.is_null() ? kNotKnown : inCell(shown(value));
}

// Links need markup, so the table is not an HtmlTable.
std::string overview(const Json& devices, const std::vector<std::string>& reports) {
  std::string rows;
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const Json& device = devices[i];
    const std::string& name = device.at("name").text();
    const bool hasReport = std::binary_search(reports.begin(), reports.end(), name + ".html");
    write(rows, "<tr><th scope=\"row\">");
    if (hasReport)
      write(rows, "<a href=\"./", htmlText(name), ".html\">", inCell(name), "</a>");
    else
      rows += inCell(name);
    write(rows, "</th>");
    for (const char* member : {"health", "errors", "warnings", "version"})
      write(rows, "<td>", orNotKnown(device.at(member)), "</td>");
    rows += "<td>";
    const std::size_t drift = device.at("drift").size();
    if (drift == 0)
      rows += "none";
    else
      write(rows, "<a href=\"#", anchorOf(i), "\">", drift, drift == 1 ? " setting" : " settings",
            "</a>");
    rows += "</td></tr>\n";
  }
  return scrolled(
      "Devices",
      concat("<table><caption>Devices</caption><thead><tr><th scope=\"col\">Device</th><th "
             "scope=\"col\">Health</th><th scope=\"col\">Faults</th><th "
             "scope=\"col\">Warnings</th><th scope=\"col\">Version</th><th scope=\"col\">Differs "
             "from the majority</th></tr></thead><tbody>\n",
             rows, "</tbody></table>"));
}

std::string driftHtml(const Json& devices) {
  std::string html;
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const Json& drift = devices[i].at("drift");
    if (drift.empty()) continue;
    const std::string& name = devices[i].at("name").text();
    HtmlTable table(concat("How ", name, " differs"), {"Setting", "Value", "Majority"});
    for (std::size_t j = 0; j < std::min(drift.size(), kMostPlaces); ++j)
      table.row({drift[j].at("place").text(), shown(drift[j].at("value")),
                 shown(drift[j].at("majority"))});
    write(html, "<h3 id=\"", anchorOf(i), "\">", inCell(name), "</h3>\n", table.html());
    if (drift.size() > kMostPlaces)
      html += paragraph(concat("and ", drift.size() - kMostPlaces, " more"));
  }
  return html.empty() ? paragraph("No device differs from the others.") : html;
}

}  // namespace

Json fleetOf(const std::vector<HostFile>& files) {
  std::vector<Device> devices;
  Json unread = Json::array();
  for (const HostFile& file : files) try {
      std::optional<Device> device = file.fault.empty() ? deviceIn(file) : std::optional<Device>();
      if (device)
        devices.push_back(std::move(*device));
      else
        unread.push_back(
            {{"name", file.path},
             {"reason", file.fault.empty() ? "it is no document of a device" : file.fault}});
    } catch (const std::logic_error&) {
      unread.push_back({{"name", file.path}, {"reason", "it is no document of a device"}});
    }
  const std::map<std::string, std::string> majority = majorityOf(devices);
  Json fleet = {{"devices", Json::array()}, {"unread", unread}};
  for (const Device& device : devices) fleet["devices"].push_back(rowOf(device, majority));
  return fleet;
}

std::string fleetPage(const Json& fleet, const std::vector<std::string>& reports) {
  const Json& devices = fleet.at("devices");
  const auto drifting = std::count_if(devices.begin(), devices.end(), [](const Json& device) {
    return !device.at("drift").empty();
  });
  const bool isKnown = std::none_of(devices.begin(), devices.end(), [](const Json& device) {
    return device.at("health").is_null();
  });
  const std::string unknown =
      isKnown ? ""
              : paragraph(
                    "Exported documents do not say how well their devices are; what 'camcfg "
                    "report --json' prints does.");
  std::string left;
  for (const Json& each : fleet.at("unread"))
    left += paragraph(concat(each.at("name").text(), ": ", each.at("reason").text()));
  std::vector<Part> parts = {{"devices", "Devices", unknown + overview(devices, reports)},
                             {"drift", "What differs from the majority", driftHtml(devices)}};
  if (!left.empty()) parts.push_back({"left", "Not read", left});
  return pageOf(concat("Report of ", devices.size(), " devices"),
                paragraph(concat(drifting, " of ", devices.size(),
                                 " devices differ from what more than half of them have.")) +
                    hiddenHtml(fleet),
                parts);
}

}  // namespace camcfg::tool::report
