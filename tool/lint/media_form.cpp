#include "lint/media_form.h"

#include <algorithm>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/table.h"

namespace camcfg::tool::lint {

using settings::AttributeForm;
using settings::ElementForm;
using settings::Need;
using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace {

// What an author may have meant by a name that no loader reads: the longest one that it ends with.
const AttributeForm* meantBy(std::string_view name, const ElementForm& form) {
  const AttributeForm* meant = nullptr;
  std::size_t longest = 0;
  for (const AttributeForm& known : form.attributes) {
    const std::size_t length = std::string_view(known.name).size();
    if (length <= longest || name.size() < length ||
        !isSameWord(name.substr(name.size() - length), known.name))
      continue;
    meant = &known;
    longest = length;
  }
  return meant;
}

void checkUnread(const Item& entry, const ElementForm& form) {
  for (const XMLAttribute* attribute = entry.element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next()) {
    const std::string_view name = attribute->Name();
    if (std::any_of(form.attributes.begin(), form.attributes.end(),
                    [&](const AttributeForm& known) { return name == known.name; }))
      continue;
    const AttributeForm* meant = meantBy(name, form);
    entry.addAt(kUnreadAttribute, attribute->Name(),
                concat(": no loader reads \"", clipped(name), "\"",
                       meant == nullptr ? "" : concat("; the loader reads \"", meant->name, "\"")));
  }
}

void checkAttribute(const Item& entry, const AttributeForm& form) {
  if (!entry.has(form.name)) {
    const std::string what = concat(" has no \"", form.name, "\"");
    if (form.need == Need::Required)
      entry.add(kRequiredAttribute, what + ", without which the section does not load");
    if (form.need == Need::Expected) entry.add(kExpectedAttribute, what);
  } else if (form.kind == settings::Kind::Switch) {
    const std::string word = entry.text(form.name);
    if (!isSameWord(word, "true") && !isSameWord(word, "false"))
      entry.addOf(kNotASwitch, form.name, concat(" ", quoted(word), " is read as false"));
  } else if (form.kind == settings::Kind::Integer) {
    const std::optional<int> number = entry.checkInteger(form.name);
    if (number == -1 && form.need != Need::Optional)
      entry.addOf(kMinusOne, form.name, " -1 counts as missing");
    else if (number)
      entry.requireWithin(form.limits, form.name, *number);
  }
}

// The name of the entry that an element is meant to be; null if nothing comes near.
const char* nearEntry(const XMLNode& node, const std::vector<ElementForm>& forms) {
  const auto near = std::find_if(forms.begin(), forms.end(), [&](const ElementForm& form) {
    return isNearMiss(node.Value(), form.name);
  });
  return near == forms.end() ? nullptr : near->name;
}

void checkUnknown(const XMLNode& node, const XMLElement& parent, bool isSaved, Findings& findings) {
  if (node.ToElement() != nullptr)
    findings.add(kUnknownElement, node,
                 concat(tag(parent.Name()), ": no loader reads ", tag(node.Value()),
                        isSaved ? ", and the next save drops it" : ""));
  else if (isSaved)
    findings.add(kDroppedBySave, node,
                 concat(tag(parent.Name()), ": the next save drops this ",
                        node.ToComment() == nullptr ? "text" : "comment"));
}

void checkEntries(const XMLElement& parent, const std::vector<ElementForm>& forms, bool isSaved,
                  Findings& findings) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    const XMLElement* element = node->ToElement();
    const ElementForm* form = element == nullptr ? nullptr : media::formOf(*element, forms);
    if (form == nullptr) {
      const char* near = element == nullptr ? nullptr : nearEntry(*element, forms);
      if (near != nullptr)
        addNearName(*element, near, findings);
      else
        checkUnknown(*node, parent, isSaved, findings);
      continue;
    }
    const Item entry{*element, tag(form->name), findings};
    for (const AttributeForm& attribute : form->attributes) checkAttribute(entry, attribute);
    checkUnread(entry, *form);
    checkEntries(*element, form->children, isSaved, findings);
  }
}

}  // namespace

Elements entriesIn(const tinyxml2::XMLDocument& document, const settings::Table& table) {
  const XMLElement* section = media::sectionIn(document, table);
  return section == nullptr ? Elements() : media::entriesOf(*section, table.elements);
}

void checkForm(const tinyxml2::XMLDocument& document, const settings::Table& table,
               Findings& findings) {
  if (const XMLElement* section = media::sectionIn(document, table))
    checkEntries(*section, formsOf(table), table.isSaved, findings);
}

}  // namespace camcfg::tool::lint
