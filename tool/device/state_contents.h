#ifndef CAMCFG_TOOL_DEVICE_STATE_CONTENTS_H
#define CAMCFG_TOOL_DEVICE_STATE_CONTENTS_H

#include <optional>
#include <string>

#include "device/state_folder.h"

namespace camcfg::tool::device {

// What files held or are to hold is kept in "/cfg1/.camcfg/contents", each once however many changes
// have to do with it: the name of a file there is the SHA-256 of its bytes.

inline constexpr char kContents[] = "contents";

/// The most bytes that a file may have that is kept or compared; no settings come near.
inline constexpr std::size_t kMostBytes = std::size_t{64} << 20;

/// The SHA-256 of bytes, in hexadecimal digits.
std::string hashOf(const std::string& bytes);

/// Whether a text can be the name of contents.
bool isHash(const std::string& text);

/// Makes sure that contents are kept under their hash. They are not on the medium yet. False, with
/// errno set, when that failed.
bool keepContents(const StateFolder& state, const std::string& hash, const std::string& bytes);

/// The contents of a name; none if they are missing or damaged.
std::optional<std::string> contentsOf(const StateFolder& state, const std::string& hash);

}  // namespace camcfg::tool::device

#endif
