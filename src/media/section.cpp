#include "media/section.h"

namespace camcfg {

using tinyxml2::XMLElement;

const XMLElement* supportedFrom(const XMLElement* element, const char* name,
                                const char* unknownsPlace) {
  while (element != nullptr && !isWord(element->Name(), name)) {
    kLiveMedia.print(kWarning, "Un-support element <%s> at %s, ignored.\n", element->Name(),
                     unknownsPlace);
    element = element->NextSiblingElement();
  }
  return element;
}

std::int32_t finishLoad(const char* section) {
  kLiveMedia.closeRead();
  kLiveMedia.print(kInfo, "Load %s Config success.\n", section);
  return 0;
}

std::int32_t finishDump(const char* section, Ending ending) {
  if (ending == Ending::DiscardAndStayLocked)
    kLiveMedia.closeRead();
  else if (kLiveMedia.closeWrite() != 0)
    return CFG_LM_ERR;
  kLiveMedia.print(kInfo, "Update %s Config success.\n", section);
  return 0;
}

}  // namespace camcfg
