#include <time.h>

#include <cstdio>
#include <cstring>

#include "base/log.h"
#include "camcfg/store.h"
#include "store/file_lock.h"
#include "store/process_lock.h"

namespace {

using camcfg::Level;
using camcfg::Place;

constexpr int kTimeoutSeconds = 10;

// The lines that device logs have always shown for these two records.
constexpr Place kTimeoutPlace{"cfgLockFile", 88};
constexpr Place kNotLockedPlace{"cfgUnlockFile", 115};

[[gnu::always_inline]] inline tag_CFG_FILE_LOCK* findRecord(const char* path) {
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

bool isLocked(const tag_CFG_FILE_LOCK* record) {
  return __atomic_load_n(&record->s32Locked, __ATOMIC_ACQUIRE) != 0;
}

timespec lockDeadline() {
  timespec deadline{};
  timespec_get(&deadline, TIME_UTC);
  deadline.tv_sec += kTimeoutSeconds;
  return deadline;
}

void reportTimeOut(const char* path) {
  camcfg::log(Level::Warning, kTimeoutPlace, "Lock %s timeout, a deadlock may exist!", path);
  std::printf("[Warn][Cfg] Lock %s timeout, a deadlock may exist!\n", path);
}

[[gnu::always_inline]] inline void releaseInside(tag_CFG_FILE_LOCK* record, const char* path) {
  if (record != nullptr && takeLocked(record)) {
    pthread_mutex_unlock(record->pstMutex);
    return;
  }
  camcfg::log(Level::Warning, kNotLockedPlace, "%s has not been locked before unlock!", path);
  std::printf("[Warn][Cfg] %s has not been locked before unlock!\n", path);
}

}  // namespace

namespace camcfg {

tag_CFG_FILE_LOCK* takeLock(const char* path, Access access) {
  tag_CFG_FILE_LOCK* record = findRecord(path);
  const timespec deadline = lockDeadline();
  const bool inside =
      record != nullptr && pthread_mutex_timedlock(record->pstMutex, &deadline) == 0;
  if (inside && takeBetweenProcesses(record, path, access, deadline)) {
    setLocked(record, 1);
    return record;
  }
  if (inside) pthread_mutex_unlock(record->pstMutex);
  reportTimeOut(path);
  // Deliberate: the flag goes down although another holder may own the mutex. That holder's unlock
  // then warns and leaves the mutex locked, as programs on devices have always experienced it.
  // [lock-flag-cleared]
  if (record != nullptr && !inside) {
    changeHolding(record, Change::Abandon);
    setLocked(record, 0);
  }
  return nullptr;
}

void releaseLock(tag_CFG_FILE_LOCK* record, const char* path) {
  if (record != nullptr)
    changeHolding(record, isLocked(record) ? Change::Release : Change::ReleaseAbandoned);
  releaseInside(record, path);
}

void releaseInsideProcess(const char* path) {
  releaseInside(findRecord(path), path);
}

void leaveLockedInsideProcess(const char* path) {
  changeHolding(findRecord(path), Change::LeaveToOthers);
}

WorkLock::WorkLock(const char* path, const bool* asked) : owner_(nullptr) {
  if (asked != nullptr && !*asked) return;
  pthread_mutex_lock(&g_lockMapFileLock);
  const tag_CFG_FILE_LOCK* record = searchRecord(path);
  pthread_mutex_unlock(&g_lockMapFileLock);
  const Holding holding = holdingOf(record);
  if (holding == Holding::Exclusive) owner_ = record;
  // Whoever locked it when the device did not ask for more keeps to that until it is done.
  const bool decided = record != nullptr && holding != Holding::Other && isLocked(record);
  if (owner_ != nullptr || decided) return;
  owner_ = this;
  had_ = takeBetweenProcesses(this, path, Access::Write, lockDeadline());
  if (!had_) reportTimeOut(path);
}

WorkLock::~WorkLock() {
  if (owner_ == this) changeHolding(this, Change::Release);
}

}  // namespace camcfg

int cfgLockFile(const char* path) {
  return camcfg::takeLock(path, camcfg::Access::Write) == nullptr ? -1 : 0;
}

int cfgUnlockFile(const char* path) {
  camcfg::releaseLock(findRecord(path), path);
  return 0;
}

int CFG_UnlockFile(char* pcPath) {
  return cfgUnlockFile(pcPath);
}
