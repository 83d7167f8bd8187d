#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>

#include <stdexcept>

#include "camcfg/params.h"
#include "store/process_lock_test.h"
#include "support/traced_child.h"

namespace camcfg::tests {
namespace {

/// What a piece of work asks of the system that it would not ask without locks between programs.
struct Asked {
  int looks = 0;   ///< calls that name a path below "/run"
  int others = 0;  ///< locks, notes, waits, resolved paths
};

std::string textAt(pid_t child, std::uint64_t address) {
  char text[16] = {};
  const iovec here{text, sizeof text - 1};
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  const iovec there{reinterpret_cast<void*>(address), here.iov_len};
  process_vm_readv(child, &here, 1, &there, 1, 0);
  return text;
}

void count(pid_t child, Asked& asked) {
  __ptrace_syscall_info info{};
  if (ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) <= 0)
    throw std::runtime_error("system call");
  if (info.op != PTRACE_SYSCALL_INFO_ENTRY) return;
  const auto* arguments = info.entry.args;
  switch (info.entry.nr) {
    case SYS_newfstatat:
    case SYS_openat:
      if (textAt(child, arguments[1]).rfind("/run", 0) == 0) ++asked.looks;
      break;
    case SYS_fcntl:
      if (arguments[1] == F_OFD_SETLK) ++asked.others;
      break;
    case SYS_ftruncate:
    case SYS_fchmod:
    case SYS_readlinkat:
    case SYS_clock_nanosleep:
    case SYS_nanosleep:
      ++asked.others;
      break;
    default:
      break;
  }
}

Asked callsOf(const std::function<void()>& work) {
  TracedChild child(work);
  Asked asked;
  for (child.goOn(); child.isStopped(); child.goOn())
    if (child.isAtSystemCall()) count(child.id(), asked);
  EXPECT_TRUE(child.hasExited());
  return asked;
}

class SystemCallsTest : public ProcessLockTest {
 protected:
  SystemCallsTest() {
    device.write(CFG_FILE_BUSINESS, R"(<S><P Cur="1" Min="0" Max="9"/></S>)");
    device.write("/app/resource/defcfg/x.xml", "<A/>");
    device.write("/app/resource/defcfg/y.xml", "<A/>");
  }
  const std::vector<std::pair<const char*, std::function<void()>>> works = {
      {"read",
       [] {
         int value = 0;
         CFG_COM_GetIntParam(text("S"), text("P"), &value);
       }},
      {"write", [] { CFG_COM_SetIntParam(text("S"), text("P"), 2); }},
      {"write nothing", [] { CFG_COM_SetIntParam(text("S"), text("P"), 10); }},
      {"save",
       [] {
         tinyxml2::XMLDocument document;
         CFG_SaveFile(&document, text(kPath), BU_FALSE);
       }},
      {"verify", [] { CFG_VerifyFileFormat(); }},
  };
};

TEST_F(SystemCallsTest, WithoutTheDirectoryACallLooksForItOnceAndDoesNothingElse) {
  device.remove("/run");
  for (const auto& [name, work] : works) {
    const Asked asked = callsOf(work);
    EXPECT_EQ(asked.looks, 1) << name;
    EXPECT_EQ(asked.others, 0) << name;
  }
}

TEST_F(SystemCallsTest, WithTheDirectoryEveryCallLocks) {
  for (const auto& [name, work] : works) {
    const Asked asked = callsOf(work);
    EXPECT_GE(asked.looks, 2) << name;
    EXPECT_GE(asked.others, 1) << name;
  }
}

}  // namespace
}  // namespace camcfg::tests
