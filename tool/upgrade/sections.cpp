#include "upgrade/sections.h"

#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/change.h"
#include "device/scratch.h"
#include "document/document.h"
#include "document/keyed.h"
#include "media/media.h"

namespace camcfg::tool::upgrade {
namespace {

using device::Section;
using document::CopiedSection;
using document::CopiedSections;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

// A section that has to become something else than it is in the new set.
struct Target {
  const Section* section;
  Json factory;
  Json merged;
};

bool isKeyed(const Json& records) {
  const char* key = document::keyOf({&records});
  return key != nullptr && *key != '\0';
}

// Why a section of the device cannot be merged; empty if it can.
std::string whyNotMerged(const CopiedSection& section) {
  if (!section.fault.empty()) return section.fault;
  return isKeyed(section.value) ? "" : "it has records with the same id, or without one";
}

// Puts an element of the device in the place of that of the new set.
void transplant(const XMLElement& section, XMLDocument& factory, const settings::Table& table) {
  XMLElement* top = factory.FirstChildElement(table.parent);
  if (top == nullptr) {
    top = factory.NewElement(table.parent);
    factory.InsertEndChild(top);
  }
  tinyxml2::XMLNode* clone = section.DeepClone(&factory);
  XMLElement* former = top->FirstChildElement(table.section);
  if (former == nullptr) {
    top->InsertEndChild(clone);
    return;
  }
  top->InsertAfterChild(former, clone);
  top->DeleteChild(former);
}

std::string madeOf(const std::string& path, const std::string& text,
                   const std::vector<Target>& targets) {
  if (targets.empty()) return text;
  const Json bytes = device::onScratchDevice({{path, text}}, [&] {
    for (const auto& [section, factory, merged] : targets)
      for (const device::Change& change : section->changes(factory, merged, false))
        if (!change.make() || !change.arrived(*device::requireDocument(path)))
          throw Refusal(change.what + ": the library does not write it as it is to be");
    return Json(device::bytesOf(path));
  });
  return bytes.text();
}

class SectionsOfFile {
 public:
  SectionsOfFile(const std::string& path, const Sides& sides, Merge& merge)
      : path_(path),
        merge_(merge),
        userText_(sides.user),
        factory_(device::parsed(sides.factory)),
        user_(device::parsed(sides.user)),
        ofFactory_(document::loadFrom({{path, sides.factory}})),
        ofUser_(document::loadFrom({{path, sides.user}})) {
    if (sides.base) ofBase_ = document::loadFrom({{path, *sides.base}});
  }

  std::string merged() {
    std::vector<Target> targets;
    for (const Section& section : document::allSections()) {
      if (section.path != path_) continue;
      const CopiedSection& user = ofUser_.at(section.name);
      const CopiedSection& factory = ofFactory_.at(section.name);
      if (section.table != nullptr && media::sectionIn(*user_, *section.table) == nullptr) {
        if (media::sectionIn(*factory_, *section.table) == nullptr) continue;
        merge_.add({kAdded,
                    section.name,
                    {},
                    factory.value,
                    {},
                    factory.value,
                    "the device has no such section"});
        continue;
      }
      std::string fault = whyNotMerged(user);
      if (fault.empty() && !factory.fault.empty())
        fault = "it stays, since the new factory set has none that can be read";
      if (!fault.empty()) {
        merge_.add({kUnmerged, section.name, {}, {}, {}, {}, fault});
        if (section.table == nullptr) return userText_;
        transplant(*media::sectionIn(*user_, *section.table), *factory_, *section.table);
        continue;
      }
      Json value = mergedOf(section.name, factory.value, user.value);
      if (section.table != nullptr) value = checked(*section.table, value, user.value);
      if (value != factory.value) targets.push_back({&section, factory.value, value});
    }
    return madeOf(path_, written(*factory_), targets);
  }

 private:
  Json mergedOf(const std::string& name, const Json& factory, const Json& user) {
    const auto base = ofBase_.find(name);
    const bool isThere = base != ofBase_.end() && whyNotMerged(base->second).empty();
    return merge_.value(name, isThere ? base->second.value : Json::array(), factory, user);
  }

  // Members that are fine each may not fit together: a source that is selected but not allowed.
  Json checked(const settings::Table& table, const Json& merged, const Json& user) {
    if (table.check == nullptr) return merged;
    const document::Keyed present(user, table.key);
    Json result = Json::array();
    for (const Json& record : merged) {
      const Json& own = present.at(record.at(table.key));
      const std::string place = document::placeOf(table.place, record.at(table.key));
      settings::Faults faults;
      if (record != own) table.check(settings::Node(record, place, faults));
      if (!faults.empty()) merge_.hold(place, own, faults.front().reason);
      if (faults.empty() || !own.is_null()) result.push_back(faults.empty() ? record : own);
    }
    return result;
  }

  const std::string& path_;
  Merge& merge_;
  const std::string& userText_;
  device::Document factory_;
  device::Document user_;
  CopiedSections ofBase_;
  CopiedSections ofFactory_;
  CopiedSections ofUser_;
};

}  // namespace

std::string mergeSections(const std::string& path, const Sides& sides, Merge& merge) {
  return SectionsOfFile(path, sides, merge).merged();
}

}  // namespace camcfg::tool::upgrade
