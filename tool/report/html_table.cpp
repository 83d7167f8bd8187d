#include "base/concat.h"
#include "base/html.h"
#include "document/keyed.h"
#include "report/parts.h"

namespace camcfg::tool::report {
namespace {

constexpr std::size_t kLongest = 500;  // characters of a text

// Records within a value without the names of their members: "0 video, 8 audio".
std::string inBrief(const Json& value) {
  if (value.is_null()) return "\xe2\x80\x93";
  if (!value.is_structured()) return document::textOf(value);
  std::string text;
  for (const Json& part : value)
    text += (text.empty() ? "" : value.is_array() ? ", " : " ") + inBrief(part);
  return text;
}

}  // namespace

std::string inCell(const std::string& text) {
  const std::string cut = cutTo(text, kLongest);
  std::string html = htmlText(cut);
  if (cut.size() != text.size())
    write(html, " <small>(", text.size(), " bytes; the rest is left out)</small>");
  return html;
}

std::string shown(const Json& value) {
  if (!value.is_object()) return inBrief(value);
  std::string text;
  for (const auto& [name, member] : value.items())
    write(text, text.empty() ? "" : "; ", name, ": ", inBrief(member));
  return text;
}

std::string paragraph(const std::string& text) {
  return concat("<p>", inCell(text), "</p>\n");
}

std::string scrolled(const std::string& label, const std::string& html) {
  std::string text;
  write(text, "<div class=\"wide\" tabindex=\"0\" role=\"group\" aria-label=\"", htmlText(label),
        "\">", html, "</div>\n");
  return text;
}

std::string foldedUp(const std::string& summary, const std::string& html) {
  return concat("<details><summary>", inCell(summary), "</summary>\n", html, "</details>\n");
}

HtmlTable::HtmlTable(const std::string& caption, const std::vector<std::string>& headings)
    : caption_(caption) {
  write(text_, "<table><caption>", htmlText(caption), "</caption><thead><tr>");
  for (const std::string& heading : headings)
    write(text_, "<th scope=\"col\">", htmlText(heading), "</th>");
  text_ += "</tr></thead><tbody>\n";
}

HtmlTable& HtmlTable::row(const std::vector<std::string>& texts) {
  text_ += "<tr>";
  for (std::size_t i = 0; i < texts.size(); ++i)
    if (i == 0)
      write(text_, "<th scope=\"row\">", inCell(texts[i]), "</th>");
    else
      write(text_, "<td>", inCell(texts[i]), "</td>");
  text_ += "</tr>\n";
  return *this;
}

}  // namespace camcfg::tool::report
