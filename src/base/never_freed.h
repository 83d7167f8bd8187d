#ifndef CAMCFG_BASE_NEVER_FREED_H
#define CAMCFG_BASE_NEVER_FREED_H

#include <memory>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CAMCFG_LEAKS_ARE_LOOKED_FOR
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define CAMCFG_LEAKS_ARE_LOOKED_FOR
#endif

#ifdef CAMCFG_LEAKS_ARE_LOOKED_FOR
#include <sanitizer/lsan_interface.h>
#endif

namespace camcfg {

/// Keeps an object until the process ends, on purpose. Programs that look for leaks, such as the
/// tests of applications, then do not report it.
template <typename T>
T* neverFreed(std::unique_ptr<T> object) {
#ifdef CAMCFG_LEAKS_ARE_LOOKED_FOR
  __lsan_ignore_object(object.get());
#endif
  return object.release();
}

}  // namespace camcfg

#endif
