#include "torture/changes/medium.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "torture/tracer/process_view.h"

namespace camcfg::torture {
namespace {

bool isOnMedium(const std::string& path) {
  return path.rfind("/cfg", 0) == 0;
}

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

std::string bytesAt(pid_t thread, int descriptor, std::size_t offset, std::size_t size) {
  const std::string path = "/proc/" + std::to_string(thread) + "/fd/" + std::to_string(descriptor);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::string bytes(size, '\0');
  const ssize_t got = pread(file, bytes.data(), size, static_cast<off_t>(offset));
  close(file);
  if (got != static_cast<ssize_t>(size)) throw std::runtime_error("written bytes");
  return bytes;
}

}  // namespace

Medium::Medium(const Tree& tree) {
  for (const auto& [path, bytes] : tree) {
    if (!isOnMedium(path)) continue;
    const int file = newFile(!bytes);
    files_[static_cast<std::size_t>(file)].bytes = bytes.value_or("");
    names_[path] = file;
  }
}

int Medium::fileOf(const std::string& path) const {
  const auto found = names_.find(path);
  return found == names_.end() ? -1 : found->second;
}

int Medium::newFile(bool isDirectory) {
  files_.push_back({isDirectory, ""});
  return static_cast<int>(files_.size()) - 1;
}

void Medium::apply(const Operation& operation, Survival survival) {
  const auto file = static_cast<std::size_t>(operation.file);
  if (operation.file >= 0 && files_.size() <= file) files_.resize(file + 1);
  if (operation.kind == Operation::MakeDirectory) files_[file].isDirectory = true;
  if (survival == Survival::None || operation.kind == Operation::Flush) return;
  if (operation.kind == Operation::Write) return write(operation, survival);
  if (operation.kind == Operation::Truncate)
    return files_[static_cast<std::size_t>(operation.file)].bytes.resize(operation.offset);
  const bool goes = operation.kind == Operation::Rename || operation.kind == Operation::Remove;
  if (goes && fileOf(operation.path) == operation.file) names_.erase(operation.path);
  if (operation.kind == Operation::Remove) return;
  names_[operation.kind == Operation::Rename ? operation.toPath : operation.path] = operation.file;
}

void Medium::write(const Operation& operation, Survival survival) {
  std::string& bytes = files_[static_cast<std::size_t>(operation.file)].bytes;
  const std::size_t end = operation.offset + operation.bytes.size();
  const std::size_t size =
      survival == Survival::Half ? operation.bytes.size() / 2 : operation.bytes.size();
  bytes.resize(std::max(bytes.size(), survival == Survival::Half ? operation.offset + size : end));
  if (survival == Survival::Zeros)
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(operation.offset), size, '\0');
  else
    bytes.replace(operation.offset, size, operation.bytes, 0, size);
}

// What lies in a directory that is not there is not there either.
Tree Medium::tree() const {
  Tree tree = {{kLockDirectory, std::nullopt}};
  for (const auto& [path, file] : names_) {
    const File& found = files_[static_cast<std::size_t>(file)];
    const std::string directory = directoryOf(path);
    if (!directory.empty() && tree.count(directory) == 0) continue;
    tree[path] = found.isDirectory ? std::nullopt : std::optional<std::string>(found.bytes);
  }
  return tree;
}

Recording::Recording(const Bench& bench, const Tree& start) : bench_(bench), medium_(start) {}

Run Recording::run(const Words& words) {
  return bench_.follow(
      words, [](const DeviceCall&) { return Fate{}; },
      [this](const DeviceCall& call, std::int64_t result) { note(call, result); });
}

void Recording::add(Operation operation) {
  medium_.apply(operation);
  operations_.push_back(std::move(operation));
}

void Recording::note(const DeviceCall& call, std::int64_t result) {
  if (call.flushes) return add({Operation::Flush});
  if (result < 0 || !call.changes || !isOnMedium(call.path)) return;
  if (call.known->kind == CallKind::Open)
    noteOpening(call);
  else if (call.known->kind == CallKind::Change)
    noteChange(call);
  else if (result > 0)
    noteWriting(call, static_cast<std::size_t>(result));
}

void Recording::noteOpening(const DeviceCall& call) {
  const int file = medium_.fileOf(call.path);
  if (file < 0)
    add({Operation::Create, medium_.newFile(false), call.path});
  else if ((call.flags & O_TRUNC) != 0)
    add({Operation::Truncate, file, call.path});
}

void Recording::noteWriting(const DeviceCall& call, std::size_t size) {
  const std::size_t offset = positionOf(call.thread, call.descriptor) - size;
  add({Operation::Write, medium_.fileOf(call.path), call.path, "", offset,
       bytesAt(call.thread, call.descriptor, offset, size)});
}

void Recording::noteChange(const DeviceCall& call) {
  const std::string name = call.known->name;
  const int file = medium_.fileOf(call.path);
  if (name.rfind("mkdir", 0) == 0)
    add({Operation::MakeDirectory, medium_.newFile(true), call.path});
  else if (name.rfind("rename", 0) == 0)
    add({Operation::Rename, file, call.path, call.toPath});
  else if (name.rfind("unlink", 0) == 0 || name == "rmdir")
    add({Operation::Remove, file, call.path});
  else if (name == "fsync" || name == "fdatasync")
    add({Operation::Flush});
  else if (name.find("chmod") == std::string::npos)
    throw std::runtime_error("a power cut cannot be worked out for " + name);
}

}  // namespace camcfg::torture
