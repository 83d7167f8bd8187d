#ifndef CAMCFG_TESTS_TOOL_UNREAD_PIPE_H
#define CAMCFG_TESTS_TOOL_UNREAD_PIPE_H

#include <unistd.h>

#include <csignal>

namespace camcfg::tests {

/// For a child process: what it writes to a descriptor goes into a pipe that nobody reads.
inline void leaveAPipeUnread(int descriptor) {
  int ends[2];
  if (pipe(ends) != 0) _exit(1);
  dup2(ends[1], descriptor);
  close(ends[0]);
  close(ends[1]);
  // Whoever started the tests may have had it ignored.
  std::signal(SIGPIPE, SIG_DFL);
}

}  // namespace camcfg::tests

#endif
