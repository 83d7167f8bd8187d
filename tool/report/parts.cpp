#include "report/parts.h"

#include <algorithm>

#include "base/concat.h"
#include "base/html.h"
#include "document/keyed.h"
#include "media/wiring.h"
#include "report/anonymous.h"
#include "report/facts.h"

namespace camcfg::tool::report {
namespace {

// Findings that need not be opened by their reader.
constexpr std::size_t kFindings = 20;
// Settings that are listed of each change of the past.
constexpr std::size_t kChanges = 200;

std::size_t countOf(const Json& findings, const char* severity) {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [&](const Json& finding) { return finding.at("severity") == severity; }));
}

std::string counted(std::size_t count, const char* thing) {
  return concat(count, " ", thing, count == 1 ? "" : "s");
}

std::string textOf(const Json& value) {
  return value.is_null() ? "" : document::textOf(value);
}

// Those from one on, up to another.
std::string listOf(const Json& findings, std::size_t first, std::size_t end) {
  std::string html;
  write(html, "<ol class=\"findings\" start=\"", first + 1, "\">\n");
  for (std::size_t i = first; i < end; ++i) {
    const Json& finding = findings[i];
    const std::string& severity = finding.at("severity").text();
    write(html, "<li><p><strong class=\"", severity, "\">", severity, "</strong> ",
          inCell(finding.at("text").text()), "</p>\n<dl>");
    const auto add = [&](const char* term, const std::string& text, bool isCode) {
      if (text.empty()) return;
      write(html, "<dt>", term, "</dt><dd>", isCode ? "<code>" : "", inCell(text),
            isCode ? "</code>" : "", "</dd>");
    };
    add("Setting", textOf(finding.at("place")), true);
    add("Why it matters", textOf(finding.at("why")), false);
    add("What to do", textOf(finding.at("fix")), false);
    add("Command", textOf(finding.at("command")), true);
    if (!finding.at("rule").is_null())
      add("Found at",
          concat(finding.at("file").text(), ":", finding.at("line").dump(), ", by the rule ",
                 finding.at("rule").text()),
          false);
    html += "</dl></li>\n";
  }
  return html + "</ol>\n";
}

std::string findingsHtml(const Json& findings) {
  if (findings.empty()) return paragraph("Nothing was found.");
  const std::size_t shownFirst = std::min(findings.size(), kFindings);
  std::string html = listOf(findings, 0, shownFirst);
  if (shownFirst < findings.size())
    html += foldedUp(std::to_string(findings.size() - shownFirst) + " more",
                     listOf(findings, shownFirst, findings.size()));
  return html;
}

std::string wiringHtml(const Json& wiring) {
  if (isFault(wiring)) return faultHtml(wiring);
  std::string html;
  for (const Json& unread : wiring.at("unread"))
    html += paragraph("Left out, as it cannot be read: " + unread.text());
  html += scrolled("Sources, caches and services",
                   media::drawingOf(wiring, wiring.at("remarks"), false));
  HtmlTable table("What each session sends", {"Session", "Service", "Enabled", "Caches"});
  for (const Json& session : wiring.at("sessions")) {
    std::string caches;
    for (const Json& channel : session.at("channels"))
      caches += concat(caches.empty() ? "" : ", ", channel.at("role").text(),
                       channel.at("role").text().empty() ? "" : " ", channel.at("cache").dump());
    table.row({session.at("name").text(), session.at("service").text(),
               session.at("enabled") == true ? "yes" : "no", caches});
  }
  return html + foldedUp("The same as a table", table.html());
}

std::string presetsHtml(const Json& presets) {
  if (isFault(presets)) return faultHtml(presets);
  const Json& entries = presets.at("entries");
  if (entries.empty()) return paragraph("There are no camera positions.");
  HtmlTable table("Camera positions", {"Id", "Description", "Pan", "Tilt", "Zoom"});
  for (const Json& preset : entries)
    table.row({preset.at("id").dump(), shown(preset.at("description")), shown(preset.at("pan")),
               shown(preset.at("tilt")), shown(preset.at("zoom"))});
  return scrolled("Camera positions by pan and tilt", positionsPicture(entries)) +
         foldedUp("The same as a table", table.html());
}

struct Side {
  const char* member;
  const char* heading;
};

// The first ones, up to a number.
std::string changesTable(const std::string& caption, const Json& changes, const Side& before,
                         const Side& after, std::size_t most) {
  HtmlTable table(caption, {"Setting", before.heading, after.heading});
  for (std::size_t i = 0; i < std::min(changes.size(), most); ++i)
    table.row({changes[i].at("place").text(), shown(changes[i].at(before.member)),
               shown(changes[i].at(after.member))});
  return table.html();
}

std::string changedHtml(const Json& changed) {
  if (isFault(changed)) return faultHtml(changed);
  std::string html;
  for (const Json& left : changed.at("notCompared"))
    html += paragraph(
        concat("Not compared: ", left.at("place").text(), ": ", left.at("reason").text()));
  const Json& differences = changed.at("differences");
  if (differences.empty()) return html + paragraph("Nothing differs from the factory values.");
  return html + changesTable("Differences from the factory values", differences,
                             {"other", "Factory value"}, {"device", "Value"}, differences.size());
}

std::string historyHtml(const Json& history) {
  if (isFault(history)) return faultHtml(history);
  if (history.empty()) return paragraph("No change is kept.");
  std::string html;
  for (const Json& change : history) {
    const std::string number = change.at("number").dump();
    const std::string title = concat("Change ", number, ", ", change.at("time").text(), ", by ",
                                     change.at("caller").text(), ": ", change.at("command").text());
    write(html, "<h3>", inCell(title), "</h3>\n");
    const Json& changes = change.at("changes");
    if (isFault(changes))
      html += faultHtml(changes);
    else if (changes.empty())
      html += paragraph("No setting was changed.");
    else
      html += changesTable(concat("What change ", number, " changed"), changes,
                           {"before", "Before"}, {"after", "After"}, kChanges);
    if (!isFault(changes) && changes.size() > kChanges)
      html += paragraph(
          concat(changes.size() - kChanges, " more: 'camcfg history ", number, "' shows all"));
  }
  return html;
}

std::string copiesHtml(const Json& health) {
  HtmlTable table("Copies of every file",
                  {"Path", "Copy", "State", "Bytes", "Changed", "At the next start", "SHA-256"});
  for (const Json& copy : health.at("copies"))
    table.row({copy.at("path").text(), copy.at("copy").text(), copy.at("state").text(),
               shown(copy.at("bytes")), shown(copy.at("changed")), shown(copy.at("atStart")),
               shown(copy.at("checksum"))});
  return table.html();
}

std::string madeHtml(const Json& made) {
  HtmlTable table("How this report was made", {"What", "Value"});
  table.row({"By", made.at("by").text()});
  table.row({"At, by the device's clock", made.at("at").text()});
  table.row({"With", "camcfg " + made.at("command").text()});
  if (made.at("anonymous") == true) table.row({"Hidden", kWhatIsHidden});
  return table.html() + paragraph(
                            "Everything here was read from the device's files, and nothing was "
                            "changed. Passwords and keys "
                            "are shown as ********.");
}

}  // namespace

std::string faultHtml(const Json& fact) {
  return paragraph("This cannot be read: " + fact.at(kFault).text());
}

std::string verdictOf(const Json& facts) {
  const Json& findings = facts.at("findings");
  const std::size_t unusable = countOf(findings, "unusable");
  const std::size_t errors = countOf(findings, "error");
  const std::size_t degraded = countOf(findings, "degraded");
  const std::size_t warnings = countOf(findings, "warning");
  const char* look = "good";
  std::string light = "Green";
  std::string sentence =
      "The device is well: all its files can be read, and nothing was found in them.";
  if (unusable != 0) {
    look = "unusable";
    light = "Red";
    sentence = concat("The device is not usable as it is: ", counted(unusable, "file"),
                      " cannot be read, and no start changes that.");
  } else if (errors + degraded + warnings != 0) {
    look = "degraded";
    light = "Amber";
    sentence =
        concat("The device works, but needs attention: ", counted(errors + degraded, "fault"),
               " and ", counted(warnings, "warning"), " were found.");
  }
  std::string html;
  write(html, "<p class=\"light ", look,
        "\"><span class=\"lamp\" aria-hidden=\"true\"></span><span><strong>", light, ":</strong> ",
        sentence, "</span></p>\n");
  return html;
}

std::string hiddenHtml(const Json& facts) {
  return facts.contains("anonymous") ? paragraph(std::string("Hidden: ") + kWhatIsHidden) : "";
}

std::vector<Part> partsOf(const Json& facts) {
  return {{"findings", "Findings", findingsHtml(facts.at("findings"))},
          {"wiring", "Wiring", wiringHtml(facts.at("wiring"))},
          {"services", "Services and their addresses", servicesHtml(facts)},
          {"network", "Network", networkHtml(facts.at("network"))},
          {"positions", "Camera positions", presetsHtml(facts.at("presets"))},
          {"changed", "What differs from the factory values", changedHtml(facts.at("changed"))},
          {"history", "Recent changes", historyHtml(facts.at("history"))},
          {"settings", "All settings", settingsHtml(facts.at("sections"))},
          {"copies", "Files and their copies", copiesHtml(facts.at("health"))},
          {"made", "How this report was made", madeHtml(facts.at("made"))}};
}

}  // namespace camcfg::tool::report
