#ifndef CAMCFG_TORTURE_EXHAUSTION_OPERATIONS_H
#define CAMCFG_TORTURE_EXHAUSTION_OPERATIONS_H

#include <string>
#include <vector>

namespace camcfg::torture {

/// When a call may return either of its results, whatever was short.
enum class Either {
  Never,           ///< failure if its file was not loaded, success otherwise
  AfterFirstLoad,  ///< loads its file more than once, or does more that may fail
  Always,          ///< goes on with other files when one cannot be loaded
};

/// One exported function, called so that it succeeds on the sample set.
struct Operation {
  std::string name;  ///< the function's, perhaps followed by a remark in brackets
  const char* file;  ///< the file that it works on, under its name in "/cfg0" or a whole path
  int (*run)();
  int success = 0;
  int failure = -1;  ///< the same as success where failing shows only in the log
  bool writes = false;
  Either either = Either::Never;
  bool leavesLocked = false;  ///< as stated of it when it succeeds
};

/// Every exported function that touches files.
std::vector<Operation> operations();

/// Those of the stream and live media families.
std::vector<Operation> mediaOperations();

/// Names of exported functions, of those listed in `symbols` (a file, one mangled name a line),
/// that are neither among the operations nor known to touch no file.
std::vector<std::string> functionsLeftOut(const std::string& symbols);

}  // namespace camcfg::torture

#endif
