#include "base/csv.h"

#include "base/concat.h"
#include "base/outcome.h"

namespace camcfg::tool {
namespace {

constexpr char kByteOrderMark[] = "\xef\xbb\xbf";

class Reader {
 public:
  explicit Reader(const std::string& text) : text_(text) {
    if (text_.rfind(kByteOrderMark, 0) == 0) at_ = sizeof kByteOrderMark - 1;
    const std::string first = text_.substr(at_, text_.find('\n', at_) - at_);
    const bool semicolons = first.find(',') == std::string::npos;
    if (semicolons && first.find(';') != std::string::npos) separator_ = ';';
  }

  std::vector<CsvRow> rows() {
    std::vector<CsvRow> rows;
    while (at_ < text_.size()) {
      CsvRow row = nextRow();
      if (row.cells.size() > 1 || !row.cells.front().empty()) rows.push_back(std::move(row));
    }
    return rows;
  }

 private:
  CsvRow nextRow() {
    CsvRow row{line_, {}};
    for (;;) {
      row.cells.push_back(text_[at_] == '"' ? quotedCell() : plainCell());
      if (at_ < text_.size() && text_[at_] == '\r') ++at_;
      if (at_ == text_.size()) return row;
      if (text_[at_++] != '\n') continue;
      ++line_;
      return row;
    }
  }

  bool atEndOfLine() const {
    return at_ == text_.size() || text_[at_] == '\n' || text_.compare(at_, 2, "\r\n") == 0;
  }

  std::string plainCell() {
    const std::size_t start = at_;
    while (!atEndOfLine() && text_[at_] != separator_) {
      if (text_[at_] == '"') refuse("a quote is inside a cell that has none around it");
      ++at_;
    }
    return text_.substr(start, at_ - start);
  }

  std::string quotedCell() {
    const std::size_t opened = line_;
    std::string cell;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == '"' && text_.compare(at_++, 2, "\"\"") != 0) {
        if (!atEndOfLine() && text_[at_] != separator_) refuse("a cell goes on after its quote");
        return cell;
      }
      if (text_[at_] == '\n') ++line_;
      cell += text_[at_];
    }
    line_ = opened;
    refuse("a quote is not closed");
  }

  [[noreturn]] void refuse(const char* why) const {
    throw Refusal(concat("line ", line_, ": ", why));
  }

  const std::string& text_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
  char separator_ = ',';
};

std::string quotedCell(const std::string& cell) {
  std::string text = "\"";
  for (const char c : cell) text += c == '"' ? "\"\"" : std::string(1, c);
  return text + "\"";
}

}  // namespace

std::vector<CsvRow> readCsv(const std::string& text) {
  return Reader(text).rows();
}

std::string csvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const bool plain = cells[i].find_first_of(",;\"\r\n") == std::string::npos;
    line += (i == 0 ? "" : ",") + (plain ? cells[i] : quotedCell(cells[i]));
  }
  return line + "\n";
}

}  // namespace camcfg::tool
