#include "report/comparison.h"

#include "base/concat.h"
#include "base/json_bytes.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/scratch.h"
#include "document/document.h"
#include "document/keyed.h"
#include "report/page.h"

namespace camcfg::tool::report {
namespace {

using document::CopiedSection;
using document::CopiedSections;

// The parts of a value that another one has, too: a document need not have all.
Json partOf(const Json& value, const Json& other) {
  if (!value.is_object() || !other.is_object()) return value;
  Json part = Json::object();
  for (const auto& [name, member] : value.items())
    if (other.contains(name)) part[name] = partOf(member, other.at(name));
  return part;
}

CopiedSections sectionsIn(const Json& document) {
  CopiedSections sections;
  for (const device::Section& section : document::allSections()) {
    const Json* value = document.find_path(document::pathTo(section));
    if (value != nullptr)
      sections[section.name] = {withTexts(*value, section.name, [](const auto&, const auto&) {}),
                                ""};
  }
  return sections;
}

Json documentIn(const HostFile& file) {
  const JsonText read = readJson(file.contents);
  if (read.fault != 0 || !read.value.is_object() || !read.value.contains(document::kVersionMember))
    throw Refusal::about(file.path, file.path + ": it is no document as 'export' prints it");
  return read.value;
}

std::vector<device::Contents> treeOf(const std::string& name, const std::vector<HostFile>& files) {
  std::vector<device::Contents> contents;
  for (const HostFile& file : files)
    if (file.fault.empty()) contents.push_back({"/" + file.path, file.contents});
  if (contents.empty()) throw Refusal(Status::Unusable, name + ": it has no file of a device");
  return contents;
}

std::string hostOf(const CopiedSections& sections, const std::string& otherwise) {
  const auto network = sections.find(document::kNetwork);
  if (network == sections.end()) return otherwise;
  const Json& name = document::memberOrNothing(network->second.value, "hostname");
  return name.is_string() && !name.text().empty() ? name.text() : otherwise;
}

}  // namespace

Json comparisonWith(const std::string& name, const std::vector<HostFile>& files) {
  const bool isDocument = files.size() == 1 && files.front().path == name;
  const CopiedSections others =
      isDocument ? sectionsIn(documentIn(files.front())) : document::loadFrom(treeOf(name, files));
  const CopiedSections own = document::loadFrom(device::Place::Main);
  Json comparison = {{"device", hostOf(own, kThisDevice)},
                     {"other", hostOf(others, name)},
                     {"differences", Json::array()},
                     {"notCompared", Json::array()}};
  if (comparison["device"] == comparison["other"]) {
    comparison["device"] = kThisDevice;
    comparison["other"] = name;
  }
  const auto leaveOut = [&](const std::string& place, const std::string& reason) {
    comparison["notCompared"].push_back({{"place", place}, {"reason", reason}});
  };
  std::vector<document::Transition> transitions;
  for (const device::Section& section : document::allSections()) {
    const CopiedSection& here = own.at(section.name);
    const auto there = others.find(section.name);
    if (there == others.end())
      leaveOut(section.name, "the other one does not have it");
    else if (!here.fault.empty() || !there->second.fault.empty())
      leaveOut(section.name, here.fault.empty() ? there->second.fault : here.fault);
    else
      transitions.push_back({&section,
                             isDocument ? partOf(here.value, there->second.value) : here.value,
                             there->second.value});
  }
  for (const Json& difference : document::differencesOf(transitions, false))
    comparison["differences"].push_back({{"place", difference.at("place")},
                                         {"device", difference.at("before")},
                                         {"other", difference.at("after")}});
  return comparison;
}

std::string comparisonPage(const Json& comparison) {
  const std::string& device = comparison.at("device").text();
  const std::string& other = comparison.at("other").text();
  const Json& differences = comparison.at("differences");
  std::string html;
  if (differences.empty()) {
    html = paragraph("No setting differs.");
  } else {
    HtmlTable table("Settings that differ", {"Setting", device, other});
    for (const Json& each : differences)
      table.row({each.at("place").text(), shown(each.at("device")), shown(each.at("other"))});
    html = table.html();
  }
  std::string left;
  for (const Json& each : comparison.at("notCompared"))
    left += paragraph(concat(each.at("place").text(), ": ", each.at("reason").text()));
  std::vector<Part> parts = {{"differences", "Differences", html}};
  if (!left.empty()) parts.push_back({"left", "Not compared", left});
  const std::string count = std::to_string(differences.size());
  return pageOf(
      concat("Comparison of ", device, " and ", other),
      paragraph(differences.size() == 1 ? "1 setting differs." : count + " settings differ.") +
          hiddenHtml(comparison),
      parts);
}

}  // namespace camcfg::tool::report
