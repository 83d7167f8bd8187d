#include "cli/shell_line.h"

#include <cctype>
#include <cstring>
#include <utility>

namespace camcfg::tool::cli {
namespace {

bool isOneOf(char c, const char* characters) {
  return c != '\0' && std::strchr(characters, c) != nullptr;
}

class Reader {
 public:
  explicit Reader(std::string breaks) : breaks_(std::move(breaks)) {}

  void take(char c) {
    if (escaped_)
      takeEscaped(c);
    else if (c == '\\' && line_.quote != '\'')
      escaped_ = true;
    else if (line_.quote != 0)
      takeQuoted(c);
    else if (isOneOf(c, "'\""))
      open(c);
    else if (isOneOf(c, " \t\n"))
      endWord();
    else
      takePlain(c);
  }

  ShellLine end() {
    if (line_.quote != 0) line_.kept = beforeQuote_;
    line_.words.push_back(word_);
    return line_;
  }

 private:
  // Between double quotes, a backslash is taken for itself before most characters.
  void takeEscaped(char c) {
    if (line_.quote == '"' && !isOneOf(c, "$`\"\\")) word_ += '\\';
    word_ += c;
    begun_ = true;
    escaped_ = false;
  }

  void takeQuoted(char c) {
    if (c == line_.quote)
      line_.quote = 0;
    else
      word_ += c;
  }

  void open(char quote) {
    line_.quote = quote;
    beforeQuote_ = word_;
    begun_ = true;
  }

  void takePlain(char c) {
    word_ += c;
    begun_ = true;
    if (breaks_.find(c) != std::string::npos) line_.kept = word_;
  }

  void endWord() {
    if (begun_) line_.words.push_back(word_);
    word_.clear();
    line_.kept.clear();
    begun_ = false;
  }

  std::string breaks_;
  ShellLine line_;
  std::string word_;
  std::string beforeQuote_;
  bool begun_ = false;
  bool escaped_ = false;
};

bool isPlain(char c) {
  return static_cast<unsigned char>(c) >= 0x80 ||
         std::isalnum(static_cast<unsigned char>(c)) != 0 || isOneOf(c, "_./,:=@%+-");
}

}  // namespace

ShellLine readShellLine(const std::string& line, const std::string& breaks) {
  Reader reader(breaks);
  for (const char c : line) reader.take(c);
  return reader.end();
}

std::string shellQuoted(const std::string& text, char quote) {
  std::string result;
  for (const char c : text) {
    if (quote == '\'' && c == '\'')
      result += "'\\'";
    else if (quote == '"' ? isOneOf(c, "$`\"\\") : quote == 0 && !isPlain(c))
      result += '\\';
    result += c;
  }
  return result;
}

}  // namespace camcfg::tool::cli
