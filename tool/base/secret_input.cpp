#include "base/secret_input.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "base/outcome.h"

namespace camcfg::tool {
namespace {

constexpr std::size_t kMostBytes = 4096;

// While this object lives, a terminal hands out each key as it is pressed and shows none. Its own keys
// for editing a line, and those that end a program, which would leave it in that state, are ours then.
class HiddenTyping {
 public:
  HiddenTyping() : isTerminal_(tcgetattr(STDIN_FILENO, &former_) == 0) {
    if (!isTerminal_) return;
    termios hidden = former_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON | ISIG);
    hidden.c_cc[VMIN] = 1;
    hidden.c_cc[VTIME] = 0;
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
  bool isKey(char byte, int which) const {
    return isTerminal_ && static_cast<cc_t>(byte) == former_.c_cc[which];
  }

 private:
  termios former_{};
  bool isTerminal_;
};

// Without its last character.
void takeBack(std::string& text) {
  constexpr auto isContinued = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
  };
  while (!text.empty() && isContinued(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
}

// Byte by byte: what comes after the line may be for somebody else.
std::optional<char> nextByte() {
  char byte = 0;
  while (true) {
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count > 0) return byte;
    if (count == 0) return std::nullopt;
    if (errno != EINTR) throw Refusal(std::string("standard input: ") + std::strerror(errno));
  }
}

std::string line(const HiddenTyping& typing) {
  std::string text;
  while (true) {
    const std::optional<char> byte = nextByte();
    const bool isEnd = !byte || typing.isKey(*byte, VEOF);
    if (isEnd && text.empty()) throw Refusal("standard input has ended without a secret");
    if (isEnd || *byte == '\n') return text;
    if (typing.isKey(*byte, VINTR)) throw Refusal("interrupted; nothing was changed");
    if (typing.isKey(*byte, VERASE))
      takeBack(text);
    else if (typing.isKey(*byte, VKILL))
      text.clear();
    else
      text += *byte;
    if (text.size() > kMostBytes) throw Refusal("the secret on standard input is too long");
  }
}

}  // namespace

std::string readSecret(const std::string& what) {
  const HiddenTyping typing;
  if (typing.isTerminal()) std::fprintf(stderr, "%s: ", what.c_str());
  return line(typing);
}

}  // namespace camcfg::tool
