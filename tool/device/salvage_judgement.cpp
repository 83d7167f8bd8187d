#include <camcfg/types.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include "base/concat.h"
#include "base/host.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/salvage_entries.h"
#include "device/scratch.h"
#include "settings/value.h"

namespace camcfg::tool::device {
namespace {

using settings::Need;
using settings::Setting;
using settings::Table;

constexpr char kRecord[] = "record";
constexpr char kFault[] = "fault";

// Why an entry says too little by itself: it has no id, or what it lacks would be taken from the one
// before it, which may be another one now. Empty if it says enough.
std::string lacking(const tinyxml2::XMLElement& element, const EntryList& list) {
  for (const Setting& setting : *list.settings) {
    const bool isNeeded = setting.need == Need::Carried ||
                          (setting.need == Need::Required && setting.member == list.key);
    if (isNeeded && !setting.attributes.empty() &&
        element.FindAttribute(setting.attributes.front().name) == nullptr)
      return std::string(setting.attributes.front().name) + ": it is missing";
  }
  return "";
}

// A preset is judged by its rows.
void judgePreset(const tinyxml2::XMLElement& element, Candidate& preset) {
  preset.fault = lacking(element, *preset.list);
  preset.record = Json::object();
  for (const Setting& setting : *preset.list->settings) {
    const char* name = setting.attributes.front().name;
    const char* text = element.Attribute(name);
    preset.record[setting.member] =
        settings::valueIn(setting, text == nullptr ? Json() : Json(text));
    if (text == nullptr) continue;
    std::string fault = whyNotStorable(text);
    if (fault.empty()) fault = settings::objectionTo(setting, text).why;
    if (!fault.empty()) preset.fault = concat(name, ": ", fault);
  }
}

// Entries of a media section are loaded by the library, on a device of its own, and then checked as an
// import checks them. Those among which one is faulty are split until it is by itself.
class Trials {
 public:
  explicit Trials(const std::vector<Candidate*>& candidates)
      : candidates_(candidates), results_(Json::array()) {
    for (std::size_t i = 0; i < candidates.size(); ++i) results_.push_back(Json::object());
  }

  Json results() {
    for (std::size_t first = 0; first < candidates_.size();) {
      std::size_t last = first;
      while (last < candidates_.size() && candidates_[last]->list == candidates_[first]->list)
        ++last;
      tryAll(first, last);
      first = last;
    }
    return results_;
  }

 private:
  void tryAll(std::size_t first, std::size_t last) {
    Json entries;
    const std::string fault = faultOf(first, last, entries);
    if (fault.empty() && entries.size() == last - first) {
      for (std::size_t i = first; i < last; ++i)
        results_[i] = {{kRecord, entries[i - first]}, {kFault, ""}};
    } else if (last - first == 1) {
      results_[first] = {{kRecord, entries.empty() ? Json() : entries.front()},
                         {kFault, fault.empty() ? "the library does not load it" : fault}};
    } else {
      const std::size_t middle = first + (last - first) / 2;
      tryAll(first, middle);
      tryAll(middle, last);
    }
  }

  std::string faultOf(std::size_t first, std::size_t last, Json& entries) {
    const Table& table = *candidates_[first]->list->table;
    write(table, first, last);
    forgetComplaint();
    if (heard([&] { return table.calls.load(table, entries); }) != 0) {
      table.calls.closeRead();
      return lastComplaint().empty() ? "out of memory" : lastComplaint();
    }
    settings::Faults faults;
    table.calls.read(table, settings::Node(entries, "", faults));
    if (faults.empty()) return "";
    const std::string place = faults.front().place;
    return concat(place.substr(std::min(place.find(']') + 2, place.size())), ": ",
                  faults.front().reason);
  }

  void write(const Table& table, std::size_t first, std::size_t last) const {
    const auto tag = [](const char* name) { return concat("<", name, ">"); };
    const auto end = [](const char* name) { return concat("</", name, ">"); };
    std::string text = tag(table.parent) + tag(table.section);
    for (std::size_t i = first; i < last; ++i) text += candidates_[i]->text();
    text += end(table.section) + end(table.parent);
    const Descriptor file(open(CFG_FILE_MPP, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file) writeAll(file.get(), text);
  }

  const std::vector<Candidate*>& candidates_;
  Json results_;
};

// The child's complaints are answers here, not news.
Json tried(const std::vector<Candidate*>& candidates) {
  const MemoryFile sink;
  dup2(sink.get(), STDOUT_FILENO);
  showLibraryLog(nullptr);
  return Trials(candidates).results();
}

}  // namespace

void judge(std::vector<Candidate>& candidates) {
  std::vector<Candidate*> entries;
  for (Candidate& candidate : candidates) {
    const Document document = parsedElement(candidate.element->all);
    if (document == nullptr)
      candidate.fault = "it is not well-formed XML";
    else if (candidate.list->table == nullptr)
      judgePreset(*document->FirstChildElement(), candidate);
    else if (candidate.fault = lacking(*document->FirstChildElement(), *candidate.list);
             candidate.fault.empty())
      entries.push_back(&candidate);
  }
  if (entries.empty()) return;
  const Json results = onScratchDevice({{CFG_FILE_MPP, ""}}, [&] { return tried(entries); });
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i]->record = results[i].at(kRecord);
    entries[i]->fault = results[i].at(kFault).text();
  }
}

}  // namespace camcfg::tool::device
