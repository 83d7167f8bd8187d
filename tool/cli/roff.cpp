#include "cli/roff.h"

#include <sstream>

namespace camcfg::tool::cli {
namespace {

struct Escape {
  char character;
  const char* written;
};
constexpr Escape kEscapes[] = {{'\\', "\\e"},  {'-', "\\-"},   {'\'', "\\(aq"}, {'"', "\\(dq"},
                               {'`', "\\(ga"}, {'^', "\\(ha"}, {'~', "\\(ti"}};

std::string escaped(char c) {
  for (const Escape& escape : kEscapes)
    if (c == escape.character) return escape.written;
  return {c};
}

// Text that roff fills, or lines that it leaves alone, under the macros that belong to them.
class Paragraphs {
 public:
  void add(const std::string& line) {
    if (line.empty()) {
      gap_ = true;
      return;
    }
    const bool stands = line.front() == ' ';
    if (stands != stands_)
      change(stands);
    else if (gap_ && !text_.empty())
      text_ += stands ? "\n" : ".PP\n";
    gap_ = false;
    text_ += stands ? roffText(line.substr(kIndent)) + "\n" : filled(line);
  }
  std::string end() {
    if (stands_) change(false);
    return text_;
  }

 private:
  static constexpr std::size_t kIndent = 2;  // of the lines that stay as they are; .RS has its own
  static constexpr std::size_t kWidth = 80;  // of a line of input, which escapes make longer

  void change(bool stands) {
    text_ += !stands ? ".fi\n.RE\n" : gap_ && !text_.empty() ? ".PP\n" : "";
    text_ += stands ? ".RS 2\n.nf\n" : gap_ ? ".PP\n" : "";
    stands_ = stands;
  }

  static std::string filled(const std::string& line) {
    std::string text;
    std::size_t width = 0;
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      const std::string shown = roffText(word);
      const bool fits = width + 1 + shown.size() <= kWidth;
      if (!text.empty()) text += fits ? " " : "\n";
      width = fits ? width + 1 + shown.size() : shown.size();
      text += shown;
    }
    return text + "\n";
  }

  std::string text_;
  bool stands_ = false;
  bool gap_ = false;
};

}  // namespace

std::string roffText(const std::string& text) {
  std::string result;
  for (const char c : text) result += escaped(c);
  return !text.empty() && text.front() == '.' ? "\\&" + result : result;
}

std::string roffBold(const std::string& text) {
  return "\\fB" + roffText(text) + "\\fR";
}

std::string roffItalic(const std::string& text) {
  return "\\fI" + roffText(text) + "\\fR";
}

std::string roffParagraphs(const std::string& text) {
  Paragraphs paragraphs;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) paragraphs.add(line);
  return paragraphs.end();
}

}  // namespace camcfg::tool::cli
