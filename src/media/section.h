#ifndef CAMCFG_MEDIA_SECTION_H
#define CAMCFG_MEDIA_SECTION_H

#include <list>
#include <new>

#include "media/live_document.h"
#include "media/media_entries.h"

namespace camcfg {

/// Whether a section that a dumper has rewritten is saved.
enum class Ending { Save, DiscardAndStayLocked };

/// One section of the live media services, whose entries are read and written as records.
template <typename Record>
struct Section {
  const char* name;
  const char* entry;          ///< name of the elements that hold a record
  const char* unknownsPlace;  ///< where warnings say that other elements are
  bool (*read)(const tinyxml2::XMLElement& entry, Record& record);
  void (*write)(tinyxml2::XMLElement& section, const Record& record);
  Ending ending = Ending::Save;
};

/// The first element of one name among an element and its followers; warns of those before it,
/// which it skips.
const tinyxml2::XMLElement* supportedFrom(const tinyxml2::XMLElement* element, const char* name,
                                          const char* unknownsPlace);

/// Ends a load or a dump whose section was processed without a fault.
/// @return what the family's call returns
std::int32_t finishLoad(const char* section);
std::int32_t finishDump(const char* section, Ending ending);

/// Replaces the list by the records of a section. On a fault, which `read` has reported, the
/// records before it stay in the list.
template <typename Record>
std::int32_t load(const Section<Record>& section, std::list<Record>& records) try {
  const tinyxml2::XMLElement* element = kLiveMedia.open(section.name, BU_TRUE);
  if (element == nullptr) return CFG_LM_ERR;
  records.clear();
  element = element->FirstChildElement();
  while ((element = supportedFrom(element, section.entry, section.unknownsPlace)) != nullptr) {
    std::list<Record> one(1);
    // Deliberate: on a fault the document stays open, until the next open or close.
    // [fault-leaves-open]
    if (!section.read(*element, one.front())) return CFG_LM_ERR;
    records.splice(records.end(), one);
    element = element->NextSiblingElement();
  }
  return finishLoad(section.name);
} catch (const std::bad_alloc&) {
  return kLiveMedia.giveUp(BU_TRUE);
}

/// Replaces the records of a section, and whatever else is in it, by the list.
template <typename Record>
std::int32_t dump(const Section<Record>& section, const std::list<Record>& records) try {
  tinyxml2::XMLElement* element = kLiveMedia.open(section.name, BU_FALSE);
  if (element == nullptr) return CFG_LM_ERR;
  element->DeleteChildren();
  for (const Record& record : records) section.write(*element, record);
  return finishDump(section.name, section.ending);
} catch (const std::bad_alloc&) {
  return kLiveMedia.giveUp(BU_FALSE);
}

}  // namespace camcfg

#endif
