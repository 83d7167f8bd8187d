#include "media/section.h"

#include <new>

namespace camcfg {

using tinyxml2::XMLElement;

namespace {

bool holdsRecord(const XMLElement& element, const Entries& entries) {
  for (const auto& name : entries.names)
    if (isWord(element.Name(), name)) return true;
  return false;
}

void reportOther(const MediaDocument& document, const XMLElement& element, const Entries& entries) {
  if (entries.others == Others::Skipped)
    document.print(kWarning, "Un-Support node <%s> by %s, Skip.\n", element.Name(), entries.place);
  if (entries.others == Others::Ignored)
    document.print(kWarning, "Un-support element <%s> at %s, ignored.\n", element.Name(),
                   entries.place);
}

std::int32_t succeed(const MediaDocument& document, const Rules& rules, const char* message) {
  if (rules.success == Success::Printed) document.print(kInfo, message, rules.section);
  return 0;
}

std::int32_t failOn(const MediaDocument& document, AfterFault afterFault) {
  // Deliberate: most services leave the document open on a fault, until the next open or close.
  // [fault-leaves-open]
  if (afterFault == AfterFault::Closed) document.closeRead();
  return document.failure();
}

}  // namespace

const XMLElement* entryFrom(const MediaDocument& document, const XMLElement* element,
                            const Entries& entries) {
  while (element != nullptr && !holdsRecord(*element, entries)) {
    reportOther(document, *element, entries);
    element = element->NextSiblingElement();
  }
  return element;
}

std::int32_t loadList(const MediaDocument& document, const Rules& rules, void (*clear)(void* list),
                      bool (*read)(const XMLElement& entry, void* list), void* list) try {
  if (rules.emptied == Emptied::BeforeOpening) clear(list);
  const XMLElement* element = document.open(rules.section, BU_TRUE);
  if (element == nullptr) return document.failure();
  clear(list);
  element = element->FirstChildElement();
  while ((element = entryFrom(document, element, rules.entries)) != nullptr) {
    if (!read(*element, list)) return failOn(document, rules.afterFault);
    element = element->NextSiblingElement();
  }
  document.closeRead();
  return succeed(document, rules, "Load %s Config success.\n");
} catch (const std::bad_alloc&) {
  return document.giveUp(BU_TRUE);
}

std::int32_t dumpList(const MediaDocument& document, const Rules& rules,
                      void (*write)(EntryWriter& section, const void* list), const void* list) try {
  XMLElement* section = document.open(rules.section, BU_FALSE);
  if (section == nullptr) return document.failure();
  EntryWriter writer(*section);
  write(writer, list);
  writer.end();
  if (rules.ending == Ending::DiscardAndStayLocked)
    document.closeRead();
  else if (document.closeWrite() != 0)
    return document.failure();
  return succeed(document, rules, "Update %s Config success.\n");
} catch (const std::bad_alloc&) {
  return document.giveUp(BU_FALSE);
}

}  // namespace camcfg
