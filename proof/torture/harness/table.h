#ifndef CAMCFG_TORTURE_HARNESS_TABLE_H
#define CAMCFG_TORTURE_HARNESS_TABLE_H

#include <string>
#include <vector>

namespace camcfg::torture {

/// A table as Markdown has it, so that it can be pasted into a document as it is printed.
class Table {
 public:
  explicit Table(std::vector<std::string> head) : rows_{std::move(head)} {}

  template <typename... Cells>
  void row(const Cells&... cells) {
    rows_.push_back({text(cells)...});
  }

  /// Prints a heading line, the table and an empty line on standard output.
  void print(const std::string& title) const;

 private:
  static std::string text(const std::string& cell) { return cell; }
  static std::string text(const char* cell) { return cell; }
  template <typename Number>
  static std::string text(Number cell) {
    return std::to_string(cell);
  }

  std::vector<std::vector<std::string>> rows_;
};

/// Counts what a program found wrong and prints it, up to a number of lines, on standard error.
class Faults {
 public:
  void add(const std::string& what);
  int count() const { return count_; }

  /// What `main` returns: 0 or 1; says on standard output which.
  int conclude(const char* program) const;

 private:
  int count_ = 0;
};

}  // namespace camcfg::torture

#endif
