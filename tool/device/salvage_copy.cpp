#include "device/salvage_copy.h"

#include <algorithm>

#include "base/plain_text.h"
#include "device/salvage.h"
#include "settings/node.h"

namespace camcfg::tool::device {

Document parsedElement(std::string_view text) {
  Document document = parsed(text);
  const bool isAlone = isWhole(*document) && document->FirstChild() == document->LastChild();
  return isAlone ? std::move(document) : nullptr;
}

Document parsedTag(const FoundElement& element) {
  std::string text(element.tag);
  if (text.empty()) return nullptr;
  if (text[text.size() - 2] != '/') text.insert(text.size() - 1, "/");
  return parsedElement(text);
}

bool SalvageCopy::isIn(const FoundElement& element,
                       const std::vector<std::string_view>& outer) const {
  int parent = element.parent;
  for (const std::string_view name : outer) {
    if (parent < 0) return parent == FoundElement::Unknown;
    const FoundElement& found = elements[static_cast<std::size_t>(parent)];
    if (found.name != name) return false;
    parent = found.parent;
  }
  return parent < 0;
}

void SalvageReport::add(const std::string& place, const char* source, Json value, Json backup) {
  settings.push_back(
      {{"place", place},
       {"source", source},
       {"value", std::move(value)},
       {"backup", source == std::string_view(kDisputed) ? std::move(backup) : Json()}});
}

void SalvageReport::refuse(const SalvageCopy& copy, const FoundElement& element,
                           const std::string& place, const std::string& reason) {
  if (notTaken.size() == kMostNotTaken) return;
  notTaken.push_back({{"copy", copy.place == Place::Default ? kFromFactory : wordFor(copy.place)},
                      {"line", element.line},
                      {"place", place},
                      {"reason", reason}});
}

std::string whyNotStorable(const std::string& text, std::size_t most) {
  settings::Faults faults;
  const Json value = text;
  settings::Node(value, "", faults).text(most);
  if (!faults.empty()) return faults.front().reason;
  return asUtf8(text) == text ? "" : "it is not UTF-8";
}

std::size_t SalvagedFile::from(const char* source) const {
  return static_cast<std::size_t>(
      std::count_if(settings.begin(), settings.end(),
                    [&](const Json& setting) { return setting.at("source").text() == source; }));
}

std::optional<SalvagedFile> salvaged(const std::optional<std::string>& main,
                                     const std::optional<std::string>& backup,
                                     const std::string& factory) {
  const Document document = parsed(factory);
  if (!isWhole(*document)) return std::nullopt;
  const std::string none;
  const SalvageCopies copies = {{Place::Main, main ? *main : none},
                                {Place::Backup, backup ? *backup : none},
                                {Place::Default, factory}};
  SalvageReport report;
  if (!salvageEntries(*document, copies, report)) salvageParameters(*document, copies, report);
  return SalvagedFile{written(*document), std::move(report.settings), std::move(report.notTaken)};
}

}  // namespace camcfg::tool::device
