#include "document/schema.h"

#include <cstdint>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "network/network.h"
#include "parameters/parameter.h"
#include "settings/media.h"
#include "settings/network.h"
#include "settings/presets.h"
#include "settings/system.h"
#include "settings/table.h"
#include "settings/value.h"

namespace camcfg::tool::document {
namespace {

using settings::Kind;
using settings::Setting;
using settings::Settings;
using settings::Table;

constexpr const char* kUris[] = {"https://json-schema.org/draft/2020-12/schema",
                                 "http://json-schema.org/draft-07/schema#"};
constexpr const char* kDefinitions[] = {"$defs", "definitions"};

// What a file cannot hold is in no text.
constexpr char kStorable[] = "^[^\\u0000-\\u0008\\u000b-\\u001f\\u007f]*$";

Json integer(const settings::Range& limits) {
  return {{"type", "integer"}, {"minimum", limits.least}, {"maximum", limits.most}};
}

Json list(Json items) {
  return {{"type", "array"}, {"items", std::move(items)}};
}

Json eitherOf(Json one, Json other) {
  Json both = Json::array();
  both.push_back(std::move(one));
  both.push_back(std::move(other));
  return {{"anyOf", std::move(both)}};
}

Json constant(const Json& value) {
  Json schema = Json::object();
  schema["const"] = value;
  return schema;
}

// An object that has no other members.
Json closed(Json properties, const std::vector<std::string>& required) {
  Json schema = {{"type", "object"}};
  schema["properties"] = std::move(properties);
  if (!required.empty()) schema["required"] = required;
  schema["additionalProperties"] = false;
  return schema;
}

// What is said of a value comes first.
Json described(const std::string& title, const std::string& description, const Json& schema) {
  Json whole = {{"title", title}};
  if (!description.empty()) whole["description"] = description;
  for (const auto& [name, member] : schema.items()) whole[name] = member;
  return whole;
}

Json needing(const std::vector<std::string>& names) {
  return {{"required", Json(names)}};
}

class Schema {
 public:
  Schema(Dialect dialect, Mode mode) : dialect_(dialect), isMerged_(mode == Mode::Merge) {}

  Json document() const {
    Json properties = {{"$schema", {{"type", "string"}}}, {kVersionMember, constant(kVersion)}};
    for (const device::Section& section : allSections()) {
      properties.at_path(pathTo(section)) = described(section.name, "", sectionSchema(section));
    }
    for (const char* group : {"stream", "live"}) properties[group] = closed(properties[group], {});
    const auto at = static_cast<std::size_t>(dialect_);
    Json schema = {
        {"$schema", kUris[at]},
        {"$id", concat("urn:camcfg:document:", kVersion, ":", CAMCFG_VERSION)},
        {"title", "Settings of a device"},
        {"description",
         "A document that 'camcfg export' prints and 'camcfg import' takes on this device"}};
    const Json root = closed(std::move(properties), {kVersionMember});
    for (const auto& [name, member] : root.items()) schema[name] = member;
    schema[kDefinitions[at]] = {{"text", text()}};
    return schema;
  }

 private:
  // JSON has no bytes that are not UTF-8.
  static Json text() {
    const Json bytes =
        closed({{"$bytes", {{"type", "string"}, {"pattern", "^([0-9a-f]{2})*$"}}}}, {"$bytes"});
    return eitherOf({{"type", "string"}, {"pattern", kStorable}}, bytes);
  }

  Json textReference() const {
    Json reference = Json::object();
    reference["$ref"] = concat("#/", kDefinitions[static_cast<std::size_t>(dialect_)], "/text");
    return reference;
  }

  // In one array, so that what is said of it can be next to it.
  Json anyText(std::size_t room) const {
    Json schema = Json::object();
    schema["allOf"].push_back(textReference());
    if (room != 0) schema["maxLength"] = room - 1;
    return schema;
  }

  Json sectionSchema(const device::Section& section) const {
    if (section.table != nullptr) return entriesOf(*section.table);
    if (section.name == kPresets)
      return list(entry(settings::kPresetId, nullptr, presetProperties(), {settings::kPresetId}));
    return section.name == kNetwork ? networkSchema() : parametersSchema();
  }

  // One that is there, or one that is to be absent.
  static Json entry(const char* key, const char* label, const Json& properties,
                    const std::vector<std::string>& required) {
    Json there = closed(properties, required);
    if (key == nullptr) return there;
    Json named = Json::object();
    named[key] = properties.at(key);
    if (label != nullptr) named[label] = properties.at(label);
    named[kAbsent] = constant(true);
    Json schema = {{"if", needing({kAbsent})}};
    Json absent = closed(std::move(named), {kAbsent});
    if (label == nullptr)
      absent["required"].push_back(key);
    else
      absent["anyOf"] = eitherOf(needing({key}), needing({label})).at("anyOf");
    schema["then"] = std::move(absent);
    schema["else"] = std::move(there);
    return schema;
  }

  // Lists that are merged find entries by the key, or else by the label.
  Json entriesOf(const Table& table) const {
    std::vector<std::string> required;
    for (const Setting& setting : table.settings)
      if (!mayBeLeftOut(setting) &&
          (!isMerged_ || (isKey(table, setting) && table.label == nullptr)))
        required.emplace_back(setting.member);
    return list(entry(table.key, table.label, propertiesOf(table), required));
  }

  // An entry that the device has keeps the secrets that a document leaves out.
  static bool mayBeLeftOut(const Setting& setting) {
    return setting.isOptional || setting.masked != nullptr;
  }

  static bool isKey(const Table& table, const Setting& setting) {
    return table.key != nullptr && std::string_view(table.key) == setting.member;
  }

  Json propertiesOf(const Table& table) const {
    Json properties = Json::object();
    const Json assumed = table.calls.newRecord == nullptr
                             ? Json::object()
                             : settings::withAssumed(table, Json::object());
    for (const Setting& setting : table.settings) {
      Json& property = properties[setting.member];
      property = describedSetting(setting, valueSchema(setting));
      const Json& value = memberOrNothing(assumed, setting.member);
      if (!isKey(table, setting) && assumed.contains(setting.member) && setting.refersTo == nullptr)
        property["default"] = value;
    }
    return properties;
  }

  static Json describedSetting(const Setting& setting, const Json& schema) {
    std::string description = setting.help;
    if (setting.unit != nullptr) description += std::string(", in ") + setting.unit;
    Json whole = described(setting.member, description, schema);
    if (setting.masked != nullptr) whole["writeOnly"] = true;
    return whole;
  }

  Json valueSchema(const Setting& setting) const {
    Json schema = givenSchema(setting);
    return setting.isOptional ? eitherOf(std::move(schema), {{"type", "null"}}) : schema;
  }

  Json givenSchema(const Setting& setting) const {
    if (setting.parts != nullptr) return partsSchema(*setting.parts);
    switch (setting.kind) {
      case Kind::Integer:
        return integer(setting.limits);
      case Kind::Id:
        return idSchema(setting);
      case Kind::Word:
        return wordsSchema(setting);
      case Kind::Switch:
      case Kind::Flag:
        return {{"type", "boolean"}};
      case Kind::Ids:
        return idsSchema(setting);
      case Kind::List:
        return entriesOf(*setting.inner);
      default:
        return anyText(setting.field.room);
    }
  }

  Json partsSchema(const Settings& parts) const {
    Json properties = Json::object();
    for (const Setting& part : parts)
      properties[part.member] = describedSetting(part, valueSchema(part));
    return closed(std::move(properties), settings::membersOf(parts));
  }

  static Json idSchema(const Setting& setting) {
    Json schema = integer(setting.limits);
    if (setting.limits.has(-1)) schema["not"] = constant(-1);
    return schema;
  }

  static Json idsSchema(const Setting& setting) {
    Json schema = list(idSchema(setting.inner->settings.front()));
    schema["uniqueItems"] = true;
    if (setting.refersTo != nullptr) schema["minItems"] = 1;
    return schema;
  }

  static Json wordsSchema(const Setting& setting) {
    Json words = Json::array();
    for (const settings::Word& word : setting.words) words.push_back(word.text);
    Json schema = Json::object();
    schema["enum"] = std::move(words);
    return schema;
  }

  // What is left out, or null, stays as it is.
  Json presetProperties() const {
    Json properties = Json::object();
    for (const Setting& setting : settings::presetSettings()) {
      Json schema = valueSchema(setting);
      if (setting.need != settings::Need::Required)
        schema = eitherOf(std::move(schema), {{"type", "null"}});
      properties[setting.member] = describedSetting(setting, schema);
    }
    return properties;
  }

  Json networkSchema() const {
    const network::Network device;
    Json cards = Json::object();
    const Json present = sectionOf(kNetwork).load();
    for (tinyxml2::XMLElement* card : device.cards()) {
      const Json& values = memberOrNothing(present.at(kCards), card->Value());
      Json properties = Json::object();
      for (const auto& [setting, element] : network::fieldsOf(*card))
        if (values.contains(setting.member))
          properties[setting.member] =
              describedSetting(setting, fieldSchema(setting, element, values.at(setting.member)));
      cards[card->Value()] = described(card->Value(), "", closed(std::move(properties), {}));
    }
    Json properties = Json::object();
    const Setting& hostname = settings::hostnameSetting();
    properties["hostname"] =
        describedSetting(hostname, orHeld(anyText(hostname.field.room), present.at("hostname"),
                                          present.at("hostname").is_string()));
    properties[kCards] = closed(std::move(cards), {});
    return closed(std::move(properties), {});
  }

  Json fieldSchema(const Setting& setting, const tinyxml2::XMLElement& element,
                   const Json& held) const {
    const settings::Range limits = settings::limitsIn(element, setting.limits);
    const bool isFine =
        !held.is_null() &&
        settings::objectionTo(setting, settings::inFile(setting, held), limits).why.empty();
    return orHeld(setting.kind == Kind::Integer ? integer(limits) : givenSchema(setting), held,
                  isFine);
  }

  // What the device has is taken, whatever it is.
  static Json orHeld(Json schema, const Json& held, bool isFine) {
    return isFine ? schema : eitherOf(std::move(schema), constant(held));
  }

  Json parametersSchema() const {
    const parameters::Parameters parameters;
    const Json present = sectionOf(kParameters).load();
    Json sections = Json::object();
    for (const auto& [name, values] : present.items()) {
      Json properties = Json::object();
      for (const auto& [parameter, held] : values.items())
        properties[parameter] =
            parameterSchema(parameters, parameters.require(name, parameter), held);
      sections[name] = described(name, "", closed(std::move(properties), {}));
    }
    return closed(std::move(sections), {});
  }

  static Json parameterSchema(const parameters::Parameters& parameters,
                              const parameters::Parameter& parameter, const Json& held) {
    std::string description = parameter.form().permitted();
    for (const settings::SystemPort& port : settings::systemPorts())
      if (parameter.section == settings::kSystemSection && parameter.name == port.parameter)
        description.insert(0, std::string(port.label) + ", ");
    Json schema = described(parameter.name, description, formSchema(parameters, parameter, held));
    if (const char* factory = parameter.text("Def")) schema["default"] = parameter.shown(factory);
    schema["examples"].push_back(held);
    return schema;
  }

  // Of a parameter that nobody can set, or whose limits make no sense, only what it has.
  static Json formSchema(const parameters::Parameters& parameters,
                         const parameters::Parameter& parameter, const Json& held) {
    const settings::ParameterForm form = parameter.form();
    const std::optional<parameters::Parameter> found =
        parameters.lookup(parameter.section, parameter.name);
    if (found && found->element != parameter.element) return constant(held);
    const std::string text = textOf(held);
    const bool isFine = form.objectionTo(text).why.empty();
    if (form.isInteger()) {
      if (!settings::integerIn(*parameter.element, "Min") ||
          !settings::integerIn(*parameter.element, "Max"))
        return constant(held);
      return orHeld(integer(settings::limitsIn(*parameter.element, {})), held,
                    isFine && held.is_number_integer());
    }
    Json options = Json::array();
    for (const std::string& option : form.options()) options.push_back(option);
    if (parameter.text("OptTxt") == nullptr) return constant(held);
    if (options.empty()) options.push_back("");
    Json schema = Json::object();
    schema["enum"] = std::move(options);
    return orHeld(std::move(schema), held, isFine);
  }

  const Dialect dialect_;
  const bool isMerged_;
};

}  // namespace

const std::vector<std::string> kDialects = {"2020-12", "draft-07"};

Json schemaOf(Dialect dialect, Mode mode) {
  return Schema(dialect, mode).document();
}

}  // namespace camcfg::tool::document
