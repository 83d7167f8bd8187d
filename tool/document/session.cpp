#include "document/session.h"

#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "document/copies.h"
#include "media/media.h"
#include "settings/media.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

using settings::Table;
using tinyxml2::XMLElement;

const Table& requireKind(const std::string& word) {
  std::vector<std::string> words;
  for (const Table* table : settings::mediaTables()) {
    if (word == table->word) return *table;
    words.emplace_back(table->word);
  }
  throw Refusal(Status::Usage, "there is no kind '" + word + "'; there are " + joined(words) +
                                   didYouMean(word, words));
}

// A section in one copy of the media file, and where in its list the sessions of the id are, in the
// order of their entries.
struct MediaCopy {
  std::string path;
  device::Copy file;
  CopiedSection section;
  std::vector<std::size_t> found;
};

MediaCopy loadFrom(device::Place place, const Table& table, const std::string& id) {
  MediaCopy copy{device::pathOf(place, device::nameOf(CFG_FILE_MPP)), {}, {}, {}};
  copy.file = device::loadCopy(copy.path);
  const auto sections = place == device::Place::Main ? loadFromMain() : loadFromCopies(place);
  copy.section = sections.at(table.place);
  for (std::size_t i = 0; copy.section.fault.empty() && i < copy.section.value.size(); ++i) {
    const Json& key = copy.section.value[i].at(table.key);
    if ((key.is_string() ? key.text() : key.dump()) == id) copy.found.push_back(i);
  }
  return copy;
}

int lineOf(const MediaCopy& copy, const Table& table, std::size_t index) {
  XMLElement* top = copy.file.document->FirstChildElement(table.parent);
  XMLElement* element = top == nullptr ? nullptr : top->FirstChildElement(table.section);
  if (element == nullptr) return 0;
  const std::vector<XMLElement*> entries = media::entriesOf(element, table);
  return index < entries.size() ? entries[index]->GetLineNum() : 0;
}

// The members of a record, each among what the other copies have of it.
void addValues(std::vector<device::ExplainedValue>& values, std::size_t place, const Json& record,
               const Table& table) {
  for (const auto& [name, member] : record.items()) {
    device::ExplainedValue* value = nullptr;
    for (device::ExplainedValue& known : values)
      if (known.name == name) value = &known;
    if (value == nullptr)
      value =
          &values.emplace_back(device::ExplainedValue{name, {}, permittedFor(*table.find(name))});
    value->in[place] = member;
  }
}

device::ExplainedLookup lookupIn(const MediaCopy& copy, const Table& table, const std::string& id) {
  const std::string what = std::string(table.key) + " " + id;
  device::ExplainedLookup lookup{
      std::string(table.word) + " " + id, copy.path, std::nullopt, "no entry has the " + what, {}};
  for (const std::size_t index : copy.found) lookup.add({id, lineOf(copy, table, index), true});
  if (lookup.answeredBy)
    lookup.why = "the first entry with the " + what + "; loading hands out every entry";
  return lookup;
}

}  // namespace

device::Explanation explainSession(const std::string& kindWord, const std::string& id,
                                   bool showSecrets) {
  const Table& table = requireKind(kindWord);
  device::Explanation explanation{kindWord + " " + id, {}, {}, {}};
  for (std::size_t i = 0; i < device::kPlaces.size(); ++i) {
    const MediaCopy copy = loadFrom(device::kPlaces[i], table, id);
    explanation.copies[i] = {copy.path, copy.file.state, copy.section.fault, std::nullopt};
    if (explanation.lookups.empty() && copy.section.fault.empty())
      explanation.lookups.push_back(lookupIn(copy, table, id));
    if (copy.found.empty()) continue;
    explanation.copies[i].line = lineOf(copy, table, copy.found.front());
    const Json& record = copy.section.value[copy.found.front()];
    addValues(explanation.values, i,
              showSecrets ? record : settings::withMaskedSecrets(record, table.settings), table);
  }
  if (explanation.values.empty())
    throw Refusal("no copy has a " + kindWord + " with the " + table.key + " " + id);
  return explanation;
}

}  // namespace camcfg::tool::document
