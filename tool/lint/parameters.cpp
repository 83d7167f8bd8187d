#include <camcfg/params.h>

#include <algorithm>
#include <limits>
#include <map>

#include "base/concat.h"
#include "base/name_matches.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

constexpr int kDeepest = 2;  // inside a section, and inside a parameter

// Elements of one name that another attribute distinguishes are no parameters written twice.
bool isToldApart(const XMLElement& element, const XMLElement& first) {
  return has(element, "Id") || has(element, "Usage") || has(first, "Id") || has(first, "Usage");
}

void checkName(const Item& item, const Elements& elements, const NameMatches& match) {
  const XMLElement& answer = *elements[match.answer()];
  if (match.longer < match.same)
    item.add(kParameterShadowed, concat(": a lookup finds ", tag(answer.Name()), atLine(answer),
                                        ", which begins with this name"));
  else if (&answer != &item.element && !isToldApart(item.element, answer))
    item.add(kParameterTwice, ": a lookup finds the one" + atLine(answer));
}

// Elements that have both the same name and a "Usage".
void checkUsages(const Elements& elements, const Item& parent) {
  std::map<std::string_view, Elements> byName;
  for (const XMLElement* element : elements)
    if (has(*element, "Usage")) byName[element->Name()].push_back(element);
  for (const auto& [name, group] : byName) {
    std::vector<std::string_view> usages;
    for (const XMLElement* element : group) usages.emplace_back(element->Attribute("Usage"));
    const std::vector<NameMatches> matches = matchNames(usages);
    for (std::size_t i = 0; i < group.size(); ++i)
      if (matches[i].answer() != i)
        parent.inner(*group[i]).addAt(
            kUsageShadowed, "Usage",
            concat(": a lookup of usage ", quoted(usages[i]), " finds the element",
                   atLine(*group[matches[i].answer()])));
  }
}

// Elements of the same name of which one has an "Id".
void checkIds(const Elements& elements, const std::vector<NameMatches>& matches,
              const Item& parent) {
  std::map<std::size_t, Elements> groups;
  for (std::size_t i = 0; i < elements.size(); ++i) groups[matches[i].same].push_back(elements[i]);
  for (const auto& [first, group] : groups) {
    const bool isNumbered = std::any_of(
        group.begin(), group.end(), [](const XMLElement* element) { return has(*element, "Id"); });
    if (group.size() > 1 && isNumbered)
      checkEntryIds(group, parent.inner(*elements[first]).name, parent.findings);
  }
}

// Elements that hold parameters are read as parameters if they are in a section; calls for parameters
// in a parameter read texts only.
bool isSectionInside(const XMLElement& element) {
  if (has(element, "Cur") || has(element, "Id") || has(element, "Usage")) return false;
  const Elements inner = childrenOf(element);
  return std::any_of(inner.begin(), inner.end(), [](const XMLElement* each) {
    return has(*each, "Cur") && has(*each, "Min") && has(*each, "Max");
  });
}

void checkLevel(const Item& parent, int depth) {
  if (isKnownTop(parent.element.Name()) && depth > 1) return;
  const Elements elements = childrenOf(parent.element);
  if (depth > kDeepest && !elements.empty())
    return parent.findings.add(
        kNestedTooDeep, *elements.front(),
        concat(parent.name, ": no call reads ", tag(elements.front()->Name()), " at this depth"));
  const std::vector<NameMatches> matches = matchNames(namesOf(elements));
  for (std::size_t i = 0; i < elements.size(); ++i)
    checkName(parent.inner(*elements[i]), elements, matches[i]);
  checkIds(elements, matches, parent);
  checkUsages(elements, parent);
  for (const XMLElement* element : elements) checkLevel(parent.inner(*element), depth + 1);
}

// What calls find that take only a name.
void checkAcross(const Elements& sections, Findings& findings) {
  Elements all;
  for (const XMLElement* section : sections)
    for (const XMLElement* element : childrenOf(*section)) all.push_back(element);
  const auto pathOf = [](const XMLElement& element) {
    return concat(clipped(element.Parent()->Value()), "/", clipped(element.Name()));
  };
  const std::vector<NameMatches> matches = matchNames(namesOf(all));
  for (std::size_t i = 0; i < all.size(); ++i) {
    const XMLElement& answer = *all[matches[i].answer()];
    if (answer.Parent() == all[i]->Parent()) continue;
    const bool isSame = matches[i].same < matches[i].longer;
    findings.add(isSame ? kNameInTwoSections : kNameBeginsEarlier, *all[i],
                 concat(pathOf(*all[i]), ": a lookup without the section finds ", pathOf(answer),
                        atLine(answer)));
  }
}

constexpr const char* kValues[] = {"Cur", "Def"};

using Needs = std::vector<Needed>;

const Needs kOfInteger = {{"Def", "CFG_COM_GetIntParams needs"},
                          {"Min", "CFG_COM_SetIntParam and CFG_COM_GetIntParams need"},
                          {"Max", "CFG_COM_SetIntParam and CFG_COM_GetIntParams need"},
                          {"Step", "CFG_COM_GetIntParams needs"}};
const Needs kOfText = {{"Def", "CFG_COM_GetTxtParams needs"},
                       {"OptTxt", "CFG_COM_SetTxtParam and CFG_COM_GetTxtParams need"}};
const Needs kOfInner = {{"Def", "CFG_COM_GetTxtParamByParent needs"},
                        {"OptTxt", "CFG_COM_GetTxtParamByParent needs"}};

bool isOnStep(int value, int min, int step) {
  return (static_cast<long long>(value) - min) % step == 0;
}

std::string offStep(int value, int min, int step) {
  return concat(" ", value, " is not on a step of ", step, " from ", min);
}

// The largest number of all stands for no limit.
bool isLastStepShort(std::optional<int> min, std::optional<int> max, std::optional<int> step) {
  if (!min || !max || !step || *step < 1 || *max == std::numeric_limits<int>::max()) return false;
  const long long range = static_cast<long long>(*max) - *min;
  return *step <= range && !isOnStep(*max, *min, *step);
}

void checkIntegers(const Item& item) {
  const std::optional<int> min = item.checkInteger("Min");
  const std::optional<int> max = item.checkInteger("Max");
  const std::optional<int> step = item.checkInteger("Step");
  const bool isEmpty = min && max && *min > *max;
  if (isEmpty) item.addOf(kMinAboveMax, "Min", concat(" ", *min, " is above \"Max\" ", *max));
  if (step && *step < 1) item.addOf(kBadStep, "Step", concat(" ", *step, " is not an increment"));
  if (min && max && step &&
      *min<*max&& * step> static_cast<long long>(*max) - static_cast<long long>(*min))
    item.addOf(kStepTooLarge, "Step", concat(" ", *step, " is more than from \"Min\" to \"Max\""));
  if (isLastStepShort(min, max, step)) item.addOf(kOffStep, "Max", offStep(*max, *min, *step));
  for (const char* attribute : kValues) {
    const std::optional<int> value = item.checkInteger(attribute);
    if (!value || isEmpty) continue;
    if ((min && *value < *min) || (max && *value > *max))
      item.addOf(kOutsideLimits, attribute,
                 concat(" ", *value, " is outside ", min ? std::to_string(*min) : "", "..",
                        max ? std::to_string(*max) : ""));
    else if (min && step && *step > 0 && !isOnStep(*value, *min, *step))
      item.addOf(kOffStep, attribute, offStep(*value, *min, *step));
  }
}

void checkOptions(const Item& item, const std::string& options) {
  const std::vector<std::string> all = settings::optionsIn(options);
  if (all.empty()) item.addOf(kOptionsEmpty, "OptTxt", " lists no text");
  std::map<std::string, std::string_view> known;
  for (const std::string& option : all) {
    const auto [first, isNew] = known.emplace(inLowerCase(option), option);
    if (isNew) continue;
    const bool isSame = first->second == option;
    item.addOf(
        kOptionTwice, "OptTxt",
        concat(" has ", quoted(option),
               isSame ? " twice"
                      : concat(" and ", quoted(first->second), ", which differ in case only")));
  }
  if (options.find(",,") != std::string::npos || beginsWith(options, ",") ||
      (!options.empty() && options.back() == ','))
    item.addOf(kOptionsEmpty, "OptTxt", " has an empty text between commas");
  constexpr std::string_view kSeparators = ",;|";
  if (std::count_if(kSeparators.begin(), kSeparators.end(), [&](char separator) {
        return options.find(separator) != std::string::npos;
      }) > 1)
    item.addOf(kOptionsMixed, "OptTxt", " separates its texts in more than one way");
}

void checkOptionTexts(const Item& item) {
  item.requireFits("OptTxt", CFG_TXT_OPT_SIZE - 1);
  item.requireFits("Def", CFG_TXT_DEF_SIZE - 1);
  item.requireFits("Cur", CFG_TXT_CUR_SIZE - 1);
  if (!item.has("OptTxt")) return;
  const std::string options = item.text("OptTxt");
  checkOptions(item, options);
  // Only options that fit their field are searched for whole ones, which bounds the time.
  for (const char* attribute : kValues) {
    if (!item.has(attribute)) continue;
    const std::string text = item.text(attribute);
    const std::string what = concat(" ", quoted(text), " is ");
    if (options.find(text) == std::string::npos)
      item.addOf(kNotAnOption, attribute, concat(what, "not among ", quoted(options)));
    else if (options.size() < CFG_TXT_OPT_SIZE && !settings::isWholeOption(options, text))
      item.addOf(kPartOfOption, attribute, concat(what, "only a part of one of ", quoted(options)));
  }
}

// Calls read "Cur" of it; those that read more or set it have nothing to go by.
bool isOnlyShown(const Item& item) {
  constexpr const char* kLimits[] = {"Min", "Max", "Step", "OptTxt"};
  return item.has("Cur") && std::none_of(std::begin(kLimits), std::end(kLimits),
                                         [&](const char* limit) { return item.has(limit); });
}

// @param isInner  it is inside another parameter
void checkItem(const Item& item, bool isInner) {
  const bool isInteger = settings::ParameterForm(item.element).isInteger();
  item.checkCase({"Cur", "Def", "Min", "Max", "Step", "OptTxt"});
  if (!isInner && isOnlyShown(item))
    return item.add(kOnlyShown, " has neither \"Min\" and \"Max\" nor \"OptTxt\"");
  item.require({"Cur", "every reader needs"});
  for (const Needed& need : isInner ? kOfInner : isInteger ? kOfInteger : kOfText)
    item.require(need);
  if (isInteger)
    checkIntegers(item);
  else
    checkOptionTexts(item);
}

// An element without "Cur" may hold other parameters only, or be an entry of an application's own.
bool isParameter(const XMLElement& element) {
  if (has(element, "Cur")) return true;
  return element.FirstChildElement() == nullptr && !has(element, "Id") && !has(element, "Usage");
}

// What is read as a whole, or is meant to be.
bool isDevice(std::string_view name) {
  constexpr std::string_view kDevice = "System/DeviceAttr";
  return name == kDevice || isNearMiss(name, kDevice);
}

void checkAll(const Item& parent, bool isInner) {
  for (const XMLElement* element : childrenOf(parent.element)) {
    const Item item = parent.inner(*element);
    if (isDevice(item.name) || isKnownTop(element->Name())) continue;
    if (!isInner && isSectionInside(*element)) {
      item.add(kSectionNested, " is a section inside another: no call reads the numbers in it");
      continue;
    }
    if (isParameter(*element)) checkItem(item, isInner);
    if (!isInner) checkAll(item, true);
  }
}

// A section has no value of its own.
bool isOutside(const XMLElement& section) {
  return has(section, "Cur") &&
         (has(section, "Def") || has(section, "Min") || has(section, "OptTxt"));
}

// Cards are none, even if the name of their section is misspelt.
Elements sectionsOfParameters(const tinyxml2::XMLDocument& document) {
  const XMLElement* network = nearNetwork(document);
  Elements sections = childrenOf(document);
  sections.erase(std::remove_if(sections.begin(), sections.end(),
                                [&](const XMLElement* section) {
                                  return section == network || std::string_view(section->Name()) ==
                                                                   settings::kNetworkSection;
                                }),
                 sections.end());
  return sections;
}

}  // namespace

void checkParameterNames(const Source& source, Findings& findings) {
  for (const XMLElement* section : sectionsOfParameters(*source.document))
    checkLevel({*section, clipped(section->Name()), findings}, 1);
  checkAcross(childrenOf(*source.document), findings);
}

void checkParameterValues(const Source& source, Findings& findings) {
  for (const XMLElement* section : sectionsOfParameters(*source.document)) {
    const Item item{*section, clipped(section->Name()), findings};
    if (isOutside(*section))
      item.add(kParameterAtTop, " is a parameter outside all sections: no call finds it");
    checkAll(item, false);
  }
}

}  // namespace camcfg::tool::lint
