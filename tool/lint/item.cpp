#include "lint/item.h"

#include <map>

#include "base/concat.h"
#include "base/plain_text.h"
#include "lint/rules.h"
#include "settings/media.h"
#include "settings/value.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;

namespace {

// Finds entries whose key, read from an attribute, an earlier one has.
template <typename Key, typename Shown>
void checkEqual(const Rule& rule, const Elements& entries, const char* attribute,
                std::optional<Key> (*keyOf)(const XMLElement&, const char*), Shown shown,
                const std::string& owner, Findings& findings) {
  std::map<Key, const XMLElement*> firsts;
  for (const XMLElement* entry : entries) {
    const std::optional<Key> key = keyOf(*entry, attribute);
    if (!key) continue;
    const auto [first, isNew] = firsts.emplace(*key, entry);
    if (!isNew)
      Item{*entry, owner, findings}.addAt(
          rule, attribute, " has the " + shown(*key) + " of the one" + atLine(*first->second));
  }
}

std::optional<std::string_view> textIn(const XMLElement& element, const char* attribute) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? std::nullopt : std::optional<std::string_view>(text);
}

std::string carriedFrom(const XMLElement* before) {
  const auto id = before == nullptr ? std::nullopt : settings::integerIn(*before, "Id");
  if (!id) return "and there is none before it to take one from";
  return concat("and is taken for ", *id, ", as the one", atLine(*before));
}

}  // namespace

void Item::addAt(const Rule& rule, const char* attribute, const std::string& text) const {
  const XMLAttribute* found = element.FindAttribute(attribute);
  findings.add(rule, found == nullptr ? element.GetLineNum() : found->GetLineNum(), name + text);
}

void Item::addOf(const Rule& rule, const char* attribute, const std::string& text) const {
  addAt(rule, attribute, concat(": \"", attribute, "\"", text));
}

std::optional<int> Item::checkInteger(const char* attribute) const {
  if (!has(attribute)) return std::nullopt;
  const std::string written = text(attribute);
  const std::string what = " " + quoted(written);
  const std::optional<int> read = settings::integerIn(element, attribute);
  if (!read)
    addOf(kNotAnInteger, attribute, what + " is not an integer");
  else if (!decimal(written))
    addOf(kOddInteger, attribute, concat(what, " is read as ", *read));
  else if (!decimal32(written))
    addOf(kIntegerTooLarge, attribute,
          what + " does not fit into 32 bits and is read as another number");
  return read;
}

void Item::checkName(const char* attribute) const {
  if (!has(attribute)) return;
  const std::string written = text(attribute);
  if (isBlank(written))
    addOf(kNameEmpty, attribute, " is empty");
  else if (isBlank(written.substr(0, 1)) || isBlank(written.substr(written.size() - 1)))
    addOf(kNameSpace, attribute, concat(" ", quoted(written), " begins or ends with a space"));
}

void Item::require(const Needed& need) const {
  if (!has(need.attribute))
    add(kMissingAttribute, concat(" has no \"", need.attribute, "\", which ", need.reader));
}

void Item::requireFits(const char* attribute, std::size_t room) const {
  const std::size_t length = text(attribute).size();
  if (length > room)
    addOf(kValueTooLong, attribute,
          concat(" has ", length, " bytes, and its readers have room for ", room));
}

void Item::requireWithin(const settings::Range& limits, const char* attribute, int number) const {
  if (limits.has(number)) return;
  const std::string what = concat(" ", number, " is ");
  if (limits == settings::kPorts)
    addOf(kPortRange, attribute, concat(what, "not a port (", limits.text(), ")"));
  else
    addOf(limits == settings::kSourceIds ? kSourceIdRange : kValueRange, attribute,
          concat(what, "outside ", limits.text()));
}

void Item::checkCase(const std::vector<const char*>& known) const {
  for (const XMLAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    for (const std::string_view meant : known)
      if (meant != attribute->Name() && isSameWord(meant, attribute->Name()))
        addOf(kAttributeCase, attribute->Name(),
              concat(" is not read: readers look for \"", meant, "\""));
}

void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings) {
  const auto shown = [](int id) { return "id " + std::to_string(id); };
  checkEqual(kEqualId, entries, "Id", settings::integerIn, shown, owner, findings);
}

void checkEqualNames(const Elements& entries, const char* attribute, const std::string& owner,
                     Findings& findings) {
  const auto shown = [](std::string_view name) { return "name " + quoted(name); };
  checkEqual(kEqualName, entries, attribute, textIn, shown, owner, findings);
}

void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings) {
  const XMLElement* before = nullptr;
  for (const XMLElement* entry : entries) {
    const Item item{*entry, owner, findings};
    if (item.checkInteger("Id"))
      before = entry;
    else
      item.add(kCarriedId, " has no readable \"Id\", " + carriedFrom(before));
  }
  checkEqualIds(entries, owner, findings);
}

}  // namespace camcfg::tool::lint
