#include "torture/tracer/known_calls.h"

#include <sys/syscall.h>

#include <algorithm>
#include <iterator>

namespace camcfg::torture {
namespace {

using Kind = CallKind;

constexpr KnownCall kKnown[] = {
    // number, name, kind, directory, path, descriptor, size, flags, new name's directory and path
    {SYS_open, "open", Kind::Open, -1, 0, -1, -1, 1},
    {SYS_openat, "openat", Kind::Open, 0, 1, -1, -1, 2},
    {SYS_read, "read", Kind::Read, -1, -1, 0, 2},
    {SYS_pread64, "pread", Kind::Read, -1, -1, 0, 2},
    {SYS_write, "write", Kind::Write, -1, -1, 0, 2},
    {SYS_pwrite64, "pwrite", Kind::Write, -1, -1, 0, 2},
    {SYS_copy_file_range, "copy_file_range", Kind::Copy, -1, -1, 2, 4},
    {SYS_sendfile, "sendfile", Kind::Copy, -1, -1, 0, 3},
    {SYS_close, "close", Kind::Close, -1, -1, 0},
    {SYS_fstat, "fstat", Kind::Status, -1, -1, 0},
    {SYS_stat, "stat", Kind::Status, -1, 0},
    {SYS_lstat, "lstat", Kind::Status, -1, 0},
    {SYS_newfstatat, "fstatat", Kind::Status, 0, 1},
    {SYS_access, "access", Kind::Status, -1, 0},
    {SYS_faccessat, "faccessat", Kind::Status, 0, 1},
    {SYS_lseek, "lseek", Kind::Position, -1, -1, 0},
    {SYS_getdents64, "getdents", Kind::List, -1, -1, 0},
    {SYS_truncate, "truncate", Kind::Change, -1, 0},
    {SYS_ftruncate, "ftruncate", Kind::Change, -1, -1, 0},
    {SYS_fsync, "fsync", Kind::Change, -1, -1, 0},
    {SYS_fdatasync, "fdatasync", Kind::Change, -1, -1, 0},
    {SYS_unlink, "unlink", Kind::Change, -1, 0},
    {SYS_unlinkat, "unlinkat", Kind::Change, 0, 1},
    {SYS_rename, "rename", Kind::Change, -1, 0, -1, -1, -1, -1, 1},
    {SYS_renameat, "renameat", Kind::Change, 0, 1, -1, -1, -1, 2, 3},
    {SYS_renameat2, "renameat2", Kind::Change, 0, 1, -1, -1, -1, 2, 3},
    {SYS_link, "link", Kind::Change, -1, 0, -1, -1, -1, -1, 1},
    {SYS_linkat, "linkat", Kind::Change, 0, 1, -1, -1, -1, 2, 3},
    {SYS_mkdir, "mkdir", Kind::Change, -1, 0},
    {SYS_mkdirat, "mkdirat", Kind::Change, 0, 1},
    {SYS_rmdir, "rmdir", Kind::Change, -1, 0},
    {SYS_chmod, "chmod", Kind::Change, -1, 0},
    {SYS_fchmod, "fchmod", Kind::Change, -1, -1, 0},
    {SYS_fchmodat, "fchmodat", Kind::Change, 0, 1},
};

}  // namespace

std::vector<long> knownNumbers() {
  std::vector<long> numbers;
  for (const KnownCall& call : kKnown) numbers.push_back(call.number);
  return numbers;
}

const KnownCall* findKnownCall(long number) {
  const auto* found = std::find_if(std::begin(kKnown), std::end(kKnown),
                                   [=](const KnownCall& call) { return call.number == number; });
  return found == std::end(kKnown) ? nullptr : found;
}

}  // namespace camcfg::torture
