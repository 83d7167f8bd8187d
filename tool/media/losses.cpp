#include <algorithm>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "media/stream_cache.h"

namespace camcfg::tool::media {
namespace {

using settings::AttributeForm;
using settings::ElementForm;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

using Losses = std::vector<std::string>;

std::string atLine(const XMLNode& node) {
  return " at line " + std::to_string(node.GetLineNum());
}

std::string describe(const XMLNode& node) {
  if (node.ToElement() != nullptr) return concat("<", node.Value(), ">");
  if (node.ToComment() != nullptr) return "the comment";
  return node.ToText() != nullptr ? "the text" : "the node";
}

void addAttributes(const XMLElement& element, const ElementForm& form, Losses& losses) {
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next()) {
    const std::string name = attribute->Name();
    if (std::none_of(
            form.attributes.begin(), form.attributes.end(),
            [&](const AttributeForm& known) { return known.isSaved && name == known.name; }))
      losses.push_back(concat("\"", name, "\" of <", form.name, ">", atLine(element)));
  }
}

// Elements that no loader knows, comments and texts; and attributes that are not written.
void addChildren(const XMLElement& parent, const std::vector<ElementForm>& forms, Losses& losses) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    const XMLElement* element = node->ToElement();
    const ElementForm* form = element == nullptr ? nullptr : formOf(*element, forms);
    if (form == nullptr) {
      losses.push_back(describe(*node) + atLine(*node));
      continue;
    }
    addAttributes(*element, *form, losses);
    addChildren(*element, form->children, losses);
  }
}

// Channels that loading ignores: of another Type, or the second of one.
void addIgnoredChannels(const XMLElement& entry, std::vector<const char*> types, Losses& losses) {
  if (types.empty()) return;
  for (const XMLElement* channel : entriesOf(entry, {"Channel"})) {
    const char* type = channel->Attribute("Type");
    if (type == nullptr) continue;
    const auto expected = std::find_if(types.begin(), types.end(),
                                       [&](const char* known) { return isSameWord(known, type); });
    if (expected == types.end())
      losses.push_back(concat("the channel of Type \"", type, "\"", atLine(*channel)));
    else
      types.erase(expected);
  }
}

// A listener's host is not loaded.
void addUnreadHost(const XMLElement& instance, Losses& losses) {
  if (isSameWord(textOf(instance, "Mode"), "Listener") && instance.Attribute("Hostname") != nullptr)
    losses.push_back("\"Hostname\" of the listener" + atLine(instance));
}

std::string ofCache(const CacheEntry& cache) {
  return " of stream cache " + std::to_string(cache.id());
}

// Of several sizes the one that the loader chose is written.
void addSizes(const CacheEntry& cache, const XMLElement& element, Losses& losses) {
  for (const settings::SizeUnit& unit : settings::kCacheSizeUnits)
    if (unit.bytes != cache.record->s32BufUnit && element.Attribute(unit.attribute) != nullptr)
      losses.push_back(concat("\"", unit.attribute, "\"", ofCache(cache)));
}

// Each source gets one entry, and one source the mark.
void addEntries(const CacheEntry& cache, Losses& losses) {
  if (cache.allowedIds().size() < cache.allowed.size())
    losses.push_back("the second entry for a source" + ofCache(cache));
  const std::optional<int> kept = cache.marked(&AllowedSource::isDefault);
  for (const AllowedSource& source : cache.allowed)
    if (source.isDefault && source.id != *kept)
      losses.push_back(concat("the second \"Default\"", ofCache(cache), ", at source ", source.id));
}

}  // namespace

std::vector<std::string> lossNotes(const settings::Table& table) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const XMLElement& section = requireSection(*document, table);
  Losses losses;
  addChildren(section, formsOf(table), losses);
  for (const XMLElement* entry : entriesOf(section, table.elements)) {
    addIgnoredChannels(*entry, channelTypesOf(table), losses);
    addUnreadHost(*entry, losses);
  }
  if (losses.empty()) return {};
  return {concat("note: ", table.place, " is rewritten without ", joined(losses))};
}

std::vector<std::string> cacheLossNotes(const std::vector<CacheEntry>& caches,
                                        std::optional<int> changed) {
  const settings::Table& table = settings::streamCaches();
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const XMLElement& section = requireSection(*document, table);
  const std::vector<const XMLElement*> elements = entriesOf(section, table.elements);
  Losses losses;
  addChildren(section, formsOf(table), losses);
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < caches.size() && i < elements.size(); ++i) {
    const CacheEntry& cache = caches[i];
    addSizes(cache, *elements[i], losses);
    addEntries(cache, losses);
    if (!cache.marked(&AllowedSource::isDefault) && cache.id() != changed)
      notes.push_back(concat("note: source ", cache.record->s32EnabledSrc, ofCache(cache),
                             ", which the loader takes, gets the mark \"Default\""));
  }
  if (!losses.empty())
    notes.insert(notes.begin(), "note: all caches are rewritten without " + joined(losses));
  return notes;
}

void requireDumpable(const std::vector<CacheEntry>& caches) {
  for (const CacheEntry& cache : caches)
    for (const AllowedSource& source : cache.allowed)
      if (!settings::kSourceIds.has(source.id))
        throw Refusal(concat("the library saves all caches, and would lose source ", source.id,
                             ofCache(cache), ", which is outside ", settings::kSourceIds.text()));
}

}  // namespace camcfg::tool::media
