#ifndef CAMCFG_TOOL_REPORT_IDENTITY_H
#define CAMCFG_TOOL_REPORT_IDENTITY_H

#include <string>

namespace camcfg::tool::report {

// What in a text shows whose device it is about. Lengths are 0 if there is nothing of the kind.

/// Whether names that contain this character do not end at it.
bool isWordCharacter(char c);
bool startsWord(const std::string& text, std::size_t at);

/// Netmasks, and addresses that every device has.
bool isCommon(const std::string& address);

/// Whether a text in a setting names a machine or a person, somebody's network or a thing in it.
bool isNaming(const std::string& setting, const std::string& text);

/// How long the IPv4, IPv6 or hardware address at a place is; 0 for common ones.
std::size_t lengthOfAddress(const std::string& text, std::size_t at);

/// How long the url is that begins at a place.
std::size_t lengthOfUrl(const std::string& text, std::size_t at);

}  // namespace camcfg::tool::report

#endif
