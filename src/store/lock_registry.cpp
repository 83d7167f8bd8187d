#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/never_freed.h"
#include "camcfg/store.h"
#include "store/file_lock.h"

std::map<std::string, tag_CFG_FILE_LOCK> g_mapFileLock;
pthread_mutex_t g_lockMapFileLock = PTHREAD_MUTEX_INITIALIZER;

tag_CFG_FILE_LOCK* cfgGetLockByFile(const char* path) try {
  if (path == nullptr) return nullptr;
  if (tag_CFG_FILE_LOCK* known = camcfg::searchRecord(path)) return known;
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
