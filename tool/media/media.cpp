#include "media/media.h"

#include <strings.h>

#include <algorithm>
#include <functional>

#include "base/library_console.h"
#include "base/library_log.h"
#include "base/refusal.h"
#include "settings/secrets.h"

namespace camcfg::tool::media {
namespace {

using settings::Table;
using tinyxml2::XMLElement;

// The loader has kept what came before the faulty entry.
std::string placeOfEntry(XMLElement* section, const Table& table, std::size_t index) {
  const std::vector<XMLElement*> entries = entriesOf(section, table);
  return mediaPlace(index < entries.size() ? entries[index] : section);
}

// @param load    loads the section; returns the library's result
// @param loaded  how many entries were loaded
void requireLoaded(const Table& table, const std::function<int()>& load,
                   const std::function<std::size_t()>& loaded) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  XMLElement* section = requireSection(*document, table);
  forgetComplaint();
  if (heard(load) == 0) return;
  table.calls.closeRead();
  const std::string complaint = lastComplaint();
  throw Refusal(Status::Unusable, placeOfEntry(section, table, loaded()) + ": " +
                                      (complaint.empty() ? "out of memory" : complaint));
}

template <typename Record>
std::list<Record> loaded(const Table& table, int (*load)(std::list<Record>&)) {
  std::list<Record> records;
  requireLoaded(
      table, [&] { return load(records); }, [&] { return records.size(); });
  return records;
}

}  // namespace

XMLElement* requireSection(tinyxml2::XMLDocument& document, const Table& table) {
  XMLElement* top = document.FirstChildElement(table.parent);
  XMLElement* section = top == nullptr ? nullptr : top->FirstChildElement(table.section);
  if (section != nullptr) return section;
  const std::string path = std::string("<") + table.parent + ">";
  throw Refusal(Status::Unusable,
                std::string(CFG_FILE_MPP) + " has no " + path +
                    (top == nullptr ? "" : "<" + std::string(table.section) + ">"));
}

std::vector<XMLElement*> entriesOf(XMLElement* section, const Table& table) {
  std::vector<XMLElement*> entries;
  for (XMLElement* child = section->FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    if (std::any_of(table.elements.begin(), table.elements.end(),
                    [&](const char* name) { return strcasecmp(child->Name(), name) == 0; }))
      entries.push_back(child);
  return entries;
}

std::string mediaPlace(const tinyxml2::XMLNode* node) {
  return std::string(CFG_FILE_MPP) + ":" + std::to_string(node->GetLineNum());
}

Json loadEntries(const Table& table) {
  Json entries;
  requireLoaded(
      table, [&] { return table.calls.load(table, entries); }, [&] { return entries.size(); });
  return entries;
}

std::list<StreamSource> loadStreamSources() {
  return loaded(settings::streamSources(), CFG_MPP_LoadStreamSourceConfig);
}

std::list<StreamCache> loadStreamCaches() {
  return loaded(settings::streamCaches(), CFG_MPP_LoadStreamCacheConfig);
}

Json shownEntries(const Table& table, bool showSecrets) {
  const Json entries = loadEntries(table);
  return showSecrets ? entries : settings::withMaskedSecrets(entries, table.settings);
}

}  // namespace camcfg::tool::media
