#include "base/concat.h"
#include "base/html.h"
#include "document/keyed.h"
#include "report/facts.h"
#include "report/parts.h"

namespace camcfg::tool::report {
namespace {

std::string orNothing(const Json& text) {
  return text.is_null() ? "" : document::textOf(text);
}

std::string rowsTable(const std::string& caption, const Json& rows) {
  HtmlTable table(caption, {"Setting", "Value", "Factory value", "Permitted", "Unit", "Meaning"});
  for (const Json& row : rows)
    table.row({row.at("name").text(), shown(row.at("value")), shown(row.at("factory")),
               orNothing(row.at("permitted")), orNothing(row.at("unit")),
               orNothing(row.at("help"))});
  return table.html();
}

std::string membersTable(const std::string& caption, const Json& members) {
  HtmlTable table(caption, {"Setting", "Permitted", "Unit", "Meaning"});
  for (const Json& member : members)
    table.row({member.at("name").text(), orNothing(member.at("permitted")),
               orNothing(member.at("unit")), orNothing(member.at("help"))});
  return table.html();
}

std::string entriesTable(const std::string& caption, const Json& members, const Json& entries) {
  std::vector<std::string> headings;
  headings.reserve(members.size());
  for (const Json& member : members) headings.push_back(member.at("name").text());
  HtmlTable table(caption, headings);
  for (const Json& entry : entries) {
    std::vector<std::string> texts;
    texts.reserve(headings.size());
    for (const std::string& name : headings)
      texts.push_back(shown(document::memberOrNothing(entry, name)));
    table.row(texts);
  }
  return table.html();
}

std::string listHtml(const std::string& name, const Json& section) {
  const Json& factory = section.at("factory");
  std::string html =
      entriesTable("Entries of " + name, section.at("members"), section.at("entries"));
  if (factory == section.at("entries"))
    html += paragraph("All of them have their factory values.");
  else if (factory.is_null())
    html += paragraph("The factory set has none, or cannot be read.");
  else
    html += foldedUp("Factory values of " + name,
                     entriesTable("Factory values of " + name, section.at("members"), factory));
  return html + membersTable(concat("What the settings of ", name, " mean"), section.at("members"));
}

std::string sectionHtml(const std::string& name, const Json& section) {
  if (isFault(section)) return paragraph("It cannot be read: " + section.at(kFault).text());
  std::string html;
  if (section.contains("unread"))
    for (const Json& unread : section.at("unread"))
      html += paragraph("It cannot be read as a whole: " + unread.text());
  if (section.contains("entries")) return html + listHtml(name, section);
  html += rowsTable("Settings of " + name, section.at("rows"));
  if (section.contains("cards"))
    for (const Json& card : section.at("cards"))
      html += rowsTable("Settings of the card " + card.at("name").text(), card.at("card"));
  return html;
}

}  // namespace

std::string settingsHtml(const Json& sections) {
  std::string html;
  for (const Json& section : sections) {
    const std::string& name = section.at("name").text();
    html += foldedUp(name, sectionHtml(name, section));
  }
  return html;
}

}  // namespace camcfg::tool::report
