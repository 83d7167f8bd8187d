#ifndef CAMCFG_TORTURE_POWER_START_UP_H
#define CAMCFG_TORTURE_POWER_START_UP_H

#include <array>
#include <string>
#include <vector>

#include "torture/harness/device.h"

namespace camcfg::torture {

/// What a device does with its files when it starts.
enum class StartUp {
  Verification,  ///< CFG_VerifyFileFormat()
  Resync,        ///< the tool's `verify --resync`
};

inline constexpr std::array<StartUp, 2> kStartUps = {StartUp::Verification, StartUp::Resync};

const char* wordFor(StartUp startUp);

/// The tool's command line for a device.
std::vector<std::string> resyncCommand(const Device& device);

/// Starts the device once.
void start(const Device& device, StartUp startUp);

}  // namespace camcfg::torture

#endif
