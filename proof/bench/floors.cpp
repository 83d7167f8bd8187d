#include "bench/floors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tinyxml2.h>
#include <unistd.h>

namespace camcfg::bench {
namespace {

void copyByHand(const char* from, const char* to) {
  const int source = open(from, O_RDONLY | O_CLOEXEC);
  struct stat status {};
  fstat(source, &status);
  const int target = open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, status.st_mode & 0777);
  while (copy_file_range(source, nullptr, target, nullptr, 1 << 30, 0) > 0) {
  }
  close(target);
  close(source);
}

void saveByHand(tinyxml2::XMLDocument& document, const char* path, const char* backup) {
  document.SaveFile(path);
  sync();
  copyByHand(path, backup);
  sync();
}

tinyxml2::XMLElement* entryByHand(tinyxml2::XMLDocument& document, int id) {
  tinyxml2::XMLElement* entry = document.FirstChildElement()->FirstChildElement();
  while (entry->IntAttribute("Id") != id) entry = entry->NextSiblingElement();
  return entry;
}

}  // namespace

int readByHand(const char* path, const char* name, const char* attribute) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
  return document.FirstChildElement()->FirstChildElement(name)->IntAttribute(attribute);
}

void writeByHand(const char* path, const char* backup, const char* name, const char* attribute,
                 int value) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
  document.FirstChildElement()->FirstChildElement(name)->SetAttribute(attribute, value);
  saveByHand(document, path, backup);
}

void parseByHand(const char* path) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
}

void rewriteByHand(const char* path, const char* backup) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
  saveByHand(document, path, backup);
}

int findByHand(const char* path, int id, const std::vector<const char*>& attributes) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
  const tinyxml2::XMLElement* entry = entryByHand(document, id);
  int sum = 0;
  for (const char* attribute : attributes) sum += entry->IntAttribute(attribute);
  return sum;
}

void setByHand(const char* path, const char* backup, int id,
               const std::vector<const char*>& attributes) {
  tinyxml2::XMLDocument document;
  document.LoadFile(path);
  tinyxml2::XMLElement* entry = entryByHand(document, id);
  for (const char* attribute : attributes) entry->SetAttribute(attribute, id);
  saveByHand(document, path, backup);
}

}  // namespace camcfg::bench
