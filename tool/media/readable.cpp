#include "media/readable.h"

#include <camcfg/store.h>

#include <map>

#include "base/concat.h"
#include "base/elements.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/save.h"
#include "device/scratch.h"

namespace camcfg::tool::media {
namespace {

using settings::Setting;
using settings::Table;
using tinyxml2::XMLElement;

constexpr char kBytes[] = "bytes";
constexpr char kUnread[] = "unread";
constexpr char kFault[] = "fault";
constexpr char kWas[] = "was";

using Masks = std::map<std::string, std::string (*)(const std::string&)>;

void collectMasks(const settings::Settings& settings, Masks& masks) {
  for (const Setting& setting : settings) {
    if (setting.inner != nullptr) collectMasks(setting.inner->settings, masks);
    if (setting.masked == nullptr) continue;
    for (const settings::Attribute& attribute : setting.attributes)
      masks[attribute.name] = setting.masked;
  }
}

void mask(XMLElement& element, const Masks& masks) {
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next()) {
    const auto found = masks.find(attribute->Name());
    if (found != masks.end())
      element.SetAttribute(attribute->Name(), found->second(attribute->Value()).c_str());
  }
  for (XMLElement* child : childrenOf(element)) mask(*child, masks);
}

// An entry on one line, as the file has it.
std::string maskedText(const XMLElement& entry, const Table& table) {
  Masks masks;
  collectMasks(table.settings, masks);
  tinyxml2::XMLDocument document;
  XMLElement* copy = entry.DeepClone(&document)->ToElement();
  document.InsertEndChild(copy);
  mask(*copy, masks);
  tinyxml2::XMLPrinter printer(nullptr, true);
  document.Accept(&printer);
  return printer.CStr();
}

XMLElement& madeSection(tinyxml2::XMLDocument& document, const Table& table) {
  XMLElement* top = document.FirstChildElement(table.parent);
  if (top == nullptr) top = document.InsertEndChild(document.NewElement(table.parent))->ToElement();
  XMLElement* section = top->FirstChildElement(table.section);
  return section != nullptr ? *section : *top->InsertNewChildElement(table.section);
}

// Removes the entries that do not load, one after the other. Their lines are those of the device's file.
void strip(tinyxml2::XMLDocument& document, const Table& table, Json& unread) {
  XMLElement& section = madeSection(document, table);
  for (;;) {
    device::saveContents({{CFG_FILE_MPP, written(document)}});
    Json entries;
    forgetComplaint();
    if (heard([&] { return table.calls.load(table, entries); }) == 0) return;
    table.calls.closeRead();
    const std::vector<const XMLElement*> elements = entriesOf(section, table.elements);
    if (entries.size() >= elements.size()) throw Refusal(Status::Unusable, lastComplaint());
    const XMLElement& entry = *elements[entries.size()];
    unread.push_back({{kFault, concat(mediaPlace(entry), ": ", lastComplaint())},
                      {kWas, maskedText(entry, table)}});
    section.DeleteChild(const_cast<XMLElement*>(&entry));
  }
}

Json strippedFile(tinyxml2::XMLDocument& document) {
  Json unread = Json::object();
  for (const Table* table : settings::mediaTables()) {
    unread[table->place] = Json::array();
    if (sectionIn(document, *table) == nullptr)
      unread[table->place].push_back({{kFault, whyMissing(document, *table)}, {kWas, ""}});
  }
  for (const Table* table : settings::mediaTables()) strip(document, *table, unread[table->place]);
  return {{kBytes, written(document)}, {kUnread, unread}};
}

}  // namespace

device::Readable asFarAsReadable(const std::function<Json()>& read, const Table* table) try {
  return {read(), {}};
} catch (const Refusal& refusal) {
  if (refusal.status() != Status::Unusable) throw;
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const Json file = device::onScratchDevice({{CFG_FILE_MPP, written(*document)}},
                                            [&] { return strippedFile(*document); });
  device::Readable readable{device::onScratchDevice({{CFG_FILE_MPP, file.at(kBytes).text()}}, read),
                            {}};
  for (const auto& [place, unread] : file.at(kUnread).items())
    for (const Json& entry : unread)
      if (table == nullptr || place == table->place)
        readable.unread.push_back({entry.at(kFault).text(), entry.at(kWas).text()});
  return readable;
}

bool ensureSection(const Table& table) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  if (sectionIn(*document, table) != nullptr) return true;
  madeSection(*document, table);
  return CFG_SaveFile(document.get(), device::argument(CFG_FILE_MPP), BU_FALSE) == 0;
}

}  // namespace camcfg::tool::media
