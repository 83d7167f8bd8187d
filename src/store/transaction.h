#ifndef CAMCFG_STORE_TRANSACTION_H
#define CAMCFG_STORE_TRANSACTION_H

#include <memory>

#include "camcfg/store.h"

namespace camcfg {

/// A file opened for reading: loaded, its lock released, the document private to this object.
class ReadDocument {
 public:
  explicit ReadDocument(const char* path)
      : document_(CFG_GetDocByFileName(const_cast<char*>(path), BU_TRUE)) {}

  explicit operator bool() const { return document_ != nullptr; }
  tinyxml2::XMLDocument* get() const { return document_.get(); }
  tinyxml2::XMLElement* root() const { return document_->FirstChildElement(); }

  /// Deletes the document before this object goes.
  void close() { document_.reset(); }

  /// Hands out the document, the caller's to delete.
  tinyxml2::XMLDocument* release() { return document_.release(); }

 private:
  std::unique_ptr<tinyxml2::XMLDocument> document_;
};

/// A file opened for writing: its lock is held until save(), or until this object goes without a
/// save, in which case the file stays as it was.
class WriteDocument {
 public:
  explicit WriteDocument(const char* path)
      : path_(const_cast<char*>(path)), document_(CFG_GetDocByFileName(path_, BU_FALSE)) {
    locked_ = document_ != nullptr;
  }
  ~WriteDocument() { close(); }
  WriteDocument(const WriteDocument&) = delete;
  WriteDocument& operator=(const WriteDocument&) = delete;

  explicit operator bool() const { return document_ != nullptr; }
  tinyxml2::XMLDocument* get() const { return document_.get(); }
  tinyxml2::XMLElement* root() const { return document_->FirstChildElement(); }

  /// Deletes the document and, unless it was saved, releases the lock, before this object goes.
  void close() {
    document_.reset();
    if (locked_) CFG_UnlockFile(path_);
    locked_ = false;
  }

  /// Saves the file and its backup and releases the lock. False when memory ran out.
  bool save() {
    locked_ = false;
    return CFG_SaveFile(document_.get(), path_, BU_TRUE) == 0;
  }

  /// Saves as save() does but keeps the lock until this object goes.
  bool saveKeepingLock() { return CFG_SaveFile(document_.get(), path_, BU_FALSE) == 0; }

  /// Deletes nothing and releases nothing: the lock outlives this object.
  void leaveLocked() { locked_ = false; }

  /// Hands out the document with the lock held: the caller's to save or give up, and to delete.
  tinyxml2::XMLDocument* release() {
    leaveLocked();
    return document_.release();
  }

 private:
  char* path_;
  std::unique_ptr<tinyxml2::XMLDocument> document_;
  bool locked_ = false;
};

}  // namespace camcfg

#endif
