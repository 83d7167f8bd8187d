#ifndef CAMCFG_TORTURE_TRACER_KNOWN_CALLS_H
#define CAMCFG_TORTURE_TRACER_KNOWN_CALLS_H

#include <cstddef>
#include <vector>

namespace camcfg::torture {

enum class CallKind { Open, Read, Write, Copy, Close, Status, Position, List, Change };

/// Which of a system call's arguments name its file; -1 for an argument that it does not have.
struct KnownCall {
  long number;
  const char* name;
  CallKind kind;
  int directory = -1;    ///< descriptor that a relative path begins at
  int path = -1;         ///< path
  int descriptor = -1;   ///< descriptor of the file, the one written to if there are two
  int size = -1;         ///< bytes that are to be moved
  int flags = -1;        ///< flags of an opening
  int toDirectory = -1;  ///< descriptor that the relative path of a new name begins at
  int toPath = -1;       ///< path of a new name
};

/// The system call of this number if it is one that works on files.
const KnownCall* findKnownCall(long number);

/// The numbers of all of them.
std::vector<long> knownNumbers();

}  // namespace camcfg::torture

#endif
