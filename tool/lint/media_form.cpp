#include "lint/media_form.h"

#include <strings.h>

#include <algorithm>
#include <map>

#include "lint/subject.h"
#include "lint/values.h"
#include "settings/table.h"

namespace camcfg::tool::lint {

using settings::AttributeForm;
using settings::ElementForm;
using settings::Need;
using tinyxml2::XMLAttribute;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace {

constexpr Rule kRequired{"required-attribute", Severity::Error,
                         "An attribute is missing without which the whole section does not load.",
                         "<Channel Name=\"video\"/>"};
constexpr Rule kMinusOne{"minus-one", Severity::Error,
                         "The value -1 stands for a missing attribute, also where it is written.",
                         "<Channel Id=\"-1\" Name=\"video\"/>"};
constexpr Rule kExpected{"expected-attribute", Severity::Warning,
                         "An attribute is missing that its loader does not ask for: it takes an "
                         "empty text, or a value that stands for none.",
                         "<Target Id=\"0\" url=\"rtmp://192.0.2.1/live\">"};
constexpr Rule kUnread{"unread-attribute", Severity::Warning,
                       "No loader reads an attribute of this name.",
                       "<Instance Id=\"0\" bDiscoveryServerEnable=\"true\">"};
constexpr Rule kUnknown{"unknown-element", Severity::Warning,
                        "No loader reads an element of this name here, and the next save of the "
                        "section drops it.",
                        "<VDEC Id=\"3\" Name=\"in\"/> in <StreamSource>"};
constexpr Rule kDropped{"dropped-by-save", Severity::Warning,
                        "A save rewrites the section: comments and texts in it are lost.",
                        "<!-- rear camera --> in <StreamSource>"};
constexpr Rule kNotASwitch{"not-a-switch", Severity::Error,
                           "Only the word true is on; any other but false is a word that is not "
                           "meant as off, yet is.",
                           "<Target Id=\"0\" Enable=\"1\" ...>"};
constexpr Rule kEqualName{"equal-name", Severity::Warning,
                          "Two entries have the same name, and are both loaded.",
                          "<MediaGroup Name=\"live\"> and after it another"};

bool isWord(const char* text, const char* word) {
  return strcasecmp(text, word) == 0;
}

// What an author may have meant by a name that no loader reads: the longest one that it ends with.
const AttributeForm* meantBy(const std::string& name, const ElementForm& form) {
  const AttributeForm* meant = nullptr;
  std::size_t longest = 0;
  for (const AttributeForm& known : form.attributes) {
    const std::size_t length = std::string_view(known.name).size();
    if (length <= longest || name.size() < length ||
        !isWord(name.c_str() + name.size() - length, known.name))
      continue;
    meant = &known;
    longest = length;
  }
  return meant;
}

void checkUnread(const XMLElement& entry, const ElementForm& form, Findings& findings) {
  for (const XMLAttribute* attribute = entry.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next()) {
    const std::string name = attribute->Name();
    const bool isKnown =
        std::any_of(form.attributes.begin(), form.attributes.end(),
                    [&](const AttributeForm& known) { return name == known.name; });
    if (isKnown) continue;
    const AttributeForm* meant = meantBy(name, form);
    const std::string remedy =
        meant == nullptr ? "" : std::string("; the loader reads \"") + meant->name + "\"";
    findings.add(kUnread, attribute->GetLineNum(),
                 tag(form.name) + ": no loader reads \"" + clipped(name) + "\"" + remedy);
  }
}

void checkSwitch(const XMLElement& entry, const AttributeForm& form, const std::string& owner,
                 Findings& findings) {
  const std::string word = textOf(entry, form.name);
  if (!isWord(word.c_str(), "true") && !isWord(word.c_str(), "false"))
    findings.add(kNotASwitch, entry, form.name,
                 owner + ": \"" + form.name + "\" " + quoted(word) + " is read as false");
}

void checkInteger(const XMLElement& entry, const AttributeForm& form, const std::string& owner,
                  Findings& findings) {
  const std::optional<int> value = checkInteger(entry, form.name, owner, findings);
  if (value == -1 && form.need != Need::Optional)
    findings.add(kMinusOne, entry, form.name,
                 owner + ": \"" + form.name + "\" -1 counts as missing");
}

void checkAttribute(const XMLElement& entry, const AttributeForm& form, const std::string& owner,
                    Findings& findings) {
  if (!has(entry, form.name)) {
    const std::string what = owner + " has no \"" + form.name + "\"";
    if (form.need == Need::Required)
      findings.add(kRequired, entry, what + ", without which the section does not load");
    if (form.need == Need::Expected) findings.add(kExpected, entry, what);
    return;
  }
  if (form.kind == settings::Kind::Switch) checkSwitch(entry, form, owner, findings);
  if (form.kind == settings::Kind::Integer) checkInteger(entry, form, owner, findings);
}

void tellLost(const XMLNode& node, const XMLElement& parent, bool isSaved, Findings& findings) {
  if (node.ToElement() != nullptr)
    findings.add(kUnknown, node,
                 tag(parent.Name()) + ": no loader reads " + tag(node.Value()) +
                     (isSaved ? ", and the next save drops it" : ""));
  else if (isSaved)
    findings.add(kDropped, node,
                 tag(parent.Name()) + ": the next save drops this " +
                     (node.ToComment() == nullptr ? "text" : "comment"));
}

void checkEntries(const XMLElement& parent, const std::vector<ElementForm>& forms, bool isSaved,
                  Findings& findings) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    const XMLElement* entry = node->ToElement();
    const auto form = std::find_if(forms.begin(), forms.end(), [&](const ElementForm& known) {
      return entry != nullptr && isWord(entry->Name(), known.name);
    });
    if (form == forms.end()) {
      tellLost(*node, parent, isSaved, findings);
      continue;
    }
    for (const AttributeForm& attribute : form->attributes)
      checkAttribute(*entry, attribute, tag(form->name), findings);
    checkUnread(*entry, *form, findings);
    checkEntries(*entry, form->children, isSaved, findings);
  }
}

}  // namespace

const XMLElement* sectionOf(const XMLDocument& document, const settings::Table& table) {
  const XMLElement* parent = childNamed(document, table.parent);
  return parent == nullptr ? nullptr : childNamed(*parent, table.section);
}

Elements entriesOf(const XMLDocument& document, const settings::Table& table) {
  const XMLElement* section = sectionOf(document, table);
  Elements entries;
  if (section == nullptr) return entries;
  for (const XMLElement* child : childrenOf(*section))
    if (std::any_of(table.elements.begin(), table.elements.end(),
                    [&](const char* name) { return isWord(child->Name(), name); }))
      entries.push_back(child);
  return entries;
}

void checkSection(const XMLElement& section, const settings::Table& table, Findings& findings) {
  checkEntries(section, formsOf(table), table.isSaved, findings);
}

Elements entriesOf(const XMLElement& parent, const char* name) {
  Elements entries;
  for (const XMLElement* child : childrenOf(parent))
    if (isWord(child->Name(), name)) entries.push_back(child);
  return entries;
}

void checkEqualNames(const Elements& entries, const char* attribute, const std::string& owner,
                     Findings& findings) {
  std::map<std::string_view, const XMLElement*> firsts;
  for (const XMLElement* entry : entries) {
    const char* name = entry->Attribute(attribute);
    if (name == nullptr) continue;
    const auto [first, isNew] = firsts.emplace(name, entry);
    if (!isNew)
      findings.add(
          kEqualName, *entry, attribute,
          owner + " has the name " + quoted(name) + " of the one" + atLine(*first->second));
  }
}

Subject media() {
  return {"media",
          {&kRequired, &kMinusOne, &kExpected, &kUnread, &kUnknown, &kDropped, &kNotASwitch,
           &kEqualName},
          std::nullopt,
          nullptr};
}

}  // namespace camcfg::tool::lint
