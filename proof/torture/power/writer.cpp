#include "torture/power/writer.h"

#include <algorithm>

namespace camcfg::torture {

std::vector<Step> stepsOf(const MakeChild& make, std::size_t most) {
  std::vector<Step> steps;
  std::size_t left = most;
  make()->run([&](const FileCall& call) {
    if (!call.writes) return Verdict{};
    if (call.known->kind == CallKind::Open) left = most;
    const std::size_t size = std::min(call.size, left);
    steps.push_back({call.known->name, call.path, size});
    left -= size;
    return Verdict{};
  });
  return steps;
}

bool cutAt(const MakeChild& make, const Cut& cut) {
  const auto child = make();
  int step = 0;
  bool reached = false;
  child->run([&](const FileCall& call) {
    if (!call.writes || step++ != cut.step) return Verdict{};
    reached = true;
    if (!cut.bytes) return Verdict{Verdict::End};
    return Verdict{Verdict::EndAfter, 0, *cut.bytes};
  });
  return reached;
}

std::vector<Cut> cutsOf(const std::vector<Step>& steps) {
  std::vector<Cut> cuts;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    cuts.push_back({static_cast<int>(i), std::nullopt});
    if (steps[i].size > 1) cuts.push_back({static_cast<int>(i), steps[i].size / 2});
  }
  return cuts;
}

}  // namespace camcfg::torture
