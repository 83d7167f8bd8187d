#include <camcfg/store.h>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

constexpr char kMain[] = "/cfg0/a.xml";
constexpr char kBackup[] = "/cfg1/a.xml";
constexpr char kDefault[] = "/app/resource/defcfg/a.xml";

// The three copies of a file.
struct Copies {
  std::string main;
  std::string backup;
  std::string factory;

  bool operator==(const Copies& other) const {
    return main == other.main && backup == other.backup && factory == other.factory;
  }
};

bool parses(const std::string& copy) {
  tinyxml2::XMLDocument document;
  return copy != kNoFile && document.Parse(copy.data(), copy.size()) == tinyxml2::XML_SUCCESS;
}

Copies repaired(Copies copies) {
  if (parses(copies.main)) return copies;
  if (parses(copies.backup)) {
    copies.main = copies.backup;
  } else if (parses(copies.factory)) {
    copies.main = copies.factory;
    if (copies.backup != kNoFile) copies.backup = copies.factory;
  }
  return copies;
}

}  // namespace

// The main copy of a file, its backup and its factory default.
void verification(const Input& input) {
  const Copies copies{input.part(0), input.part(1), input.part(2)};
  writeFile(kMain, copies.main);
  writeFile(kBackup, copies.backup);
  writeFile(kDefault, copies.factory);
  const bool any = !(copies == Copies{kNoFile, kNoFile, kNoFile});
  require(CFG_VerifyFileFormat() == (any ? 0 : -1), "verification reports whether there are files");
  const Copies after{readFile(kMain), readFile(kBackup), readFile(kDefault)};
  require(after == repaired(copies), "the best copy is the main copy after verification");
}

}  // namespace camcfg::fuzz
