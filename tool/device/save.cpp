#include "device/save.h"

#include <camcfg/store.h>
#include <tinyxml2.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>

#include "base/concat.h"
#include "base/host.h"
#include "base/outcome.h"
#include "device/files.h"

namespace camcfg::tool::device {
namespace {

bool isAt(const std::string& path, const std::string& bytes) {
  return readFile(path) == bytes;
}

void save(const Contents& file) {
  // A document of a single text, written without entities: what the library saves are its bytes.
  tinyxml2::XMLDocument document(false);
  document.InsertEndChild(document.NewText(file.bytes.c_str()));
  CFG_SaveFile(&document, argument(file.path), BU_FALSE);
}

// A text ends at its first NUL.
void requireText(const Contents& file) {
  if (file.bytes.find('\0') != std::string::npos)
    throw Refusal(file.path + ": a NUL byte cannot be saved");
}

}  // namespace

std::string bytesOf(const std::string& path) {
  const std::optional<std::string> bytes = readFile(path);
  if (!bytes) throw Refusal(Status::Unusable, concat(path, ": ", std::strerror(errno)));
  return *bytes;
}

void saveContents(const std::vector<Contents>& files) {
  for (const Contents& file : files) requireText(file);
  std::vector<std::thread> threads;
  for (std::size_t i = 1; i < files.size(); ++i) {
    try {
      threads.emplace_back(save, std::cref(files[i]));
    } catch (const std::system_error&) {
      save(files[i]);  // out of threads
    }
  }
  if (!files.empty()) save(files.front());
  for (std::thread& thread : threads) thread.join();
}

bool holds(const Contents& file) {
  return isAt(pathOf(Place::Main, file.path), file.bytes) &&
         isAt(pathOf(Place::Backup, file.path), file.bytes);
}

}  // namespace camcfg::tool::device
