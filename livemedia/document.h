#ifndef CAMCFG_LIVEMEDIA_DOCUMENT_H
#define CAMCFG_LIVEMEDIA_DOCUMENT_H

#include "camcfg/livemedia.h"
#include "support/media_document.h"

namespace camcfg {

inline constexpr MediaDocument kLiveMedia(g_LM_xmlDoc, "LiveMediaService", "LiveMedia", CFG_LM_ERR);

/// Passes over an element with a warning that names it and the place where it was found.
inline auto warnUnsupported(const char* place) {
  return [place](const tinyxml2::XMLElement& element) {
    kLiveMedia.print(kWarning, "Un-support element <%s> at %s, ignored.\n", element.Name(), place);
  };
}

}  // namespace camcfg

#endif
