#include "document/session.h"

#include <algorithm>

#include "base/refusal.h"
#include "base/spelling.h"
#include "device/explained_file.h"
#include "document/copies.h"
#include "media/media.h"
#include "settings/media.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

using settings::Table;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

const Table& requireKind(const std::string& word) {
  std::vector<std::string> words;
  std::string list;
  for (const Table* table : settings::mediaTables()) {
    if (word == table->word) return *table;
    words.emplace_back(table->word);
    list += (list.empty() ? "" : ", ") + words.back();
  }
  throw Refusal(Status::Usage,
                "there is no kind '" + word + "'; there are " + list + didYouMean(word, words));
}

std::string keyOf(const Table& table, const Json& record) {
  const Json& key = record.at(table.key);
  return key.is_string() ? key.get<std::string>() : key.dump();
}

// Where in a list the records with a key are, in their order, which is that of the entries.
std::vector<std::size_t> indexesOf(const Table& table, const Json& list, const std::string& id) {
  std::vector<std::size_t> indexes;
  for (std::size_t i = 0; i < list.size(); ++i)
    if (keyOf(table, list[i]) == id) indexes.push_back(i);
  return indexes;
}

std::vector<XMLElement*> entriesIn(XMLDocument& document, const Table& section) {
  XMLElement* top = document.FirstChildElement(section.parent);
  XMLElement* element = top == nullptr ? nullptr : top->FirstChildElement(section.section);
  return element == nullptr ? std::vector<XMLElement*>() : media::entriesOf(element, section);
}

// One kind of session in the three copies.
class Sessions {
 public:
  Sessions(const Table& table, const std::string& id) : table_(table), id_(id) {
    const auto main = loadFromMain();
    for (std::size_t i = 0; i < device::kPlaces.size(); ++i) {
      const auto other = i == 0 ? main : loadFromCopies(device::kPlaces[i]);
      copies_[i] = other.at(table.place);
      if (copies_[i].fault.empty()) indexes_[i] = indexesOf(table, copies_[i].value, id);
    }
  }

  bool found() const {
    return std::any_of(indexes_.begin(), indexes_.end(),
                       [](const auto& indexes) { return !indexes.empty(); });
  }

  device::ExplainedCopy copy(std::size_t place) const {
    const std::string path = device::pathOf(device::kPlaces[place], device::nameOf(CFG_FILE_MPP));
    const device::Copy copy = device::loadCopy(path);
    device::ExplainedCopy told{path, copy.state, copies_[place].fault, std::nullopt};
    if (!indexes_[place].empty()) told.line = lineOf(*copy.document, indexes_[place].front());
    return told;
  }

  // The members of the record, each as all copies have it.
  std::vector<device::ExplainedValue> values(bool showSecrets) const {
    std::vector<device::ExplainedValue> values;
    for (std::size_t i = 0; i < device::kPlaces.size(); ++i) {
      if (indexes_[i].empty()) continue;
      const Json& stored = copies_[i].value[indexes_[i].front()];
      const Json record =
          showSecrets ? stored : settings::withMaskedSecrets(stored, table_.settings);
      for (const auto& [name, value] : record.items()) {
        device::ExplainedValue& explained = valueOf(values, name);
        explained.in[i] = value;
        explained.permitted = permittedFor(*table_.find(name));
      }
    }
    return values;
  }

  device::ExplainedLookup lookup() const {
    std::size_t place = 0;
    while (place + 1 < device::kPlaces.size() && !copies_[place].fault.empty()) ++place;
    const std::string path = device::pathOf(device::kPlaces[place], device::nameOf(CFG_FILE_MPP));
    const std::string what = std::string(table_.key) + " " + id_;
    device::ExplainedLookup lookup{
        std::string(table_.word) + " " + id_,
        path,
        std::nullopt,
        "the first entry with the " + what + "; loading hands out every entry",
        {}};
    if (indexes_[place].empty()) lookup.why = "no entry has the " + what;
    const device::Copy copy = device::loadCopy(path);
    for (const std::size_t index : indexes_[place]) {
      const device::ExplainedLookup::Found found{id_, lineOf(*copy.document, index), true};
      if (lookup.answeredBy)
        lookup.shadows.push_back(found);
      else
        lookup.answeredBy = found;
    }
    return lookup;
  }

 private:
  static device::ExplainedValue& valueOf(std::vector<device::ExplainedValue>& values,
                                         const std::string& name) {
    for (device::ExplainedValue& value : values)
      if (value.name == name) return value;
    return values.emplace_back(device::ExplainedValue{name, {}, ""});
  }

  int lineOf(XMLDocument& document, std::size_t index) const {
    const std::vector<XMLElement*> entries = entriesIn(document, table_);
    return index < entries.size() ? entries[index]->GetLineNum() : 0;
  }

  const Table& table_;
  std::string id_;
  std::array<CopiedSection, 3> copies_;
  std::array<std::vector<std::size_t>, 3> indexes_;
};

}  // namespace

device::Explanation explainSession(const std::string& kindWord, const std::string& id,
                                   bool showSecrets) {
  const Table& table = requireKind(kindWord);
  const Sessions sessions(table, id);
  device::Explanation explanation{kindWord + " " + id, {}, sessions.values(showSecrets), {}};
  for (std::size_t i = 0; i < device::kPlaces.size(); ++i) explanation.copies[i] = sessions.copy(i);
  if (!sessions.found())
    throw Refusal("no copy has a " + kindWord + " with the " + table.key + " " + id);
  explanation.lookups.push_back(sessions.lookup());
  return explanation;
}

}  // namespace camcfg::tool::document
