#ifndef CAMCFG_TORTURE_TRACER_PROCESS_VIEW_H
#define CAMCFG_TORTURE_TRACER_PROCESS_VIEW_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace camcfg::torture {

/// The text at an address of a stopped process; empty if nothing can be read there.
std::string textAt(pid_t child, std::uint64_t address);

/// Where a link below "/proc/PROCESS" leads, "fd/3" or "root"; empty if there is no such link.
std::string linkOf(pid_t child, const std::string& name);

/// The position of a descriptor of a process, or of a thread, in its file.
std::size_t positionOf(pid_t thread, int descriptor);

}  // namespace camcfg::torture

#endif
