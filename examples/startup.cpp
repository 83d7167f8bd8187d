// What an application does first: has the files checked and repaired, and finds out which of them
// it can work with.
//
// Exit status: 0 all files were sound, 1 something was repaired, 2 a file is unusable.
#include <camcfg/store.h>

#include <cstdio>
#include <memory>

namespace {

const char* const kFiles[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};
const int kCount = sizeof kFiles / sizeof *kFiles;

// Looked at without the library, whose verification does not report what it repaired.
bool parses(const char* path) {
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  return document.LoadFile(path) == tinyxml2::XML_SUCCESS;
}

bool opens(const char* path) {
  const std::unique_ptr<tinyxml2::XMLDocument> document(
      CFG_GetDocByFileName(const_cast<char*>(path), BU_TRUE));
  return document != nullptr && document->FirstChildElement() != nullptr;
}

}  // namespace

int main() {
  bool soundBefore[kCount];
  for (int i = 0; i < kCount; ++i) soundBefore[i] = parses(kFiles[i]);

  // Before anything else uses the files, and on one thread: it takes no locks.
  if (CFG_VerifyFileFormat() != 0) std::fprintf(stderr, "startup: there are no files at all\n");

  int status = 0;
  for (int i = 0; i < kCount; ++i) {
    if (!opens(kFiles[i])) {
      // The application goes on without what this file configures, and informs the operator.
      std::fprintf(stderr, "startup: %s is unusable\n", kFiles[i]);
      status = 2;
    } else if (!soundBefore[i]) {
      // From the backup, or from factory settings: settings may be older than they were.
      std::fprintf(stderr, "startup: %s was repaired\n", kFiles[i]);
      if (status == 0) status = 1;
    }
  }
  return status;
}
