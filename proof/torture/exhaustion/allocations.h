#ifndef CAMCFG_TORTURE_EXHAUSTION_ALLOCATIONS_H
#define CAMCFG_TORTURE_EXHAUSTION_ALLOCATIONS_H

namespace camcfg::torture {

/// Blocks of memory that this process has allocated and not freed.
long liveBlocks();

/// Lets an allocation of this process fail, counted from 1 from now on, and perhaps all after it; 0
/// lets none fail.
void failAllocation(int allocation, bool andAllBehindIt);

/// Whether one has failed since then.
bool allocationFailed();

/// While an object of this class lives no allocation fails, nor is it counted as one that could: for
/// what is done around the library's own work.
class PlentyOfMemory {
 public:
  PlentyOfMemory();
  ~PlentyOfMemory();
  PlentyOfMemory(const PlentyOfMemory&) = delete;
  PlentyOfMemory& operator=(const PlentyOfMemory&) = delete;
};

/// Descriptors that this process has open.
int openDescriptors();

}  // namespace camcfg::torture

#endif
