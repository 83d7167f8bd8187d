#ifndef CAMCFG_FUZZ_ROUND_TRIP_H
#define CAMCFG_FUZZ_ROUND_TRIP_H

#include <camcfg/livemedia.h>
#include <camcfg/stream.h>

#include <list>
#include <string>

#include "fuzz/device.h"

namespace camcfg::fuzz {

/// One section of the media file.
template <typename Record>
struct Section {
  int (*load)(std::list<Record>&);
  int (*dump)(const std::list<Record>&);
  /// Whether a record that was loaded can be loaded again once it was dumped.
  bool (*survives)(const Record&);
  /// All that is to come back of a record.
  std::string (*form)(const Record&);
};

template <typename Record>
std::string formOf(const Section<Record>& section, const std::list<Record>& records) {
  std::string form;
  for (const Record& record : records) form += section.form(record) + "\n";
  return form;
}

inline void closeMedia() {
  CFG_MPP_CloseRead();
  CFG_LM_CloseRead();
}

/// Loads a section, dumps what was loaded, as far as it survives that, and loads it again.
template <typename Record>
void roundTrip(const Section<Record>& section) {
  std::list<Record> records;
  section.load(records);
  closeMedia();
  records.remove_if([&](const Record& record) { return !section.survives(record); });
  if (section.dump(records) != 0) return;
  std::list<Record> again;
  require(section.load(again) == 0, "a section that was dumped can be loaded");
  require(formOf(section, again) == formOf(section, records), "records are loaded as dumped");
}

/// A form is its fields, each closed off.
inline std::string field(const std::string& text) {
  return "'" + asReadBack(text) + "' ";
}
inline std::string field(int number) {
  return std::to_string(number) + " ";
}

template <typename Record>
bool always(const Record& /*record*/) {
  return true;
}

}  // namespace camcfg::fuzz

#endif
