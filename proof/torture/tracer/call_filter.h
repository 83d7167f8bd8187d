#ifndef CAMCFG_TORTURE_TRACER_CALL_FILTER_H
#define CAMCFG_TORTURE_TRACER_CALL_FILTER_H

namespace camcfg::torture {

/// From now on the tracer of this process is told of the known system calls and those that flush, and
/// of no others; so are those of all programs that it becomes and starts.
/// @return false, with errno set, if the system does not permit that
bool filterKnownCalls();

/// From now on all that flushes returns at once, in this process and what it becomes and starts.
/// @return as above
bool filterFlushes();

}  // namespace camcfg::torture

#endif
