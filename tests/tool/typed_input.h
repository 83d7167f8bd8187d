#ifndef CAMCFG_TESTS_TOOL_TYPED_INPUT_H
#define CAMCFG_TESTS_TOOL_TYPED_INPUT_H

#include <unistd.h>

#include <functional>
#include <string>

namespace camcfg::tests {

/// For a child process: standard input has these bytes and no more. They fit into a pipe.
inline std::function<void()> withInput(const std::string& bytes) {
  return [bytes] {
    int ends[2];
    if (pipe(ends) != 0) _exit(1);
    if (write(ends[1], bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) _exit(1);
    close(ends[1]);
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
  };
}

}  // namespace camcfg::tests

#endif
