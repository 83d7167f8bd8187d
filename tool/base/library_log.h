#ifndef CAMCFG_TOOL_BASE_LIBRARY_LOG_H
#define CAMCFG_TOOL_BASE_LIBRARY_LOG_H

#include <string>

namespace camcfg::tool {

/// From now on each record that the library logs is shown as one line.
/// @param print  prints a line on standard error
void showLibraryLog(void (*print)(const std::string& line));

/// The text of the last error or warning that the library logged, or was heard to print (see
/// library_console.h); empty if there was none.
std::string lastComplaint();

/// Keeps a text as the last complaint.
void recordComplaint(const std::string& text);

/// Forgets the last complaint, so that the next one is about what follows.
void forgetComplaint();

}  // namespace camcfg::tool

#endif
