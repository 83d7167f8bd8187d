#ifndef CAMCFG_TORTURE_TRACER_CALL_FILTER_H
#define CAMCFG_TORTURE_TRACER_CALL_FILTER_H

namespace camcfg::torture {

/// Which system calls a tracer is told of.
enum class Attention {
  Changes,    ///< those that may change files, and those that flush
  EveryCall,  ///< all that are known
};

/// From now on the tracer of this process is told of these system calls and of no others; so is that
/// of all programs that it becomes and starts.
/// @return false, with errno set, if the system does not permit that
bool filterCalls(Attention attention);

/// From now on all that flushes returns at once, in this process and what it becomes and starts.
/// @return as above
bool filterFlushes();

}  // namespace camcfg::torture

#endif
