#include <algorithm>
#include <functional>
#include <optional>

#include "base/concat.h"
#include "base/elements.h"
#include "base/plain_text.h"
#include "settings/media.h"
#include "settings/network.h"
#include "upgrade/rules.h"
#include "upgrade/values.h"

namespace camcfg::tool::upgrade {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string lastOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// All elements of a path, in document order. The node itself for an empty one.
void forEach(XMLNode& node, const std::string& path, const std::function<void(XMLNode&)>& found) {
  if (path.empty()) return found(node);
  const std::size_t slash = std::min(path.find('/'), path.size());
  const std::string name = path.substr(0, slash);
  const std::string rest = slash == path.size() ? "" : path.substr(slash + 1);
  for (XMLElement* child : childrenOf(node))
    if (child->Name() == name) forEach(*child, rest, found);
}

XMLNode* firstAt(XMLDocument& document, const std::string& path) {
  XMLNode* first = nullptr;
  forEach(document, path, [&](XMLNode& node) { first = first == nullptr ? &node : first; });
  return first;
}

// The element of a path, with those around it, made where they are missing.
XMLNode& made(XMLDocument& document, const std::string& path) {
  if (XMLNode* found = firstAt(document, path)) return *found;
  XMLNode& parent = made(document, parentOf(path));
  return *parent.InsertEndChild(document.NewElement(lastOf(path).c_str()));
}

Json textOrNull(const char* text) {
  return text == nullptr ? Json() : Json(text);
}

std::string whereOf(const Rule& rule) {
  return "rule of version " + std::to_string(rule.version);
}

// Whether an attribute of this name is a secret of some table.
bool isSecret(const std::string& attribute) {
  const auto& tables = settings::mediaTables();
  return std::any_of(tables.begin(), tables.end(), [&](const settings::Table* table) {
    return std::any_of(table->settings.begin(), table->settings.end(),
                       [&](const settings::Setting& setting) {
                         return setting.masked != nullptr &&
                                isSameWord(setting.attributes.front().name, attribute);
                       });
  });
}

// A parameter "System/Rtsp" is reported as "parameters.System.Rtsp", as where no rule is involved.
std::string placeOf(const Rule& rule, const std::string& path) {
  const std::size_t slash = path.find('/');
  const std::string section = path.substr(0, slash);
  if (rule.subject == Rule::Member || section == settings::kNetworkSection) return path;
  const std::string place = memberPlace("parameters", section);
  return slash == std::string::npos ? place : memberPlace(place, path.substr(slash + 1));
}

class Application {
 public:
  Application(const Rule& rule, XMLDocument& document, Entries* entries)
      : rule_(rule), document_(document), entries_(entries) {}

  void onElement() {
    XMLNode* found = firstAt(document_, rule_.from);
    if (found == nullptr) return;
    XMLElement& element = *found->ToElement();
    const Json value = textOrNull(element.Attribute("Cur"));
    if (rule_.action == Rule::Map) return mapIn(element, "Cur");
    if (rule_.action == Rule::Drop) {
      reportDropped(element, rule_.from);
      element.Parent()->DeleteChild(&element);
      return;
    }
    if (firstAt(document_, rule_.to) != nullptr) return;
    XMLNode& target = made(document_, parentOf(rule_.to));
    element.SetName(lastOf(rule_.to).c_str());
    if (&target != element.Parent()) target.InsertEndChild(&element);
    report(kRule, value, value);
  }

  void onAttribute() {
    const std::string name = lastOf(rule_.from);
    forEach(document_, parentOf(rule_.from), [&](XMLNode& node) {
      XMLElement* element = node.ToElement();
      const char* text = element == nullptr ? nullptr : element->Attribute(name.c_str());
      if (text == nullptr) return;
      if (rule_.action == Rule::Map) return mapIn(*element, name);
      const std::string value = text;
      element->DeleteAttribute(name.c_str());
      if (rule_.action == Rule::Drop) return report(kDropped, value, {});
      if (element->Attribute(rule_.to.c_str()) == nullptr)
        element->SetAttribute(rule_.to.c_str(), value.c_str());
      report(kRule, value, value);
    });
  }

 private:
  void mapIn(XMLElement& element, const std::string& attribute) {
    const std::string value = textOf(element, attribute.c_str());
    for (const auto& [old, now] : rule_.values) {
      if (value != old || element.Attribute(attribute.c_str()) == nullptr) continue;
      element.SetAttribute(attribute.c_str(), now.c_str());
      return report(kRule, value, now);
    }
  }

  // Each value that goes; of an element without any, the element itself.
  void reportDropped(const XMLElement& element, const std::string& path) {
    bool hasValues = false;
    forEachValue(element, [&](const tinyxml2::XMLAttribute& each) {
      hasValues = true;
      report(kDropped, each.Value(), {}, pathOf(path, each));
    });
    for (const XMLElement* child : childrenOf(element)) {
      hasValues = true;
      reportDropped(*child, pathOf(path, child->Name()));
    }
    if (!hasValues) report(kDropped, {}, {}, path);
  }

  void report(const char* what, const Json& before, const Json& after) {
    report(what, before, after, rule_.from);
  }

  void report(const char* what, const Json& before, const Json& after, const std::string& place) {
    if (entries_ == nullptr) return;
    const bool isShown = rule_.subject != Rule::Member || !isSecret(lastOf(rule_.from));
    entries_->push_back({what,
                         placeOf(rule_, place),
                         {},
                         {},
                         isShown ? before : Json(),
                         isShown ? after : Json(),
                         concat(rule_.text(), ", ", whereOf(rule_))});
  }

  const Rule& rule_;
  XMLDocument& document_;
  Entries* entries_;
};

// Each value the other way round; none of those that two values became.
Rule turned(Rule rule) {
  if (rule.action == Rule::Rename && rule.subject == Rule::Member) {
    const std::string name = lastOf(rule.from);
    rule.from = concat(parentOf(rule.from), "/", rule.to);
    rule.to = name;
  } else if (rule.action == Rule::Rename) {
    std::swap(rule.from, rule.to);
  }
  std::vector<std::pair<std::string, std::string>> values;
  for (const auto& [old, now] : rule.values)
    if (std::count_if(rule.values.begin(), rule.values.end(),
                      [&, &to = now](const auto& each) { return each.second == to; }) == 1)
      values.emplace_back(now, old);
  rule.values = std::move(values);
  return rule;
}

// What a name is called after the rules from one place on.
std::optional<std::string> finally(std::string name, const Rule& first, const Rules& rules) {
  bool isLater = false;
  for (const Rule& rule : rules.all) {
    if (&rule == &first) isLater = true;
    if (!isLater || &rule == &first || rule.action == Rule::Map) continue;
    const bool isWithin = name == rule.from || beginsWith(name, rule.from + "/");
    if (rule.subject == Rule::Member ? name != rule.from : !isWithin) continue;
    if (rule.action == Rule::Drop) return std::nullopt;
    name = rule.subject == Rule::Member ? concat(parentOf(name), "/", rule.to)
                                        : rule.to + name.substr(rule.from.size());
  }
  return name;
}

}  // namespace

std::vector<Rule> rulesBetween(int from, int to, const std::vector<Rule>& known) {
  std::vector<Rule> between;
  for (const Rule& rule : known)
    if (rule.version > std::min(from, to) && rule.version <= std::max(from, to))
      between.push_back(from < to ? rule : turned(rule));
  if (from < to) return between;
  std::reverse(between.begin(), between.end());
  between.erase(std::remove_if(between.begin(), between.end(),
                               [](const Rule& rule) { return rule.action == Rule::Drop; }),
                between.end());
  return between;
}

void apply(const Rule& rule, XMLDocument& document, bool isParameters, Entries* entries) {
  Application application(rule, document, entries);
  if (rule.subject == Rule::Member)
    application.onAttribute();
  else if (isParameters)
    application.onElement();
}

settings::Faults faultsOf(const Rules& rules, const std::vector<const XMLDocument*>& factory) {
  settings::Faults faults;
  for (std::size_t i = 0; i < rules.all.size(); ++i) {
    const Rule& rule = rules.all[i];
    if (rule.action == Rule::Drop) continue;
    const bool isMember = rule.subject == Rule::Member;
    const std::string target = rule.action == Rule::Map ? rule.from
                               : isMember               ? concat(parentOf(rule.from), "/", rule.to)
                                                        : rule.to;
    const std::optional<std::string> name = finally(target, rule, rules);
    if (!name) continue;
    bool isThere = false;
    for (const XMLDocument* document : factory)
      forEach(const_cast<XMLDocument&>(*document), isMember ? parentOf(*name) : *name,
              [&](XMLNode& node) {
                const XMLElement* element = node.ToElement();
                isThere = isThere ||
                          (element != nullptr &&
                           (!isMember || element->Attribute(lastOf(*name).c_str()) != nullptr));
              });
    if (!isThere)
      faults.push_back({elementPlace("rules", i),
                        concat("the factory set in place has no ", *name, ", to which it leads")});
  }
  return faults;
}

}  // namespace camcfg::tool::upgrade
