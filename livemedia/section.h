#ifndef CAMCFG_LIVEMEDIA_SECTION_H
#define CAMCFG_LIVEMEDIA_SECTION_H

#include <list>
#include <utility>

#include "livemedia/document.h"
#include "support/media_entries.h"

namespace camcfg {

/// What becomes of a section once a dumper has rewritten it.
enum class Ending { Save, DiscardAndStayLocked };

/// One section of the live media services, whose entries are read and written as records.
template <typename Record>
struct Section {
  const char* name;
  const char* entry;          ///< name of the elements that hold a record
  const char* unknownsPlace;  ///< where warnings say that other elements stand
  bool (*read)(const tinyxml2::XMLElement& entry, Record& record);
  void (*write)(tinyxml2::XMLElement& section, const Record& record);
  Ending ending = Ending::Save;
};

/// Replaces the list by the records of a section. Over a fault, which `read` has reported, the
/// records before it stay in the list.
template <typename Record>
std::int32_t load(const Section<Record>& section, std::list<Record>& records) {
  return kLiveMedia.read(section.name, [&](const tinyxml2::XMLElement& element) {
    records.clear();
    const auto readRecord = [&](const tinyxml2::XMLElement& entry) {
      Record record;
      if (!section.read(entry, record)) return false;
      records.push_back(std::move(record));
      return true;
    };
    // Deliberate: over a fault the document stays open, until the next open or close.
    // [fault-leaves-open]
    if (!readEntries(element, section.entry, readRecord, warnUnsupported(section.unknownsPlace)))
      return CFG_LM_ERR;
    kLiveMedia.closeRead();
    kLiveMedia.print(kInfo, "Load %s Config success.\n", section.name);
    return 0;
  });
}

/// Replaces the records of a section, and whatever else stands in it, by the list.
template <typename Record>
std::int32_t dump(const Section<Record>& section, const std::list<Record>& records) {
  return kLiveMedia.edit(section.name, [&](tinyxml2::XMLElement& element) {
    element.DeleteChildren();
    for (const Record& record : records) section.write(element, record);
    if (section.ending == Ending::DiscardAndStayLocked)
      kLiveMedia.closeRead();
    else if (kLiveMedia.closeWrite() != 0)
      return CFG_LM_ERR;
    kLiveMedia.print(kInfo, "Update %s Config success.\n", section.name);
    return 0;
  });
}

}  // namespace camcfg

#endif
