#ifndef CAMCFG_TORTURE_TRACER_REGISTERS_H
#define CAMCFG_TORTURE_TRACER_REGISTERS_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace camcfg::torture {

/// At the start of a system call: lets the kernel make none in its place.
void skipCall(pid_t child);

/// At the start of a system call: replaces one of its arguments, counted from 0.
void replaceArgument(pid_t child, int argument, std::size_t value);

/// At the end of a system call: lets it return an error.
void returnError(pid_t child, int error);

/// At the end of a system call: what it returns.
std::int64_t returnedBy(pid_t child);

}  // namespace camcfg::torture

#endif
