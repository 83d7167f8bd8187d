#include "network/network.h"

#include <camcfg/network.h>
#include <camcfg/store.h>

#include <functional>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Setting;
using tinyxml2::XMLElement;

// The file's own limits where it has any.
std::string permitted(const Setting& setting, const XMLElement* element) {
  if (setting.kind != settings::Kind::Integer) return settings::permittedInFile(setting, {});
  if (element == nullptr) return "";
  return settings::permittedInFile(setting, settings::limitsIn(*element, setting.limits));
}

Json valueOf(const device::ExplainedFile& file, device::ElementPath path, const Setting& setting) {
  path.emplace_back(settings::elementOf(setting));
  return file.value(path.back(), permitted(setting, device::elementAt(file.document(), path)),
                    device::finderOf(path),
                    [](const XMLElement& element) { return attributeOf(&element, "Cur"); });
}

using Cards = std::vector<XMLElement*>;

Cards cardsThat(const Cards& cards, const std::function<bool(XMLElement&)>& fits) {
  Cards found;
  for (XMLElement* card : cards)
    if (fits(*card)) found.push_back(card);
  return found;
}

[[noreturn]] void refuseCard(const std::string& word, const Cards& cards) {
  std::vector<std::string> known;
  std::vector<std::string> shown;
  for (XMLElement* card : cards) {
    known.emplace_back(card->Value());
    shown.push_back(withInterface(*card));
  }
  for (XMLElement* card : cards) known.push_back(interfaceOf(*card));
  throw Refusal(concat("there is no card '", word, "'",
                       shown.empty() ? "" : "; there are " + joined(shown),
                       didYouMean(word, known)));
}

}  // namespace

XMLElement* networkOf(tinyxml2::XMLDocument& document) {
  return CFG_GetBrotherElementByName(document.FirstChildElement(), settings::kNetworkSection);
}

XMLElement* childOf(XMLElement& parent, const std::string& name) {
  return parent.FirstChildElement(name.c_str());
}

Json attributeOf(const XMLElement* element, const char* attribute) {
  return element == nullptr ? nullptr : element->Attribute(attribute);
}

std::string pathOf(const tinyxml2::XMLNode& card, const Setting& setting) {
  return concat(card.Value(), "/", settings::elementOf(setting));
}

std::string interfaceOf(XMLElement& card) {
  const Json word = attributeOf(childOf(card, "Intf"), "Cur");
  return word.is_null() ? "" : CFG_NETWORK_IntfXmlStr2EthName(word.text().c_str());
}

std::string withInterface(XMLElement& card) {
  const std::string interface = interfaceOf(card);
  return interface.empty() ? card.Value() : concat(card.Value(), " (", interface, ")");
}

std::vector<CardField> fieldsOf(XMLElement& card) {
  std::vector<CardField> fields;
  for (const Setting& setting : settings::cardSettings())
    if (XMLElement* element = childOf(card, settings::elementOf(setting)))
      fields.push_back({setting, *element});
  return fields;
}

std::vector<std::string> spilledBy(const XMLElement& card) {
  std::vector<std::string> reasons;
  for (const XMLElement* element : childrenOf(card))
    if (const auto* setting = settings::cardSettingWrittenInto(element->Value()))
      reasons.push_back(concat("the library would write ", settings::elementOf(*setting), " into ",
                               element->Value(), ", too, which begins with this name"));
  return reasons;
}

Network::Network()
    : document_(device::requireDocument(CFG_FILE_BUSINESS)), section_(networkOf(*document_)) {
  if (section_ == nullptr)
    throw Refusal(Status::Unusable, std::string(CFG_FILE_BUSINESS) + " has no section NetWork");
}

XMLElement& Network::require(const std::string& word) const {
  for (XMLElement* card : cards())
    if (card->Value() == word) return *card;
  Cards found = cardsThat(cards(), [&](auto& card) { return isSameWord(card.Value(), word); });
  if (found.empty())
    found = cardsThat(cards(), [&](auto& card) { return isSameWord(interfaceOf(card), word); });
  if (found.empty() || word.empty()) refuseCard(word, cards());
  if (found.size() == 1) return *found.front();
  std::vector<std::string> names;
  for (const XMLElement* card : found) names.emplace_back(card->Value());
  throw Refusal(concat(quoted(word), " may be ", joined(names), "; give one of these names"));
}

XMLElement& Network::lookup(const XMLElement& card) const {
  return *CFG_GetElementByName(section_, card.Value());
}

XMLElement& Network::requireReachable(const std::string& word) const {
  XMLElement& card = require(word);
  const XMLElement& found = lookup(card);
  if (&found == &card) return card;
  throw Refusal(concat(card.Value(), ": the library would take ", found.Value(),
                       ", which begins with this name and comes before it in ", CFG_FILE_BUSINESS));
}

device::Explanation explainCard(const std::string& card, const std::string& field) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const Setting* only = field.empty() ? nullptr : &settings::requireCardSetting(field);
  std::vector<std::string> names = {card};
  if (only != nullptr) names.emplace_back(settings::elementOf(*only));
  device::Explanation explanation;
  device::ElementPath path =
      device::addLookups(explanation, file, settings::kNetworkSection, names);
  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  if (only != nullptr) path.pop_back();
  for (const Setting& setting : settings::cardSettings())
    if (only == nullptr || only == &setting)
      explanation.values.push_back(valueOf(file, path, setting));
  return explanation;
}

}  // namespace camcfg::tool::network
