#include "base/progress.h"

#include <utility>

#include "base/concat.h"

namespace camcfg::tool {
namespace {

std::function<void(const std::string& work)> watching;
std::string stage;
std::function<void(const std::string&)> announcing;

}  // namespace

void workingOn(const std::string& what) {
  if (watching) watching(stage.empty() || what.empty() ? stage + what : concat(stage, ": ", what));
}

Stage::Stage(const std::string& name, std::size_t number, std::size_t total) {
  stage = concat(name, " (", number, " of ", total, ")");
  workingOn("");
}

Stage::~Stage() {
  stage.clear();
}

void watchWork(std::function<void(const std::string& work)> watcher) {
  watching = std::move(watcher);
  stage.clear();
}

void announce(const std::string& line) {
  if (announcing) announcing(line);
}

void announceBy(std::function<void(const std::string& line)> announcer) {
  announcing = std::move(announcer);
}

}  // namespace camcfg::tool
