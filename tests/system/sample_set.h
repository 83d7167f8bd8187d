#ifndef CAMCFG_TESTS_SYSTEM_SAMPLE_SET_H
#define CAMCFG_TESTS_SYSTEM_SAMPLE_SET_H

#include <tinyxml2.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/device_test.h"

namespace camcfg::tests {

/// Path on the device to contents.
using SampleFiles = std::map<std::string, std::string>;

/// The sample set, read from the source tree: only while the process is outside any device.
inline SampleFiles readSampleFiles() {
  const std::filesystem::path tree = CAMCFG_RESOURCE_DIR;
  SampleFiles files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(tree)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    files["/app/resource/" + entry.path().lexically_relative(tree).string()] = {
        std::istreambuf_iterator<char>(file), {}};
  }
  return files;
}

/// One file of the sample set, loaded as the library loads it.
class SampleDocument {
 public:
  explicit SampleDocument(const std::string& path, const SampleFiles& files = readSampleFiles()) {
    const std::string& contents = files.at(path);
    if (document_.Parse(contents.data(), contents.size()) != tinyxml2::XML_SUCCESS)
      throw std::runtime_error(path + ": " + document_.ErrorStr());
  }

  tinyxml2::XMLElement* root() { return document_.FirstChildElement(); }
  tinyxml2::XMLElement* element(const char* name) { return document_.FirstChildElement(name); }
  tinyxml2::XMLDocument& document() { return document_; }

 private:
  tinyxml2::XMLDocument document_;
};

inline std::vector<tinyxml2::XMLElement*> childrenOf(tinyxml2::XMLNode* parent) {
  std::vector<tinyxml2::XMLElement*> children;
  for (auto* child = parent->FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    children.push_back(child);
  return children;
}

inline std::string nameOf(const tinyxml2::XMLElement* element) {
  return element == nullptr ? "(none)" : element->Name();
}

/// The text of an attribute, if the element has it.
inline std::optional<std::string> textOf(const tinyxml2::XMLElement* element, const char* name) {
  const char* value = element->Attribute(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

/// The integer of an attribute, if the element has it and it is one.
inline std::optional<int> intOf(const tinyxml2::XMLElement* element, const char* name) {
  int value = 0;
  return element->QueryIntAttribute(name, &value) == tinyxml2::XML_SUCCESS
             ? std::optional<int>(value)
             : std::nullopt;
}

inline std::vector<std::string> attributeNames(const tinyxml2::XMLElement* element) {
  std::vector<std::string> names;
  for (const auto* attribute = element->FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    names.emplace_back(attribute->Name());
  return names;
}

/// The parameters, in document order, that have an attribute.
inline std::vector<tinyxml2::XMLElement*> parametersWith(const char* attribute,
                                                         SampleDocument& document) {
  std::vector<tinyxml2::XMLElement*> parameters;
  for (auto* section : childrenOf(&document.document()))
    for (auto* parameter : childrenOf(section))
      if (parameter->FindAttribute(attribute) != nullptr) parameters.push_back(parameter);
  return parameters;
}

inline bool begins(const std::string& beginning, const std::string& whole) {
  return whole.compare(0, beginning.size(), beginning) == 0;
}

/// The sample set on a new device, which the test is inside of: factory files and languages are
/// there, main and backup directories are empty.
class SampleDevice : public testing::Test {
 protected:
  SampleDevice() {
    for (const auto& [path, contents] : files) device.write(path, contents);
  }

  /// Start-up verification; returns what it printed.
  static std::string startUp(int* result) {
    return captureOutput([result] { *result = CFG_VerifyFileFormat(); });
  }

  const SampleFiles files = readSampleFiles();  // before the device is entered
  testkit::DeviceRoot device;
  testkit::LogRecorder log;
};

/// The sample device with its main copies in place.
class SampleDeviceAfterStartUp : public SampleDevice {
 protected:
  SampleDeviceAfterStartUp() {
    int result = -1;
    startUp(&result);
    EXPECT_EQ(result, 0);
    log.clear();
  }
};

}  // namespace camcfg::tests

#endif
