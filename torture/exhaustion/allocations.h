#ifndef CAMCFG_TORTURE_EXHAUSTION_ALLOCATIONS_H
#define CAMCFG_TORTURE_EXHAUSTION_ALLOCATIONS_H

namespace camcfg::torture {

/// Blocks of memory that this process has allocated and not freed.
long liveBlocks();

/// Descriptors that this process has open.
int openDescriptors();

}  // namespace camcfg::torture

#endif
