#ifndef CAMCFG_TORTURE_TRACER_CALL_FILTER_H
#define CAMCFG_TORTURE_TRACER_CALL_FILTER_H

namespace camcfg::torture {

/// Which system calls a tracer sees.
enum class Attention {
  Changes,    ///< those that may change files, and those that flush
  EveryCall,  ///< all that are known
};

/// From now on the tracer of this process sees these system calls and no others; so does that of all
/// programs that it becomes and starts.
/// @return false, with errno set, if the system does not permit that
bool filterCalls(Attention attention);

/// From now on all that flushes returns at once, in this process and what it becomes and starts.
/// @return as above
bool filterFlushes();

}  // namespace camcfg::torture

#endif
