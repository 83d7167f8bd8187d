#include "device/verification.h"

#include <camcfg/store.h>

#include "base/library_log.h"
#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

// The library opens whatever stands under a name that it checks, and would wait at a pipe for ever.
void requireNoPipe(const FileSet& set) {
  for (const ConfigFile& file : set.files)
    for (const Place place : kPlaces)
      if (file.copy(place).isPipe)
        throw Refusal(Status::Unusable, file.path(place) + " is a pipe; move it away");
}

// A main copy that is no file, or has too long a name, must not keep the others from being
// restored.
void requireWritable(const std::vector<Repair>& repairs, const FileSet& set) {
  std::vector<Writing> mains;
  for (const Repair& repair : repairs) {
    const bool isFile = set.find(repair.name)->main.state != State::NotAFile;
    if (repair.to == Place::Main && isFile && repair.fitsTheCopy())
      mains.push_back(writingOf(repair));
  }
  const std::string fault = whyNotWritable(mains);
  if (!fault.empty()) throw Refusal(Status::Unusable, "cannot restore main copies: " + fault);
}

void verifyAsAtStart(const FileSet& set) {
  requireAnyFile(set);
  forgetComplaint();
  if (CFG_VerifyFileFormat() == 0) return;
  const std::string complaint = lastComplaint();
  throw Refusal(Status::Unusable, complaint.empty() ? "out of memory" : complaint);
}

}  // namespace

void Verification::startUp() {
  requireNoPipe(found_);
  const std::vector<Repair> repairs = startUpRepairs(found_);
  requireWritable(repairs, found_);
  for (const Repair& repair : repairs) kept_.keep(repair, found_);
  verifyAsAtStart(found_);
  now_ = surveyFiles();
  for (const Repair& repair : repairs) outcomes_.push_back({repair, whyNotDone(repair)});
}

void Verification::level() {
  levelled_ = true;
  for (const Repair& repair : levelRepairs(now_)) {
    std::string fault;
    try {
      kept_.keep(repair, now_);
      fault = carryOut(repair);
    } catch (const Refusal& refusal) {
      fault = refusal.what();
    }
    outcomes_.push_back({repair, fault});
  }
  now_ = surveyFiles();
}

const Repair* Verification::restored(const std::string& name, Place place) const {
  const Repair* last = nullptr;
  for (const Outcome& outcome : outcomes_)
    if (outcome.fault.empty() && outcome.repair.name == name && outcome.repair.to == place)
      last = &outcome.repair;
  return last;
}

}  // namespace camcfg::tool::device
