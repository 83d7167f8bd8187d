#ifndef CAMCFG_TOOL_REPORT_PARTS_H
#define CAMCFG_TOOL_REPORT_PARTS_H

#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::report {

/// A section of a page.
struct Part {
  const char* id;
  std::string title;
  std::string html;
};

/// The verdict in one sentence, with a traffic light that has words.
std::string verdictOf(const Json& facts);

/// The parts of a report, in the order in which they are read.
std::vector<Part> partsOf(const Json& facts);

// What parts are made of. Texts are made harmless here, and long ones cut.

/// A paragraph.
std::string paragraph(const std::string& text);

/// What is hidden on a page, if it is anonymous.
std::string hiddenHtml(const Json& facts);

/// Why a fact cannot be shown.
std::string faultHtml(const Json& fact);

/// Something long that is opened by its reader.
std::string foldedUp(const std::string& summary, const std::string& html);

/// Something wide that is scrolled by itself.
std::string scrolled(const std::string& label, const std::string& html);

/// A table with headings, of rows that have one of their own.
class HtmlTable {
 public:
  HtmlTable(const std::string& caption, const std::vector<std::string>& headings);

  HtmlTable& row(const std::vector<std::string>& texts);
  std::string html() const { return scrolled(caption_, text_ + "</tbody></table>"); }

 private:
  std::string caption_;
  std::string text_;
};

/// A text in place of a fact: as it is, what is in it for lists and records, a dash for null.
std::string shown(const Json& value);

/// A text that stays harmless and does not break the layout.
std::string inCell(const std::string& text);

// Pictures, with text alternatives.

/// The subnets of cards, a band each.
std::string subnetsPicture(const Json& cards);
/// Camera positions on a field of pan and tilt; the size is the zoom.
std::string positionsPicture(const Json& presets);

extern const char* const kPictureStyle;

// How the device is reached.

/// The sessions with their addresses, and which cards have others.
std::string servicesHtml(const Json& facts);
/// The host name, the cards and their subnets.
std::string networkHtml(const Json& network);

/// The settings of all sections.
std::string settingsHtml(const Json& sections);

}  // namespace camcfg::tool::report

#endif
