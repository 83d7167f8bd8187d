#include "torture/exhaustion/conditions.h"

#include <cerrno>

namespace camcfg::torture {
namespace {

bool isOpen(const FileCall& call) {
  return call.known->kind == CallKind::Open;
}

bool opensToWrite(const FileCall& call) {
  return isOpen(call) && call.writes;
}

bool movesBytes(const FileCall& call) {
  return call.known->kind == CallKind::Write || call.known->kind == CallKind::Copy;
}

bool looksUpName(const FileCall& call) {
  return isOpen(call) || (call.known->kind == CallKind::Status && call.named);
}

}  // namespace

const std::vector<Condition>& conditions() {
  static const std::vector<Condition> all = {
      {"no memory", ENOMEM, nullptr},
      {"no space to write (ENOSPC)", ENOSPC, movesBytes},
      {"no space to create (ENOSPC)", ENOSPC, opensToWrite},
      {"file-size limit (EFBIG)", EFBIG, movesBytes},
      {"no descriptors (EMFILE)", EMFILE, isOpen},
      {"read-only (EROFS)", EROFS, opensToWrite},
      {"no permission (EACCES)", EACCES, looksUpName},
      {"vanished (ENOENT)", ENOENT, looksUpName},
      // A position in a regular file can always be set.
      {"input/output error (EIO)", EIO,
       [](const FileCall& call) { return call.known->kind != CallKind::Position; }},
  };
  return all;
}

}  // namespace camcfg::torture
