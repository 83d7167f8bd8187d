#ifndef CAMCFG_BENCH_FILES_H
#define CAMCFG_BENCH_FILES_H

#include <string>

namespace camcfg::bench {

/// Contents of a device's files of a given size.
std::string parameterFile(int parameters);
std::string presetFile(int presets);
std::string streamFile(const std::string& section, int entries);
std::string liveMediaFile(const std::string& section, int entries);
std::string networkFile(int cards);

/// Name of the last parameter of a file of that many.
std::string lastParameter(int parameters);

void writeFile(const std::string& path, const std::string& contents);

}  // namespace camcfg::bench

#endif
