#include "fuzz/targets.h"

#include <algorithm>

#include "fuzz/device.h"

namespace camcfg::fuzz {

const std::vector<Target>& allTargets() {
  static const std::vector<Target> targets = {
      {"import_document", importDocument},
      {"import_presets", importPresets},
      {"language", language},
      {"network", network},
      {"numbers", numbers},
      {"parameters", parameters},
      {"presets", presets},
      {"rtmp_ndi", rtmpNdi},
      {"searches", searches},
      {"srt", srt},
      {"stream", stream},
      {"verification", verification},
      {"websocket_rtsp", websocketRtsp},
  };
  return targets;
}

void tryInput(const std::string& target, const std::string& bytes) {
  const auto found = std::find_if(allTargets().begin(), allTargets().end(),
                                  [&](const Target& each) { return each.name == target; });
  if (found == allTargets().end()) throw std::invalid_argument("there is no target " + target);
  const Input input(bytes);
  inDevice([&] {
    try {
      found->run(input);
    } catch (const Broken&) {
      if (input.isStable()) throw;
    }
  });
}

}  // namespace camcfg::fuzz
