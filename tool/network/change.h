#ifndef CAMCFG_TOOL_NETWORK_CHANGE_H
#define CAMCFG_TOOL_NETWORK_CHANGE_H

#include <string>

#include "base/outcome.h"

namespace camcfg::tool::network {

/// Sets one field of the card of exactly this name.
/// @param name   the field, whatever its letters' case
/// @param force  stores an address, mask, domain or MTU that a card cannot use, as it is
/// @return what was changed: card, field, before, value
/// @throws Refusal  the files are unusable or cannot be written, there is no such card or field, the
///                  library's lookup would hit another one, or the value is not usable
Outcome setNetworkField(const std::string& card, const std::string& name, const std::string& value,
                        bool force);

/// Puts the factory values of a card back. A field without a usable one stays as it is.
/// @return what was changed: card, and each field that was with before and value
/// @throws Refusal  as above; or the library would change more than it should
Outcome resetCard(const std::string& name);

/// Sets the host name.
/// @param force  stores any text
/// @return what was changed: before, hostname
/// @throws Refusal  the files are unusable or cannot be written, or it is no host name
Outcome setHostname(const std::string& name, bool force);

}  // namespace camcfg::tool::network

#endif
