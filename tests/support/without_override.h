#ifndef CAMCFG_TESTS_SUPPORT_WITHOUT_OVERRIDE_H
#define CAMCFG_TESTS_SUPPORT_WITHOUT_OVERRIDE_H

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <stdexcept>

namespace camcfg::tests {

/// While an object of this class lives, file permissions hold for this thread even if it is root's.
class WithoutOverride {
 public:
  WithoutOverride() {
    call(SYS_capget, before_);
    Sets sets = before_;
    sets.data[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
    call(SYS_capset, sets);
  }
  ~WithoutOverride() { syscall(SYS_capset, &before_.header, before_.data); }
  WithoutOverride(const WithoutOverride&) = delete;
  WithoutOverride& operator=(const WithoutOverride&) = delete;

 private:
  struct Sets {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3]{};
  };
  static void call(long number, Sets& sets) {
    if (syscall(number, &sets.header, sets.data) != 0) throw std::runtime_error("capabilities");
  }

  Sets before_;
};

}  // namespace camcfg::tests

#endif
