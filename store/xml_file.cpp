#include "store/xml_file.h"

#include <cstdio>
#include <memory>

namespace camcfg {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace

bool loadXml(tinyxml2::XMLDocument& document, const char* path) {
  const File file(std::fopen(path, "rb"));
  return file != nullptr && document.LoadFile(file.get()) == tinyxml2::XML_SUCCESS;
}

void saveXml(tinyxml2::XMLDocument& document, const char* path) {
  const File file(std::fopen(path, "w"));
  if (file != nullptr)
    document.SaveFile(file.get());
  else
    document.SaveFile(path);  // records in the document why it cannot be opened
}

}  // namespace camcfg
