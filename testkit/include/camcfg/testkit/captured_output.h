/// @file
/// Captures what is printed on standard output and standard error.
#ifndef CAMCFG_TESTKIT_CAPTURED_OUTPUT_H
#define CAMCFG_TESTKIT_CAPTURED_OUTPUT_H

#include <functional>
#include <string>

namespace camcfg {
namespace testkit {

/// Runs something and returns all that it, and any child it started, printed on standard output
/// meanwhile. Compare the text afterwards: a failed expectation inside would be captured as well.
std::string captureOutput(const std::function<void()>& run);

/// The same of standard error.
std::string captureErrors(const std::function<void()>& run);

}  // namespace testkit
}  // namespace camcfg

#endif
