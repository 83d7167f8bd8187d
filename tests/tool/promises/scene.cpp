#include "tool/promises/scene.h"

#include <sys/stat.h>
#include <tinyxml2.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tool/media_tool_test.h"
#include "tool/two_presets.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;

struct Sample {
  std::string good;
  std::string other;
};

const Sample& sampleOf(std::size_t name) {
  static const Sample samples[] = {
      {kParameters, with(kParameters, "Rtsp Cur=\"554\"", "Rtsp Cur=\"8554\"")},
      {kMedia, with(kMedia, "Name=\"main\"", "Name=\"side\"")},
      {kTwoPresets, with(kTwoPresets, "PanPos=\"1\"", "PanPos=\"11\"")}};
  return samples[name];
}

// Where directories are one, the first copy stays: writing to a pipe would wait for a reader.
void write(const std::string& path, const std::string& contents) {
  std::error_code ignored;
  if (fs::exists(path, ignored)) return;
  std::ofstream(path, std::ios::binary) << contents;
}

std::string pathOf(std::size_t place, std::size_t name) {
  return std::string(kDirectories[place]) + "/" + kNames[name];
}

// The copy that a link of this place leads to.
std::string otherOf(std::size_t place, std::size_t name) {
  return pathOf(place == 0 ? 1 : 0, name);
}

std::string nextName(std::size_t name) {
  return kNames[(name + 1) % std::size(kNames)];
}

// Everything but a hard link.
void make(Kind kind, std::size_t place, std::size_t name) {
  const std::string path = pathOf(place, name);
  const Sample& sample = sampleOf(name);
  std::error_code ignored;
  switch (kind) {
    case Kind::Good:
      write(path, sample.good);
      break;
    case Kind::OtherGood:
      write(path, sample.other);
      break;
    case Kind::Damaged:
      write(path, sample.other.substr(0, sample.other.size() * 2 / 3));
      break;
    case Kind::Empty:
      write(path, "");
      break;
    case Kind::NoElement:
      write(path, "<!-- nothing -->\n");
      break;
    case Kind::Directory:
      fs::create_directory(path, ignored);
      break;
    case Kind::Pipe:
      mkfifo(path.c_str(), 0644);
      break;
    case Kind::LinkToOther:
      fs::create_symlink(otherOf(place, name), path, ignored);
      break;
    case Kind::DanglingLink:
      fs::create_symlink("/no/such", path, ignored);
      break;
    case Kind::LinkElsewhere:
      fs::create_symlink("/else/" + pathOf(place, name).substr(1), path, ignored);
      break;
    case Kind::Unreadable:
      write(path, sample.good);
      fs::permissions(path, fs::perms::none, ignored);
      break;
    case Kind::LinkToNextName:
      fs::create_symlink((place == 2 ? "../../../cfg0/" : "../cfg0/") + nextName(name), path,
                         ignored);
      break;
    case Kind::Unwritten:
      write(path, sample.good);
      fs::permissions(path, fs::perms::owner_write, ignored);
      break;
    case Kind::Missing:
    case Kind::HardLink:
    case Kind::HardLinkToNextName:
      break;
  }
}

void makeElsewhere(std::size_t place, std::size_t name) {
  const fs::path path = "/else/" + pathOf(place, name).substr(1);
  fs::create_directories(path.parent_path());
  write(path, sampleOf(name).other);
}

void makeDirectory(DirectoryKind kind, std::size_t place) {
  const std::string path = kDirectories[place];
  switch (kind) {
    case DirectoryKind::There:
      fs::create_directory(path);
      break;
    case DirectoryKind::File:
      write(path, "in the way");
      break;
    case DirectoryKind::DanglingLink:
      fs::create_symlink("/no/such", path);
      break;
    case DirectoryKind::LinkToOther:
      fs::create_symlink(kDirectories[place == 0 ? 1 : 0], path);
      break;
    case DirectoryKind::Missing:
      break;
  }
}

}  // namespace

void Scene::layOut() const {
  for (const char* path : {"/cfg0", "/cfg1", "/app", "/else", "/moved"}) fs::remove_all(path);
  fs::create_directories("/app/resource");
  for (std::size_t place = 0; place < directories.size(); ++place)
    makeDirectory(directories[place], place);
  for (std::size_t name = 0; name < files.size(); ++name)
    for (std::size_t place = 0; place < files[name].size(); ++place) {
      if (files[name][place] == Kind::LinkElsewhere) makeElsewhere(place, name);
      make(files[name][place], place, name);
    }
  for (std::size_t name = 0; name < files.size(); ++name)
    for (std::size_t place = 0; place < files[name].size(); ++place) {
      const std::string path = pathOf(place, name);
      std::error_code ignored;
      if (files[name][place] == Kind::HardLink)
        fs::create_hard_link(otherOf(place, name), path, ignored);
      if (files[name][place] == Kind::HardLinkToNextName)
        fs::create_hard_link("/cfg0/" + nextName(name), path, ignored);
    }
}

void PrintTo(Kind kind, std::ostream* out) {
  constexpr const char* kNamesOfKinds[] = {
      "good",       "other",    "missing",      "damaged",  "empty",    "noElement",
      "directory",  "pipe",     "linkOther",    "hardLink", "dangling", "linkElsewhere",
      "unreadable", "linkNext", "hardLinkNext", "unwritten"};
  *out << kNamesOfKinds[static_cast<int>(kind)];
}

void PrintTo(const Scene& scene, std::ostream* out) {
  constexpr const char* kNamesOfDirectories[] = {"there", "missing", "file", "dangling",
                                                 "linkOther"};
  for (std::size_t name = 0; name < scene.files.size(); ++name) {
    *out << kNames[name] << ":";
    for (const Kind kind : scene.files[name]) *out << " " << testing::PrintToString(kind);
    *out << "; ";
  }
  *out << "directories:";
  for (const DirectoryKind kind : scene.directories)
    *out << " " << kNamesOfDirectories[static_cast<int>(kind)];
}

bool holdsElement(const std::string& path) {
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) return false;
  tinyxml2::XMLDocument document;
  return document.LoadFile(path.c_str()) == tinyxml2::XML_SUCCESS &&
         document.FirstChildElement() != nullptr;
}

}  // namespace camcfg::tests
