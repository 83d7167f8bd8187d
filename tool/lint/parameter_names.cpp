#include <algorithm>
#include <map>

#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kShadowed{"parameter-shadowed", Severity::Error,
                         "Parameters are found by the beginning of their names, the first in the "
                         "section is taken: a lookup of this one finds the longer name before it.",
                         R"(<RtspOverHttp Cur="8080"/> and after it <Rtsp Cur="554"/>)"};
constexpr Rule kTwice{"parameter-twice", Severity::Error,
                      "A section has a parameter twice: lookups find the first.",
                      R"(<Rtsp Cur="554"/> and after it <Rtsp Cur="8554"/>)"};
constexpr Rule kInTwoSections{"name-in-two-sections", Severity::Warning,
                              "Calls that take no section search all of them from the top: they "
                              "find the parameter of this name in an earlier section.",
                              "<Mode/> in <Video> and <Mode/> in <Audio> after it"};
constexpr Rule kShadowedElsewhere{"name-begins-earlier", Severity::Warning,
                                  "Calls that take no section search all of them from the top, and "
                                  "find a longer name that this one begins in an earlier section.",
                                  "<ModeAuto/> in <Video> and <Mode/> in <Audio> after it"};
constexpr Rule kTooDeep{"nested-too-deep", Severity::Warning,
                        "No call reads a parameter inside a parameter that is inside another.",
                        R"(<Osd><Clock><Format><Hours Cur="24"/></Format></Clock></Osd>)"};
constexpr Rule kUsageShadowed{"usage-shadowed", Severity::Error,
                              "CFG_GetElementByUsage compares the beginning of \"Usage\": a lookup "
                              "of this one finds the element before it.",
                              R"(<Port Usage="abc"/> and after it <Port Usage="ab"/>)"};
constexpr int kDeepest = 2;  // inside a section, and inside a parameter

// Elements of one name that another attribute distinguishes are no parameters written twice.
bool isToldApart(const XMLElement& element, const XMLElement& first) {
  return has(element, "Id") || has(element, "Usage") || has(first, "Id") || has(first, "Usage");
}

void checkName(const Elements& elements, std::size_t i, const NameMatches& match,
               const std::string& path, Findings& findings) {
  const XMLElement& element = *elements[i];
  const std::string name = path + "/" + clipped(element.Name());
  if (match.longer < match.same) {
    const XMLElement& other = *elements[match.longer];
    findings.add(kShadowed, element,
                 name + ": a lookup finds " + tag(other.Name()) + atLine(other) +
                     ", which begins with this name");
  } else if (match.same != i && !isToldApart(element, *elements[match.same])) {
    findings.add(kTwice, element,
                 name + ": a lookup finds the one" + atLine(*elements[match.same]));
  }
}

// Elements that have both the same name and a "Usage".
void checkUsages(const Elements& elements, const std::string& path, Findings& findings) {
  std::map<std::string_view, Elements> byName;
  for (const XMLElement* element : elements)
    if (has(*element, "Usage")) byName[element->Name()].push_back(element);
  for (const auto& [name, group] : byName) {
    std::vector<std::string_view> usages;
    for (const XMLElement* element : group) usages.emplace_back(element->Attribute("Usage"));
    const std::vector<NameMatches> matches = matchNames(usages);
    for (std::size_t i = 0; i < group.size(); ++i)
      if (matches[i].answer() != i)
        findings.add(kUsageShadowed, *group[i], "Usage",
                     path + "/" + clipped(name) + ": a lookup of usage " + quoted(usages[i]) +
                         " finds the element" + atLine(*group[matches[i].answer()]));
  }
}

// Elements of the same name of which one has an "Id".
void checkIds(const Elements& elements, const std::vector<NameMatches>& matches,
              const std::string& path, Findings& findings) {
  std::map<std::size_t, Elements> groups;
  for (std::size_t i = 0; i < elements.size(); ++i) groups[matches[i].same].push_back(elements[i]);
  for (const auto& [first, group] : groups) {
    const bool isNumbered = std::any_of(
        group.begin(), group.end(), [](const XMLElement* element) { return has(*element, "Id"); });
    if (group.size() > 1 && isNumbered)
      checkEntryIds(group, path + "/" + clipped(elements[first]->Name()), findings);
  }
}

void checkLevel(const XMLElement& parent, const std::string& path, int depth, Findings& findings) {
  const Elements elements = childrenOf(parent);
  if (depth > kDeepest && !elements.empty()) {
    findings.add(kTooDeep, *elements.front(),
                 path + ": no call reads " + tag(elements.front()->Name()) + " at this depth");
    return;
  }
  const std::vector<NameMatches> matches = matchNames(namesOf(elements));
  for (std::size_t i = 0; i < elements.size(); ++i)
    checkName(elements, i, matches[i], path, findings);
  checkIds(elements, matches, path, findings);
  checkUsages(elements, path, findings);
  for (const XMLElement* element : elements)
    checkLevel(*element, path + "/" + clipped(element->Name()), depth + 1, findings);
}

// What calls find that take only a name.
void checkAcross(const Elements& sections, Findings& findings) {
  Elements all;
  for (const XMLElement* section : sections)
    for (const XMLElement* element : childrenOf(*section)) all.push_back(element);
  const std::vector<NameMatches> matches = matchNames(namesOf(all));
  for (std::size_t i = 0; i < all.size(); ++i) {
    const XMLElement& answer = *all[matches[i].answer()];
    if (answer.Parent() == all[i]->Parent()) continue;
    const bool isSame = matches[i].same < matches[i].longer;
    findings.add(isSame ? kInTwoSections : kShadowedElsewhere, *all[i],
                 clipped(all[i]->Parent()->Value()) + "/" + clipped(all[i]->Name()) +
                     ": a lookup without the section finds " + clipped(answer.Parent()->Value()) +
                     "/" + clipped(answer.Name()) + atLine(answer));
  }
}

void check(const Source& source, Findings& findings) {
  const Elements sections = childrenOf(*source.document);
  for (const XMLElement* section : sections)
    if (std::string_view(section->Name()) != "NetWork")
      checkLevel(*section, clipped(section->Name()), 1, findings);
  checkAcross(sections, findings);
}

}  // namespace

Subject parameterNames() {
  return {"parameters",
          {&kShadowed, &kTwice, &kInTwoSections, &kShadowedElsewhere, &kTooDeep, &kUsageShadowed},
          Kind::Parameters,
          check};
}

}  // namespace camcfg::tool::lint
