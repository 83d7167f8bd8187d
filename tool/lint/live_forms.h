#ifndef CAMCFG_TOOL_LINT_LIVE_FORMS_H
#define CAMCFG_TOOL_LINT_LIVE_FORMS_H

#include "lint/media_form.h"

namespace camcfg::tool::lint {

// The sections of the live media services, as their loaders read them.
const SectionForm& websocketForm();
const SectionForm& rtspForm();
const SectionForm& rtmpForm();
const SectionForm& ndiForm();
const SectionForm& srtForm();

}  // namespace camcfg::tool::lint

#endif
