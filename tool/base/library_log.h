#ifndef CAMCFG_TOOL_BASE_LIBRARY_LOG_H
#define CAMCFG_TOOL_BASE_LIBRARY_LOG_H

#include <functional>
#include <string>

namespace camcfg::tool {

/// From now on each record that the library logs is shown as one line.
/// @param print  prints a line on standard error
void showLibraryLog(void (*print)(const std::string& line));

/// The text of the last error or warning that the library logged, or was heard to print; empty if there was none.
std::string lastComplaint();

/// Forgets the last complaint, so that the next one is about what follows.
void forgetComplaint();

/// Makes a call of a family that reports on standard output instead of in the log. The last error
/// that it prints, or else the last warning, becomes the last complaint; all that it prints is
/// passed on when it has returned.
/// @return the call's result
int heard(const std::function<int()>& call);

/// What is wrong by the lines that the library printed, "[LEVEL][CFG][FAMILY]: TEXT" each: the text
/// of the last error, else of the last warning, without the full stop; empty if there is neither.
std::string complaintIn(const std::string& printed);

}  // namespace camcfg::tool

#endif
