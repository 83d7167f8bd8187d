#ifndef CAMCFG_TOOL_SETTINGS_ADDRESS_H
#define CAMCFG_TOOL_SETTINGS_ADDRESS_H

#include <string>

namespace camcfg::tool::settings {

// Each says why a network cannot use a text; empty if it can. The library itself stores any text.

/// The address of a host: four decimal numbers, neither 0.x, loopback, multicast nor broadcast.
std::string whyNotAnAddress(const std::string& text);

/// The same, or the empty text.
std::string whyNotAnOptionalAddress(const std::string& text);

/// The address of a name server: also of one on the device itself, or the empty text.
std::string whyNotAServer(const std::string& text);

/// A netmask whose set bits are all at the beginning.
std::string whyNotAMask(const std::string& text);

/// Domains with spaces between them, or the empty text.
std::string whyNotDomains(const std::string& text);

/// A host name of RFC 1123: labels of up to 63 letters, digits and inner hyphens, 253 in all.
std::string whyNotAHostname(const std::string& text);

}  // namespace camcfg::tool::settings

#endif
