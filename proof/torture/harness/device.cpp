#include "torture/harness/device.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "camcfg/types.h"

namespace camcfg::torture {
std::string mainPath(const std::string& name) {
  return CFG_DIR_MAIN "/" + name;
}

std::string backupPath(const std::string& name) {
  return CFG_DIR_BACKUP "/" + name;
}

std::string factoryPath(const std::string& name) {
  return CFG_DIR_DEFAULT "/" + name;
}

std::string sampleText(const std::string& name) {
  const auto text = Device::readHere(CAMCFG_RESOURCE_DIR "/defcfg/" + name);
  if (!text) throw std::runtime_error("no sample file " + name);
  return *text;
}

void Device::fill() const {
  root_.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
  for (const char* name : kSampleFiles) {
    write(mainPath(name), sampleText(name));
    write(backupPath(name), sampleText(name));
  }
}

void Device::write(const std::string& path, const std::string& text) const {
  writeHere(hostPath(path), text);
}

std::optional<std::string> Device::read(const std::string& path) const {
  return readHere(hostPath(path));
}

void Device::writeHere(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  if (!file.flush()) throw std::runtime_error(path + " cannot be written");
}

void Device::removeHere(const std::string& path) {
  std::filesystem::remove(path);
}

std::optional<std::string> Device::readHere(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace camcfg::torture
