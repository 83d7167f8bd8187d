#include "torture/changes/bench.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

#include "torture/harness/child.h"

namespace camcfg::torture {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPlaces[] = {"/cfg0", "/cfg1", kLockDirectory};

void replace(std::string& text, const std::string& what, const std::string& by) {
  const std::size_t at = text.find(what);
  if (at == std::string::npos) throw std::runtime_error("the sample set has no " + what);
  text.replace(at, what.size(), by);
}

// One setting of each section, and a preset more.
std::string withAllSectionsChanged(std::string document) {
  replace(document, R"("name": "ch1-main", "size": {"value": 8)",
          R"("name": "ch1-main", "size": {"value": 6)");
  replace(document, R"("preview-1")", R"("preview-one")");
  replace(document, R"("ch1/main")", R"("ch1/first")");
  replace(document, "/event/program", "/event/main");
  replace(document, R"("Channel 1")", R"("Camera 1")");
  replace(document, R"("latency": 120)", R"("latency": 125)");
  replace(document, R"("WebHttp": 80,)", R"("WebHttp": 8081,)");
  replace(document, R"("192.168.90.80")", R"("192.168.90.82")");
  replace(document, R"("hostname": "encoder")", R"("hostname": "studio")");
  replace(document, R"("Lectern")", R"("Desk")");
  replace(document, R"({"id": 6, "description")",
          R"({"id": 9, "description": "Door", "pan": 1, "tilt": 2, "zoom": 3, "focus": 4, )"
          R"("focusMode": 0}, {"id": 6, "description")");
  return document;
}

// Standard output only: an export has notes on standard error.
std::string documentIn(const std::string& output) {
  const std::size_t start = output.find("\n{") + 1;
  return output.substr(start, output.find("\n}\n", start) + 3 - start);
}

}  // namespace

std::string tool() {
  const char* other = std::getenv("CAMCFG_TORTURE_TOOL");
  return other == nullptr ? CAMCFG_TOOL : other;
}

Bench::Bench() : work_(device_.root() + ".work") {
  device_.fill();
  device_.makeDirectory(kLockDirectory);
  fs::create_directory(work_);
  fs::create_directory(work("tmp"));
  setenv("TMPDIR", work("tmp").c_str(), 1);
  const std::string sample = documentIn("\n" + run({"export"}).output);
  Device::writeHere(work(kFewSections), sample);
  Device::writeHere(work(kAllSections), withAllSectionsChanged(sample));
  Device::writeHere(work(kPresets), "id,description,pan\n1,Podium,-4100\n11,Balcony,900\n");
  writeOldSet();
}

void Bench::writeOldSet() const {
  const Tree sample = tree();
  run({"import", kAllSections});
  fs::create_directory(work(kOldSet));
  for (const char* name : kSampleFiles)
    Device::writeHere(work(kOldSet) + "/" + name, device_.read(mainPath(name)).value_or(""));
  put(sample);
}

Bench::~Bench() {
  std::error_code ignored;
  fs::remove_all(work_, ignored);
}

Tree Bench::tree() const {
  Tree tree;
  for (const char* place : kPlaces) {
    tree[place] = std::nullopt;
    for (const auto& entry : fs::recursive_directory_iterator(root() + place)) {
      const std::string path = entry.path().string().substr(root().size());
      tree[path] = entry.is_directory() ? std::nullopt : device_.read(path);
    }
  }
  return tree;
}

void Bench::put(const Tree& tree) const {
  for (const char* place : kPlaces) fs::remove_all(root() + place);
  for (const auto& [path, bytes] : tree)
    if (bytes)
      device_.write(path, *bytes);
    else
      device_.makeDirectory(path);
}

Tree Bench::mainsOf(const Tree& tree) {
  Tree mains;
  for (const auto& [path, bytes] : tree)
    if (bytes && path.rfind("/cfg0/", 0) == 0) mains[path] = bytes;
  return mains;
}

std::vector<std::string> Bench::program(const Words& words) const {
  std::vector<std::string> program = {tool(), "--root", root()};
  for (const std::string& word : words) program.push_back(word.front() == '@' ? work(word) : word);
  return program;
}

pid_t Bench::start(const Words& words) const {
  return startUnfollowed(program(words), work("output"));
}

void Bench::putOnTrial(const Words& words, bool isOver) const {
  Words trying = {"try", "--for", isOver ? "1s" : "7d", "--"};
  trying.insert(trying.end(), words.begin(), words.end());
  const pid_t child = start(trying);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (output().find("is on trial until") == std::string::npos) {
    if (std::chrono::steady_clock::now() > end) throw std::runtime_error("no trial: " + output());
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  kill(child, SIGKILL);
  waitFor(child);
  if (isOver) std::this_thread::sleep_for(std::chrono::milliseconds(1200));
}

Run Bench::run(const Words& words) const {
  const int status = waitFor(start(words));
  return {status, output()};
}

Run Bench::follow(const Words& words, const Followed::Decide& decide,
                  const Followed::Returned& returned, Attention attention) const {
  Followed followed(root(), program(words), work("output"), attention);
  const int status = followed.run(decide, returned);
  return {status, output()};
}

std::string Bench::output() const {
  return Device::readHere(work("output")).value_or("");
}

int Bench::leftTemporaries() const {
  int left = 0;
  for (const auto& entry : fs::directory_iterator(work("tmp"))) {
    fs::remove_all(entry.path());
    ++left;
  }
  return left;
}

}  // namespace camcfg::torture
