#include "base/secret_input.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "base/outcome.h"

namespace camcfg::tool {
namespace {

constexpr std::size_t kMostBytes = 4096;
constexpr char kInterrupt = 3;

// While this object lives, a terminal neither shows what is typed nor ends the tool by Ctrl-C, which
// would leave it in that state.
class HiddenTyping {
 public:
  HiddenTyping() : isTerminal_(tcgetattr(STDIN_FILENO, &former_) == 0) {
    if (!isTerminal_) return;
    termios hidden = former_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenTyping() {
    if (!isTerminal_) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &former_);
    std::fputc('\n', stderr);
  }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;

  bool isTerminal() const { return isTerminal_; }

 private:
  termios former_{};
  bool isTerminal_;
};

// Byte by byte: what comes after the line may be for somebody else.
std::string line(bool isTerminal) {
  std::string text;
  char byte = 0;
  while (true) {
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Refusal(std::string("standard input: ") + std::strerror(errno));
    if (count == 0 && text.empty()) throw Refusal("standard input has ended without a secret");
    if (count == 0 || byte == '\n') return text;
    if (isTerminal && byte == kInterrupt) throw Refusal("interrupted; nothing was changed");
    if (text.size() == kMostBytes) throw Refusal("the secret on standard input is too long");
    text += byte;
  }
}

}  // namespace

std::string readSecret(const std::string& what) {
  const HiddenTyping hidden;
  if (hidden.isTerminal()) std::fprintf(stderr, "%s: ", what.c_str());
  return line(hidden.isTerminal());
}

}  // namespace camcfg::tool
