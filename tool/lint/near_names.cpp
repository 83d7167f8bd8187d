#include "lint/near_names.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

constexpr std::size_t kShortest = 6;  // of names that may differ by a letter: Rtmp is not Rtsp

std::size_t commonBeginning(std::string_view a, std::string_view b) {
  std::size_t length = 0;
  while (length < a.size() && length < b.size() &&
         isSameWord(a.substr(length, 1), b.substr(length, 1)))
    ++length;
  return length;
}

std::size_t commonEnd(std::string_view a, std::string_view b) {
  std::size_t length = 0;
  while (length < a.size() && length < b.size() &&
         isSameWord(a.substr(a.size() - length - 1, 1), b.substr(b.size() - length - 1, 1)))
    ++length;
  return length;
}

bool hasDigit(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

// A letter more, less or another, or two that are swapped.
bool isOneEdit(std::string_view a, std::string_view b) {
  const std::size_t same = commonBeginning(a, b);
  a.remove_prefix(same);
  b.remove_prefix(same);
  const std::size_t end = commonEnd(a, b);
  a.remove_suffix(end);
  b.remove_suffix(end);
  if (hasDigit(a) || hasDigit(b)) return false;
  if (a.size() == 2 && b.size() == 2)
    return isSameWord(a.substr(0, 1), b.substr(1)) && isSameWord(a.substr(1), b.substr(0, 1));
  return a.size() <= 1 && b.size() <= 1;
}

// Parameters may have any name, also that of a section.
bool isWrapped(const XMLElement& element) {
  const bool hasOwn = has(element, "Cur") || has(element, "Id") || has(element, "Val");
  const bool isEmptyList = std::string_view(element.Name()) == "PresetCfg";
  return isKnownTop(element.Name()) && !hasOwn &&
         (isEmptyList || element.FirstChildElement() != nullptr);
}

}  // namespace

bool isNearMiss(std::string_view name, std::string_view meant) {
  if (name == meant) return false;
  if (isSameWord(name, meant)) return true;
  if (name.size() == meant.size() + 1 && isSameWord(name.substr(0, meant.size()), meant) &&
      isSameWord(name.substr(meant.size()), "s"))
    return true;
  return meant.size() >= kShortest && isOneEdit(name, meant);
}

void addNearName(const XMLElement& element, std::string_view meant, Findings& findings) {
  findings.add(kNearName, element,
               concat(tag(element.Name()), " is not read: readers look for ", tag(meant)));
}

bool isKnownTop(std::string_view name) {
  return isAmong(kTops, name);
}

const XMLElement* nearChild(const XMLNode& parent, std::string_view meant,
                            bool (*isKnown)(std::string_view name)) {
  const XMLElement* nearest = nullptr;
  for (const XMLElement* child : childrenOf(parent)) {
    if (child->Name() == meant) return nullptr;
    if (nearest == nullptr && isNearMiss(child->Name(), meant) && !isKnown(child->Name()))
      nearest = child;
  }
  return nearest;
}

const XMLElement* nearNetwork(const XMLDocument& document) {
  return nearChild(document, settings::kNetworkSection, isKnownTop);
}

const XMLElement* wrapperIn(const XMLDocument& document) {
  const XMLElement* wrapper = nullptr;
  for (const XMLElement* top : childrenOf(document)) {
    if (isKnownTop(top->Name())) return nullptr;
    const Elements inner = childrenOf(*top);
    if (wrapper == nullptr &&
        std::any_of(inner.begin(), inner.end(),
                    [](const XMLElement* element) { return isWrapped(*element); }))
      wrapper = top;
  }
  return wrapper;
}

}  // namespace camcfg::tool::lint
