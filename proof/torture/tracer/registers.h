#ifndef CAMCFG_TORTURE_TRACER_REGISTERS_H
#define CAMCFG_TORTURE_TRACER_REGISTERS_H

#include <sys/types.h>

#include <cstddef>

namespace camcfg::torture {

/// At the start of a system call: lets the kernel make none in its place.
void skipCall(pid_t child);

/// At the start of a system call: replaces one of its arguments, counted from 0.
void replaceArgument(pid_t child, int argument, std::size_t value);

/// At the end of a system call: lets it return an error.
void returnError(pid_t child, int error);

}  // namespace camcfg::torture

#endif
