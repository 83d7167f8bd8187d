#include "device/change.h"

#include <camcfg/store.h>

#include "base/library_log.h"
#include "base/refusal.h"
#include "device/copy.h"
#include "device/room.h"

namespace camcfg::tool::device {
namespace {

// Both copies are written while the space of the former ones may not be free yet.
void requireWritable(const Change& change, const std::string& former) {
  const std::uintmax_t bytes = former.size() + change.growth;
  const std::string fault = whyNotWritable({{change.path, bytes}, {backupOf(change.path), bytes}});
  if (!fault.empty()) throw Refusal(change.what + ": " + fault);
}

bool holds(const Copy& copy, const std::string& contents) {
  return copy.loads() && written(*copy.document) == contents;
}

}  // namespace

Left putBack(const std::string& path, tinyxml2::XMLDocument& former) {
  const std::string contents = written(former);
  if (holds(loadCopy(path), contents)) return {true, "nothing was changed"};
  CFG_SaveFile(&former, argument(path), BU_FALSE);
  if (!holds(loadCopy(path), contents))
    return {false, "its former contents could not be put back; make room and run 'camcfg verify'"};
  if (!holds(loadCopy(backupOf(path)), contents))
    return {false, "its former contents are back, but not in " + backupOf(path)};
  return {true, "its former contents are back"};
}

void makeChange(const Change& change) {
  const Document former = requireDocument(change.path);
  requireWritable(change, written(*former));

  forgetComplaint();
  const bool accepted = change.make();
  const std::string complaint = lastComplaint();

  const Copy main = loadCopy(change.path);
  if (accepted && main.loads() && change.arrived(*main.document)) {
    const std::string backup = backupOf(change.path);
    if (sameContents(main, loadCopy(backup))) return;
    throw Refusal(change.what + ": stored in " + change.path + " but not in its backup " + backup +
                  "; run 'camcfg verify --resync'");
  }
  std::string fault = accepted ? "it did not arrive in " + change.path : "the library refused it";
  if (!complaint.empty()) fault += " (" + complaint + ")";
  throw Refusal(change.what + ": " + fault + "; " + putBack(change.path, *former).text);
}

}  // namespace camcfg::tool::device
