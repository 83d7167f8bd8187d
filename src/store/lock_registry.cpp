#include <time.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/log.h"
#include "base/never_freed.h"
#include "camcfg/store.h"
#include "store/file_lock.h"

std::map<std::string, tag_CFG_FILE_LOCK> g_mapFileLock;
pthread_mutex_t g_lockMapFileLock = PTHREAD_MUTEX_INITIALIZER;

namespace {

using camcfg::Place;

constexpr int kTimeoutSeconds = 10;

// The lines that device logs have always shown for these two records.
constexpr Place kTimeoutPlace{"cfgLockFile", 88};
constexpr Place kNotLockedPlace{"cfgUnlockFile", 115};

tag_CFG_FILE_LOCK* findRecord(const char* path) {
  pthread_mutex_lock(&g_lockMapFileLock);
  tag_CFG_FILE_LOCK* record = cfgGetLockByFile(path);
  pthread_mutex_unlock(&g_lockMapFileLock);
  return record;
}

// The flag is shared by all threads and stays a plain integer for those who read the record.
void setLocked(tag_CFG_FILE_LOCK* record, std::int32_t locked) {
  __atomic_store_n(&record->s32Locked, locked, __ATOMIC_RELEASE);
}

bool takeLocked(tag_CFG_FILE_LOCK* record) {
  return __atomic_exchange_n(&record->s32Locked, 0, __ATOMIC_ACQ_REL) != 0;
}

bool lockBeforeDeadline(pthread_mutex_t* mutex) {
  timespec deadline{};
  timespec_get(&deadline, TIME_UTC);
  deadline.tv_sec += kTimeoutSeconds;
  return pthread_mutex_timedlock(mutex, &deadline) == 0;
}

}  // namespace

tag_CFG_FILE_LOCK* cfgGetLockByFile(const char* path) try {
  if (path == nullptr) return nullptr;
  // A device has few files. A linear search allocates no memory, unlike a key to look up,
  // so a lock once taken can always be released.
  for (auto& [key, record] : g_mapFileLock)
    if (std::strcmp(key.c_str(), path) == 0) return &record;

  auto mutex = std::make_unique<pthread_mutex_t>();
  std::string key;
  key = path;
  tag_CFG_FILE_LOCK& record = g_mapFileLock[std::move(key)];
  pthread_mutex_init(mutex.get(), nullptr);
  record.pstMutex = camcfg::neverFreed(std::move(mutex));
  return &record;
} catch (const std::bad_alloc&) {
  return nullptr;
}

namespace camcfg {

tag_CFG_FILE_LOCK* takeLock(const char* path) {
  tag_CFG_FILE_LOCK* record = findRecord(path);
  if (record != nullptr && lockBeforeDeadline(record->pstMutex)) {
    setLocked(record, 1);
    return record;
  }
  log(Level::Warning, kTimeoutPlace, "Lock %s timeout, a deadlock may exist!", path);
  std::printf("[Warn][Cfg] Lock %s timeout, a deadlock may exist!\n", path);
  // Deliberate: the flag goes down although another holder may own the mutex. That holder's unlock
  // then warns and leaves the mutex locked, as programs on devices have always experienced it.
  // [lock-flag-cleared]
  if (record != nullptr) setLocked(record, 0);
  return nullptr;
}

void releaseLock(tag_CFG_FILE_LOCK* record, const char* path) {
  if (record != nullptr && takeLocked(record)) {
    pthread_mutex_unlock(record->pstMutex);
    return;
  }
  log(Level::Warning, kNotLockedPlace, "%s has not been locked before unlock!", path);
  std::printf("[Warn][Cfg] %s has not been locked before unlock!\n", path);
}

}  // namespace camcfg

int cfgLockFile(const char* path) {
  return camcfg::takeLock(path) == nullptr ? -1 : 0;
}

int cfgUnlockFile(const char* path) {
  camcfg::releaseLock(findRecord(path), path);
  return 0;
}

int CFG_UnlockFile(char* pcPath) {
  return cfgUnlockFile(pcPath);
}
