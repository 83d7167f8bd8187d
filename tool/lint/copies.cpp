#include <camcfg/types.h>

#include "device/repair.h"
#include "lint/elements.h"
#include "lint/subject.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLNode;

namespace {

constexpr Rule kMainMissing{
    "main-missing", Severity::Error,
    "A file has no main copy, so every call on it fails until start-up verification restores it.",
    "/cfg1/mpp_cfg.xml without /cfg0/mpp_cfg.xml"};
constexpr Rule kBackupMissing{"backup-missing", Severity::Warning,
                              "A file has no backup: when its main copy is damaged, start-up "
                              "verification falls back on the factory defaults, or on nothing.",
                              "/cfg0/mpp_cfg.xml without /cfg1/mpp_cfg.xml"};
constexpr Rule kBackupDamaged{"backup-damaged", Severity::Warning,
                              "The backup of a file cannot be loaded, and so restores nothing.",
                              "/cfg1/mpp_cfg.xml is empty"};
constexpr Rule kCopiesDiffer{
    "copies-differ", Severity::Warning,
    "Main copy and backup differ: when the main copy is damaged, other settings come back.",
    R"(<Rtsp Cur="554"/> in /cfg0, <Rtsp Cur="8554"/> in /cfg1)"};
constexpr Rule kCutShort{
    "cut-short", Severity::Error,
    "The main copy ends before an element that its backup has, as a save leaves it that is cut off "
    "there. It loads, so start-up verification does not restore it.",
    "/cfg0/mpp_cfg.xml without <LiveMediaService>, which its backup has"};
constexpr Rule kNotChecked{"not-checked-at-start", Severity::Warning,
                           "Start-up verification checks the names of the factory defaults only: "
                           "this file is never checked or restored.",
                           "/cfg0/extra.xml without /app/resource/defcfg/extra.xml"};
constexpr Rule kNameTooLong{"file-name-too-long", Severity::Error,
                            "The command that copies a file is cut to 127 bytes: the backup is "
                            "never refreshed, nor is the file restored.",
                            "/cfg0/ and a name of 56 bytes"};

// Apart from what is inside them. XMLNode::ShallowEqual passes over the names of attributes.
bool areAlike(const XMLNode& a, const XMLNode& b) {
  tinyxml2::XMLDocument copies;
  return written(*a.ShallowClone(&copies)) == written(*b.ShallowClone(&copies));
}

// The first place of a document where another one differs; null if they are the same up to its end.
const XMLNode* firstDifference(const XMLNode& a, const XMLNode& b) {
  const XMLNode* left = a.FirstChild();
  const XMLNode* right = b.FirstChild();
  for (; left != nullptr && right != nullptr;
       left = left->NextSibling(), right = right->NextSibling()) {
    if (!areAlike(*left, *right)) return left;
    const XMLNode* inside = firstDifference(*left, *right);
    if (inside != nullptr) return inside;
  }
  if (left != nullptr) return left;
  return right == nullptr || a.ToDocument() != nullptr ? nullptr : &a;
}

void tellDifference(const device::ConfigFile& file, Findings& findings) {
  const XMLNode* place = firstDifference(*file.main.document, *file.backup.document);
  const std::string what =
      "its backup " + file.path(device::Place::Backup) + " differs from here on";
  findings.add(kCopiesDiffer, place == nullptr ? 1 : place->GetLineNum(), what);
}

void checkBackup(const device::ConfigFile& file, Findings& findings) {
  const std::string path = file.path(device::Place::Backup);
  switch (file.backup.state) {
    case device::State::Good:
      break;
    case device::State::OutOfStep:
      tellDifference(file, findings);
      break;
    case device::State::Missing:
      findings.add(kBackupMissing, 1, "there is no backup " + path);
      break;
    default:
      findings.add(kBackupDamaged, 1, "its backup " + path + " " + file.backup.fault);
      break;
  }
}

void check(const Source& source, Findings& findings) {
  if (source.copies == nullptr) return;
  const device::ConfigFile& file = *source.copies;
  if (file.main.state == device::State::Missing)
    findings.add(kMainMissing, 1, "there is no such file, but another copy of it");
  else
    checkBackup(file, findings);
  if (file.main.state == device::State::CutShort)
    findings.add(kCutShort, 1, "it " + file.main.fault);
  if (!file.checkedAtStart)
    findings.add(
        kNotChecked, 1,
        std::string("start-up verification does not check it: it is not in ") + CFG_DIR_DEFAULT);
  if (!device::Repair{file.name, device::Place::Backup, device::Place::Main}.fitsTheCopy())
    findings.add(kNameTooLong, 1,
                 "its name has " + std::to_string(file.name.size()) +
                     " bytes and is too long for the library to copy it");
}

}  // namespace

Subject copies() {
  return {"copies",
          {&kMainMissing, &kBackupMissing, &kBackupDamaged, &kCopiesDiffer, &kCutShort,
           &kNotChecked, &kNameTooLong},
          std::nullopt,
          check};
}

}  // namespace camcfg::tool::lint
