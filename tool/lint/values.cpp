#include "lint/values.h"

#include <strings.h>

#include <cstring>
#include <limits>
#include <unordered_map>

#include "base/decimal.h"
#include "lint/elements.h"
#include "lint/subject.h"
#include "settings/value.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kNotAnInteger{
    "not-an-integer", Severity::Error,
    "The value is no integer to its reader, which fails or takes a value of its own.",
    R"(<VENC Id="0" Name="main" ChnId="0" Enabled="false"/>)"};
constexpr Rule kIntegerTooLarge{"integer-too-large", Severity::Error,
                                "The value does not fit into 32 bits and is read as another one.",
                                R"(<Rtsp Cur="554" Def="554" Min="1" Max="4294967296" Step="1"/>)"};
constexpr Rule kOddInteger{
    "odd-integer", Severity::Warning,
    "The value is no plain decimal number; only the number at its beginning is read.",
    R"(<Cache Id="0" Name="main" BufferSizeKB="512KB">)"};
constexpr Rule kMissingAttribute{
    "missing-attribute", Severity::Error,
    "An attribute is missing that a reader or a setter of the element needs.",
    R"(<Rtsp Cur="554" Def="554" Min="1" Max="65535"/>)"};
constexpr Rule kValueTooLong{
    "value-too-long", Severity::Error,
    "The value is longer than the field that it is read into and is cut off there.",
    R"(<Title Cur="a" Def="sixteen or more bytes" OptTxt="a,b"/>)"};
constexpr Rule kPortRange{"port-range", Severity::Error,
                          "There is no such port; the library stores whatever it is given.",
                          R"(<Instance Id="0" Mode="Listener" Port="90000">)"};

constexpr Rule kAttributeCase{"attribute-case", Severity::Error,
                              "Names of attributes are compared with upper and lower case apart: "
                              "readers do not find this one.",
                              R"(<Rtsp cur="554" Def="554" Min="1" Max="65535" Step="1"/>)"};

constexpr Rule kCarriedId{
    "carried-id", Severity::Error,
    "Searches by id do not forget the id of the entry before: an entry without a readable \"Id\" "
    "is taken for that one.",
    R"(<preset Id="3" Description="Dock"/> and after it <preset Description="Gate"/>)"};
constexpr Rule kEqualId{
    "equal-id", Severity::Error,
    "Two entries have the same id: searches find the first, and users of the list cannot tell them "
    "apart.",
    R"(<preset Id="3" Description="Dock"/> and after it <preset Id="3" Description="Gate"/>)"};

constexpr int kGreatestPort = 65535;

std::string nameOf(const std::string& owner, const char* attribute) {
  return owner + ": \"" + attribute + "\" ";
}

bool readId(const XMLElement& entry, int& id) {
  return entry.QueryIntAttribute("Id", &id) == tinyxml2::XML_SUCCESS;
}

std::string carriedFrom(const XMLElement* before) {
  int id = 0;
  if (before == nullptr || !readId(*before, id))
    return "and there is none before it to take one from";
  return "and is taken for " + std::to_string(id) + ", as the one" + atLine(*before);
}

}  // namespace

std::optional<int> checkInteger(const XMLElement& element, const char* attribute,
                                const std::string& owner, Findings& findings) {
  const char* text = element.Attribute(attribute);
  if (text == nullptr) return std::nullopt;
  const std::string what = nameOf(owner, attribute) + quoted(text);
  const std::optional<int> read = settings::integerIn(element, attribute);
  if (!read)
    findings.add(kNotAnInteger, element, attribute, what + " is no integer");
  else if (!decimal(text))
    findings.add(kOddInteger, element, attribute, what + " is read as " + std::to_string(*read));
  else if (!decimal32(text))
    findings.add(kIntegerTooLarge, element, attribute,
                 what + " does not fit into 32 bits and is read as another number");
  return read;
}

void requireAttribute(const XMLElement& element, const char* attribute, const std::string& owner,
                      const char* reader, Findings& findings) {
  if (!has(element, attribute))
    findings.add(kMissingAttribute, element,
                 owner + " has no \"" + attribute + "\", which " + reader);
}

void requireFits(const XMLElement& element, const char* attribute, std::size_t room,
                 const std::string& owner, Findings& findings) {
  const std::size_t length = textOf(element, attribute).size();
  if (length > room)
    findings.add(kValueTooLong, element, attribute,
                 nameOf(owner, attribute) + "has " + std::to_string(length) +
                     " bytes, and its readers have room for " + std::to_string(room));
}

void requirePort(const XMLElement& element, const char* attribute, const std::optional<int>& port,
                 const std::string& owner, Findings& findings) {
  if (port && (*port < 1 || *port > kGreatestPort))
    findings.add(kPortRange, element, attribute,
                 nameOf(owner, attribute) + std::to_string(*port) + " is no port (1.." +
                     std::to_string(kGreatestPort) + ")");
}

void checkAttributeCase(const XMLElement& element, const std::vector<const char*>& known,
                        const std::string& owner, Findings& findings) {
  for (const XMLAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    for (const char* name : known)
      if (std::strcmp(attribute->Name(), name) != 0 && strcasecmp(attribute->Name(), name) == 0)
        findings.add(
            kAttributeCase, attribute->GetLineNum(),
            nameOf(owner, attribute->Name()) + "is not read: readers look for \"" + name + "\"");
}

void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings) {
  std::unordered_map<int, const XMLElement*> firsts;
  for (const XMLElement* entry : entries) {
    int id = 0;
    if (!readId(*entry, id)) continue;
    const auto [first, isNew] = firsts.emplace(id, entry);
    if (!isNew)
      findings.add(
          kEqualId, *entry, "Id",
          owner + " has the id " + std::to_string(id) + " of the one" + atLine(*first->second));
  }
}

void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings) {
  const XMLElement* before = nullptr;
  for (const XMLElement* entry : entries) {
    if (checkInteger(*entry, "Id", owner, findings))
      before = entry;
    else
      findings.add(kCarriedId, *entry, owner + " has no readable \"Id\", " + carriedFrom(before));
  }
  checkEqualIds(entries, owner, findings);
}

Subject values() {
  return {"values",
          {&kNotAnInteger, &kIntegerTooLarge, &kOddInteger, &kMissingAttribute, &kValueTooLong,
           &kPortRange, &kAttributeCase},
          std::nullopt,
          nullptr};
}

Subject entryIds() {
  return {"ids", {&kCarriedId, &kEqualId}, std::nullopt, nullptr};
}

}  // namespace camcfg::tool::lint
