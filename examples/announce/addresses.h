// The part of the application "announce" that is worth a test: where the device's streams are found.
#ifndef ANNOUNCE_ADDRESSES_H
#define ANNOUNCE_ADDRESSES_H

#include <string>
#include <vector>

/// The RTSP addresses of a device, one for each media group, by the settings of the card given
/// (beginning of its name; "" for the first). Empty when the settings cannot be read.
std::vector<std::string> rtspAddresses(const std::string& card);

#endif
