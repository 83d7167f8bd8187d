#include <camcfg/params.h>

#include <cstring>
#include <string_view>

#include "lint/elements.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/value.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kMinAboveMax{"min-above-max", Severity::Error,
                            "\"Min\" is above \"Max\", so no value can be set.",
                            "<Gain Cur=\"5\" Def=\"5\" Min=\"10\" Max=\"0\" Step=\"1\"/>"};
constexpr Rule kOutsideLimits{"outside-limits", Severity::Error,
                              "A value is outside \"Min\"..\"Max\": it is nevertheless read, but "
                              "cannot be set again.",
                              "<Gain Cur=\"12\" Def=\"5\" Min=\"0\" Max=\"10\" Step=\"1\"/>"};
constexpr Rule kOffStep{"off-step", Severity::Warning,
                        "A value is not a whole number of \"Step\"s above \"Min\". Setters do not "
                        "look at it; users that step through the values never meet this one.",
                        "<Gain Cur=\"5\" Def=\"4\" Min=\"0\" Max=\"10\" Step=\"2\"/>"};
constexpr Rule kBadStep{"bad-step", Severity::Warning, "\"Step\" is no increment: it is below 1.",
                        "<Gain Cur=\"5\" Def=\"5\" Min=\"0\" Max=\"10\" Step=\"0\"/>"};
constexpr Rule kNotAnOption{"not-an-option", Severity::Error,
                            "A text is nowhere in \"OptTxt\": it is nevertheless read, but cannot "
                            "be set again.",
                            "<Mode Cur=\"Night\" Def=\"Auto\" OptTxt=\"Auto,Manual\"/>"};
constexpr Rule kPartOfOption{"part-of-option", Severity::Warning,
                             "A text is only a part of one in \"OptTxt\". Setters accept any part; "
                             "users that choose from the list never meet this one.",
                             "<Mode Cur=\"Man\" Def=\"Auto\" OptTxt=\"Auto,Manual\"/>"};

constexpr const char* kValues[] = {"Cur", "Def"};

struct Need {
  const char* attribute;
  const char* reader;
};

constexpr Need kOfAny[] = {{"Cur", "every reader needs"}};
constexpr Need kOfInteger[] = {{"Def", "CFG_COM_GetIntParams needs"},
                               {"Min", "CFG_COM_SetIntParam and CFG_COM_GetIntParams need"},
                               {"Max", "CFG_COM_SetIntParam and CFG_COM_GetIntParams need"},
                               {"Step", "CFG_COM_GetIntParams needs"}};
constexpr Need kOfText[] = {{"Def", "CFG_COM_GetTxtParams needs"},
                            {"OptTxt", "CFG_COM_SetTxtParam and CFG_COM_GetTxtParams need"}};
constexpr Need kOfInner[] = {{"Def", "CFG_COM_GetTxtParamByParent needs"},
                             {"OptTxt", "CFG_COM_GetTxtParamByParent needs"}};

// A parameter element, as its attributes make it one.
struct Item {
  const XMLElement& element;
  std::string path;
  bool isInner;  // inside another parameter

  bool isInteger() const { return settings::ParameterForm(element).isInteger(); }
};

template <std::size_t Count>
void require(const Item& item, const Need (&needs)[Count], Findings& findings) {
  for (const Need& need : needs)
    requireAttribute(item.element, need.attribute, item.path, need.reader, findings);
}

void checkNeeds(const Item& item, Findings& findings) {
  require(item, kOfAny, findings);
  if (item.isInner)
    require(item, kOfInner, findings);
  else if (item.isInteger())
    require(item, kOfInteger, findings);
  else
    require(item, kOfText, findings);
}

void checkStep(const Item& item, const char* attribute, int value, int min, int step,
               Findings& findings) {
  if ((static_cast<long long>(value) - min) % step != 0)
    findings.add(kOffStep, item.element, attribute,
                 item.path + ": \"" + attribute + "\" " + std::to_string(value) +
                     " is not on a step of " + std::to_string(step) + " from " +
                     std::to_string(min));
}

void checkIntegers(const Item& item, Findings& findings) {
  const auto read = [&](const char* attribute) {
    return checkInteger(item.element, attribute, item.path, findings);
  };
  const std::optional<int> min = read("Min");
  const std::optional<int> max = read("Max");
  const std::optional<int> step = read("Step");
  const bool isEmpty = min && max && *min > *max;
  if (isEmpty)
    findings.add(kMinAboveMax, item.element, "Min",
                 item.path + ": \"Min\" " + std::to_string(*min) + " is above \"Max\" " +
                     std::to_string(*max));
  if (step && *step < 1)
    findings.add(kBadStep, item.element, "Step",
                 item.path + ": \"Step\" " + std::to_string(*step) + " is no increment");
  for (const char* attribute : kValues) {
    const std::optional<int> value = read(attribute);
    if (!value || isEmpty) continue;
    if ((min && *value < *min) || (max && *value > *max))
      findings.add(kOutsideLimits, item.element, attribute,
                   item.path + ": \"" + attribute + "\" " + std::to_string(*value) +
                       " is outside " + (min ? std::to_string(*min) : "") + ".." +
                       (max ? std::to_string(*max) : ""));
    else if (min && step && *step > 0)
      checkStep(item, attribute, *value, *min, *step, findings);
  }
}

void checkTexts(const Item& item, Findings& findings) {
  requireFits(item.element, "OptTxt", CFG_TXT_OPT_SIZE - 1, item.path, findings);
  requireFits(item.element, "Def", CFG_TXT_DEF_SIZE - 1, item.path, findings);
  requireFits(item.element, "Cur", CFG_TXT_CUR_SIZE - 1, item.path, findings);
  if (!has(item.element, "OptTxt")) return;
  const std::string options = textOf(item.element, "OptTxt");
  // Only options that fit their field are searched for whole ones, which bounds the time.
  for (const char* attribute : kValues) {
    if (!has(item.element, attribute)) continue;
    const std::string text = textOf(item.element, attribute);
    const std::string what = item.path + ": \"" + attribute + "\" " + quoted(text) + " is ";
    if (std::strstr(options.c_str(), text.c_str()) == nullptr)
      findings.add(kNotAnOption, item.element, attribute, what + "not among " + quoted(options));
    else if (options.size() < CFG_TXT_OPT_SIZE && !settings::isWholeOption(options, text))
      findings.add(kPartOfOption, item.element, attribute,
                   what + "only a part of one of " + quoted(options));
  }
}

void checkItem(const Item& item, Findings& findings) {
  checkAttributeCase(item.element, {"Cur", "Def", "Min", "Max", "Step", "OptTxt"}, item.path,
                     findings);
  checkNeeds(item, findings);
  if (item.isInteger())
    checkIntegers(item, findings);
  else
    checkTexts(item, findings);
}

// An element without "Cur" may hold other parameters only, or be an entry of an application's own.
bool isParameter(const XMLElement& element) {
  if (has(element, "Cur")) return true;
  return element.FirstChildElement() == nullptr && !has(element, "Id") && !has(element, "Usage");
}

void checkAll(const XMLElement& parent, const std::string& path, bool isInner, Findings& findings) {
  for (const XMLElement* element : childrenOf(parent)) {
    const std::string name = path + "/" + clipped(element->Name());
    if (name == "System/DeviceAttr") continue;
    if (isParameter(*element)) checkItem({*element, name, isInner}, findings);
    if (!isInner) checkAll(*element, name, true, findings);
  }
}

void check(const Source& source, Findings& findings) {
  for (const XMLElement* section : childrenOf(*source.document))
    if (std::string_view(section->Name()) != "NetWork")
      checkAll(*section, clipped(section->Name()), false, findings);
}

}  // namespace

Subject parameterValues() {
  return {"parameters",
          {&kMinAboveMax, &kOutsideLimits, &kOffStep, &kBadStep, &kNotAnOption, &kPartOfOption},
          Kind::Parameters,
          check};
}

}  // namespace camcfg::tool::lint
