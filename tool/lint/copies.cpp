#include <camcfg/types.h>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/repair.h"
#include "device/shared_files.h"
#include "lint/lint.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLNode;

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

void checkBackup(const device::ConfigFile& file, Findings& findings) {
  const std::string path = file.path(device::Place::Backup);
  switch (file.backup.state) {
    case device::State::Good:
      break;
    case device::State::OutOfStep: {
      const XMLNode* place = firstDifference(*file.main.document, *file.backup.document);
      findings.add(kCopiesDiffer, place == nullptr ? 1 : place->GetLineNum(),
                   concat("its backup ", path, " differs from here on"));
      break;
    }
    case device::State::Missing:
      findings.add(kBackupMissing, 1, "there is no backup " + path);
      break;
    default:
      findings.add(kBackupDamaged, 1, concat("its backup ", path, " ", file.backup.fault));
      break;
  }
}

void checkFactory(const device::ConfigFile& file, Findings& findings) {
  const device::Copy& factory = file.factory;
  const std::string path = file.path(device::Place::Default);
  // Where others have one, its own rule says what the lack of one means.
  if (factory.state == device::State::Missing && file.checkedAtStart)
    findings.addTo(path, kFactoryMissing, "there is no factory copy");
  else if (factory.state != device::State::Good && factory.state != device::State::Missing)
    findings.addTo(path, kFactoryDamaged, "the factory copy " + factory.fault);
}

void checkShared(const device::ConfigFile& file, Findings& findings) {
  const device::SharedFiles shared;
  std::vector<std::string> seen;
  for (const device::Place place : device::kPlaces) {
    const std::string path = file.path(place);
    if (file.copy(place).state == device::State::Missing || isAmong(seen, path)) continue;
    const std::vector<std::string> same = shared.copiesOfSame(path);
    seen.insert(seen.end(), same.begin(), same.end());
    for (const std::string& other : same) {
      if (other == path) continue;
      const bool isOther = device::nameOf(other) != file.name;
      findings.addTo(path, isOther ? kCopyOfAnother : kCopiesAreOne,
                     "it is the same file as " + other);
    }
  }
}

}  // namespace

void checkCopies(const Source& source, Findings& findings) {
  if (source.copies == nullptr) return;
  const device::ConfigFile& file = *source.copies;
  if (file.main.state == device::State::Missing)
    findings.add(kMainMissing, 1, "the main copy is missing; another copy exists");
  else
    checkBackup(file, findings);
  if (file.main.state == device::State::CutShort)
    findings.add(kCutShort, 1, "it " + file.main.fault);
  checkFactory(file, findings);
  checkShared(file, findings);
  if (!file.checkedAtStart)
    findings.add(
        kNotCheckedAtStart, 1,
        std::string("start-up verification does not check it: it is not in ") + CFG_DIR_DEFAULT);
  if (!device::Repair{file.name, device::Place::Backup, device::Place::Main}.fitsTheCopy())
    findings.add(kFileNameTooLong, 1,
                 concat("its name has ", file.name.size(),
                        " bytes and is too long for the library to copy it"));
}

}  // namespace camcfg::tool::lint
