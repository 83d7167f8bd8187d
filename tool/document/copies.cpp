#include "document/copies.h"

#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/host_directory.h"
#include "base/json_reader.h"
#include "base/plain_text.h"
#include "base/refusal.h"
#include "document/document.h"

namespace camcfg::tool::document {
namespace {

using Sections = std::map<std::string, CopiedSection>;

constexpr char kValue[] = "value";
constexpr char kFault[] = "fault";

// Faults are reported with the copies' own paths.
std::string told(std::string fault, device::Place place) {
  for (const device::Section& section : allSections()) {
    const std::string name = device::nameOf(section.path);
    const std::string main = device::pathOf(device::Place::Main, name);
    const std::string other = device::pathOf(place, name);
    for (std::size_t at = fault.find(main); main != other && at != std::string::npos;
         at = fault.find(main, at + other.size()))
      fault.replace(at, main.size(), other);
  }
  return fault;
}

// Fills the other device with the copies; says of each file why it is not among them.
std::map<std::string, std::string> fill(const HostTemporary& device, device::Place place) {
  std::map<std::string, std::string> faults;
  for (const device::Section& section : allSections()) {
    const std::string name = device::nameOf(section.path);
    if (faults.count(section.path) != 0) continue;
    const device::Copy copy = device::loadCopy(device::pathOf(place, name));
    faults[section.path] =
        copy.state == device::State::Good ? "" : device::pathOf(place, name) + " " + copy.fault;
    if (copy.state == device::State::Good) device.write("cfg0", name, written(*copy.document));
  }
  return faults;
}

Json loadAll() {
  Json loaded = Json::object();
  for (const auto& [name, section] : loadFromMain())
    loaded[name] = {{kValue, section.value}, {kFault, section.fault}};
  return loaded;
}

// The other process's work. It ends without anything that this one has yet to do.
[[noreturn]] void answerFrom(const HostTemporary& device, const MemoryFile& answer) {
  try {
    const std::string error = device.enter();
    const Json loaded = error.empty() ? loadAll() : Json(error);
    _exit(writeAll(answer.get(), packed(loaded)) ? 0 : 1);
  } catch (const std::exception&) {
    _exit(1);
  }
}

Json loadedIn(const HostTemporary& device) {
  const MemoryFile answer;
  const pid_t child = fork();
  if (child == 0) answerFrom(device, answer);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
    throw Refusal("the process that reads the copies failed");
  Json loaded = unpacked(answer.contents());
  if (loaded.is_string()) throw Refusal("the copies cannot be read: " + loaded.get<std::string>());
  return loaded;
}

}  // namespace

Sections loadFromMain() {
  Sections sections;
  for (const device::Section& section : allSections()) try {
      sections[section.name] = {section.load(), ""};
    } catch (const Refusal& refusal) {
      sections[section.name] = {nullptr, refusal.what()};
    }
  return sections;
}

Sections loadFromCopies(device::Place place) {
  const HostTemporary device;
  const std::map<std::string, std::string> faults = fill(device, place);
  const Json loaded = loadedIn(device);
  Sections sections;
  for (const device::Section& section : allSections()) {
    CopiedSection& copied = sections[section.name];
    copied.value = loaded.at(section.name).at(kValue);
    copied.fault = told(loaded.at(section.name).at(kFault).get<std::string>(), place);
    if (!faults.at(section.path).empty()) copied.fault = faults.at(section.path);
  }
  return sections;
}

}  // namespace camcfg::tool::document
