#include "torture/harness/table.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace camcfg::torture {
namespace {

bool isNumber(const std::string& cell) {
  return !cell.empty() && std::isdigit(static_cast<unsigned char>(cell.front())) != 0;
}

std::string padded(const std::string& cell, std::size_t width) {
  const std::string space(width - cell.size(), ' ');
  return isNumber(cell) ? space + cell : cell + space;
}

}  // namespace

void Table::print(const std::string& title) const {
  std::vector<std::size_t> widths(rows_.front().size(), 3);
  for (const auto& row : rows_)
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());

  std::printf("%s\n\n", title.c_str());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i)
      std::printf("| %s ", padded(row[i], widths[i]).c_str());
    std::printf("|\n");
    if (&row != &rows_.front()) continue;
    for (const std::size_t width : widths) std::printf("|%s", std::string(width + 2, '-').c_str());
    std::printf("|\n");
  }
  std::printf("\n");
  std::fflush(stdout);
}

void Faults::add(const std::string& what) {
  constexpr int kTold = 40;
  ++count_;
  if (count_ <= kTold) std::fprintf(stderr, "WRONG: %s\n", what.c_str());
  if (count_ == kTold) std::fprintf(stderr, "(more are counted and not printed)\n");
}

int Faults::conclude(const char* program) const {
  std::printf("%s: %s (%d wrong)\n\n", program, count_ == 0 ? "passed" : "FAILED", count_);
  std::fflush(stdout);
  return count_ == 0 ? 0 : 1;
}

}  // namespace camcfg::torture
