#include <algorithm>
#include <string>

#include "lint/elements.h"
#include "lint/source.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

template <typename Matches>
bool anyChild(const XMLElement& parent, Matches matches) {
  const XMLElement* child = parent.FirstChildElement();
  while (child != nullptr && !matches(*child)) child = child->NextSiblingElement();
  return child != nullptr;
}

// "Stream" may be a section of parameters, too.
bool isMedia(const XMLElement& top) {
  const std::string name = top.Name();
  return name == "LiveMediaService" ||
         (name == "Stream" && !anyChild(top, [](const XMLElement& child) {
            return has(child, "Cur") || has(child, "Def");
          }));
}

bool isPresets(const XMLElement& top) {
  return std::string(top.Name()) == "PresetCfg" || anyChild(top, [](const XMLElement& child) {
           return beginsWith(child.Name(), "preset") &&
                  (has(child, "Id") || has(child, "Description"));
         });
}

bool isParameters(const XMLElement& top) {
  const std::string name = top.Name();
  return name == "System" || name == "NetWork" ||
         anyChild(top, [](const XMLElement& child) { return has(child, "Cur"); });
}

bool isLanguage(const XMLElement& top) {
  return anyChild(top, [](const XMLElement& child) { return has(child, "Val"); });
}

struct Recognised {
  Kind kind;
  bool (*isIt)(const XMLElement& top);
};

constexpr Recognised kKinds[] = {{Kind::Media, isMedia},
                                 {Kind::Presets, isPresets},
                                 {Kind::Parameters, isParameters},
                                 {Kind::Language, isLanguage}};

}  // namespace

Kind kindOf(const XMLDocument& document) {
  const Elements tops = childrenOf(document);
  for (const Recognised& known : kKinds)
    if (std::any_of(tops.begin(), tops.end(),
                    [&](const XMLElement* top) { return known.isIt(*top); }))
      return known.kind;
  return Kind::Unknown;
}

}  // namespace camcfg::tool::lint
