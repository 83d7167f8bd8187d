#ifndef CAMCFG_FUZZ_TARGETS_H
#define CAMCFG_FUZZ_TARGETS_H

#include <string>
#include <vector>

#include "fuzz/input.h"

namespace camcfg::fuzz {

// Each runs its calls on one input, inside the device, and throws Broken if a promise is broken.
void importDocument(const Input& input);
void importPresets(const Input& input);
void language(const Input& input);
void network(const Input& input);
void numbers(const Input& input);
void parameters(const Input& input);
void presets(const Input& input);
void rtmpNdi(const Input& input);
void searches(const Input& input);
void srt(const Input& input);
void stream(const Input& input);
void verification(const Input& input);
void websocketRtsp(const Input& input);

struct Target {
  const char* name;  ///< of the program, and of its directory in corpus/
  void (*run)(const Input& input);
};

const std::vector<Target>& allTargets();

/// Runs the target of this name on an input.
void tryInput(const std::string& target, const std::string& bytes);

}  // namespace camcfg::fuzz

#endif
