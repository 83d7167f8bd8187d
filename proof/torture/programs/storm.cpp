#include "torture/programs/storm.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <random>
#include <thread>

#include "camcfg/livemedia.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"
#include "torture/harness/device.h"

namespace camcfg::torture {
namespace {

// A whole list read and written again would undo what others changed in between, so programs that
// share a section change its elements in one session.
tinyxml2::XMLElement* childAt(tinyxml2::XMLElement* section, int cell) {
  tinyxml2::XMLElement* child = section->FirstChildElement();
  while (cell-- > 0) child = child->NextSiblingElement();
  return child;
}

bool writeCacheInPlace(int cell, int value) {
  tinyxml2::XMLElement* section = CFG_MPP_Open("StreamCache", BU_FALSE);
  if (section == nullptr) return false;
  tinyxml2::XMLElement* cache = childAt(section, cell);
  cache->SetAttribute("Name", longText(value).c_str());
  cache->SetAttribute("BufferSizeB", value);
  return CFG_MPP_CloseWrite() == 0;
}

bool writeInstanceInPlace(int cell, int value) {
  tinyxml2::XMLElement* section = CFG_LM_Open("SRT", BU_FALSE);
  if (section == nullptr) return false;
  tinyxml2::XMLElement* instance = childAt(section, cell);
  instance->SetAttribute("Port", value);
  instance->SetAttribute("Password", longText(value).c_str());
  return CFG_LM_CloseWrite() == 0;
}

class Thread {
 public:
  Thread(int cell, std::uint32_t seed, std::mutex& oneAtATime, StormState& state)
      : cell_(cell), random_(seed), oneAtATime_(oneAtATime), state_(state) {}

  void work() {
    for (std::size_t i = 0; i < families_.size(); ++i) settle(i);
    while (!state_.end) visit(random_() % families_.size());
  }

 private:
  // Whoever had the cell before was killed: its last value is in the file or is not.
  void settle(std::size_t i) {
    if (cell_ >= families_[i].cells) return;
    const int value = look(i, cell_);
    Progress& progress = state_.progress[i][cell()];
    if (value < progress.done || value > progress.begun) return;
    progress.done = value;
    progress.begun = value;
  }

  void visit(std::size_t i) {
    const unsigned chance = random_() % 8;
    if (chance < 2)
      write(i);
    else if (chance == 2)
      raise(i);
    else
      look(i, static_cast<int>(random_() % kThreads));
  }

  void write(std::size_t i) {
    if (cell_ >= families_[i].cells) return;
    Progress& progress = state_.progress[i][cell()];
    const int value = std::min(progress.done + 1, kHighest);
    progress.begun = value;
    ++state_.counts[i].writes;
    const auto alone = turn(i);
    if (families_[i].write(cell_, value))
      progress.done = value;
    else
      ++state_.counts[i].failed;
  }

  void raise(std::size_t i) {
    if (!families_[i].increment) return;
    ++state_.counts[i].raises;
    if (families_[i].increment())
      ++state_.raised;
    else
      ++state_.counts[i].failed;
  }

  int look(std::size_t i, int cell) {
    const Family& family = families_[i];
    if (family.cells > 0) cell %= family.cells;
    const Progress& progress = state_.progress[i][static_cast<std::size_t>(cell)];
    const int least = family.cells > 0 ? progress.done.load() : 0;
    const auto alone = turn(i);
    const int value = family.read(cell);
    state_.counts[i].addRead(value, least);
    return value;
  }

  std::unique_lock<std::mutex> turn(std::size_t i) const {
    return families_[i].reentrant ? std::unique_lock<std::mutex>()
                                  : std::unique_lock<std::mutex>(oneAtATime_);
  }

  std::size_t cell() const { return static_cast<std::size_t>(cell_); }

  const int cell_;
  std::mt19937 random_;
  std::mutex& oneAtATime_;
  StormState& state_;
  const std::vector<Family> families_ = stormFamilies();
};

}  // namespace

std::vector<Family> stormFamilies() {
  std::vector<Family> families = reentrantFamilies();
  for (Family family : mediaFamilies()) {
    family.write =
        std::strncmp(family.name, "CFG_MPP", 7) == 0 ? writeCacheInPlace : writeInstanceInPlace;
    families.push_back(family);
  }
  return families;
}

void layOutStorm() {
  layOutFamilies();
  for (const auto& entry : std::filesystem::directory_iterator(CFG_DIR_MAIN))
    Device::writeHere(CFG_DIR_BACKUP / entry.path().filename(), *Device::readHere(entry.path()));
}

long stormCount() {
  for (const Family& family : stormFamilies())
    if (family.counted) return family.counted();
  return -1;
}

int runProgramOfStorm(int program, std::uint32_t seed, StormState& state) {
  CFG_VerifyFileFormat();
  std::mutex oneAtATime;
  std::vector<std::thread> threads;
  threads.reserve(kThreadsEach);
  for (int i = 0; i < kThreadsEach; ++i)
    threads.emplace_back([&, i] {
      const int cell = program * kThreadsEach + i;
      Thread(cell, seed + static_cast<std::uint32_t>(i), oneAtATime, state).work();
    });
  for (std::thread& thread : threads) thread.join();
  return 0;
}

}  // namespace camcfg::torture
