#ifndef CAMCFG_TESTS_STORE_PROCESS_LOCK_TEST_H
#define CAMCFG_TESTS_STORE_PROCESS_LOCK_TEST_H

#include <chrono>
#include <memory>
#include <string>

#include "support/device_test.h"
#include "support/other_program.h"
#include "support/quick_saves.h"

namespace camcfg::tests {

using Clock = std::chrono::steady_clock;
using Document = std::unique_ptr<tinyxml2::XMLDocument>;

inline constexpr char kPath[] = "/cfg0/x.xml";
inline constexpr char kName[] = "x.xml";

inline Document openDocument(const char* path, tagBU_BOOL readOnly) {
  return Document(CFG_GetDocByFileName(text(path), readOnly));
}

inline int valueOf(const Document& document) {
  return document == nullptr ? -1 : document->FirstChildElement()->IntAttribute("Cur", -2);
}

/// Sets the one value of the test's file and saves it.
inline int save(const Document& document, int value, const char* path = kPath,
                tagBU_BOOL unlock = BU_TRUE) {
  document->FirstChildElement()->SetAttribute("Cur", value);
  return CFG_SaveFile(document.get(), text(path), unlock);
}

/// A device that asks for locks between programs, with one file that holds the value 1.
class ProcessLockTest : private QuickSaves, public DeviceTest {
 protected:
  ProcessLockTest() {
    device.makeDirectory("/run/camcfg");
    lay("<A Cur=\"1\"/>\n");
  }
  void lay(const std::string& contents) {
    device.write(kPath, contents);
    device.write("/cfg1/x.xml", contents);
  }
};

}  // namespace camcfg::tests

#endif
