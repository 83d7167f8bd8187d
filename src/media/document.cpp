#include "media/document.h"

#include <cstdarg>
#include <cstdio>

#include "base/integer.h"
#include "camcfg/store.h"
#include "store/file_lock.h"

namespace camcfg {

using tinyxml2::XMLElement;

namespace {

char* const kFile = const_cast<char*>(CFG_FILE_MPP);

// A line of standard output, which is written when it ends, whole unless it is very long.
class Line {
 public:
  Line() { flockfile(stdout); }
  ~Line() {
    flush();
    funlockfile(stdout);
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void put(const char* text) {
    for (; *text != '\0'; ++text) put(*text);
  }
  void put(char c) {
    if (used_ == sizeof unwritten_) flush();
    unwritten_[used_++] = c;
  }

 private:
  void flush() {
    fwrite_unlocked(unwritten_, 1, used_, stdout);
    used_ = 0;
  }

  std::size_t used_ = 0;
  char unwritten_[512];
};

}  // namespace

void MediaDocument::print(const char* level, const char* message, ...) const {
  Line line;
  line.put("[");
  line.put(level);
  line.put("][CFG][");
  line.put(frame_);
  line.put("]: ");
  va_list args;
  va_start(args, message);
  for (; *message != '\0'; ++message) {
    if (*message != '%')
      line.put(*message);
    else if (*++message == 's')
      line.put(va_arg(args, const char*));
    else
      line.put(IntegerText(va_arg(args, int)).begin());
  }
  va_end(args);
}

XMLElement* MediaDocument::open(const char* section, tagBU_BOOL readOnly) const {
  closeRead();
  handle_ = CFG_GetDocByFileName(kFile, readOnly);
  writing_ = handle_ != nullptr && readOnly != BU_TRUE;
  XMLElement* element = find(section);
  // Deliberate: a file that could not be loaded holds no lock any more, so releasing it draws a
  // warning in write mode. Callers have always seen that line after the error.
  // [open-failure-warns]
  if (element == nullptr) static_cast<void>(giveUp(readOnly));
  return element;
}

XMLElement* MediaDocument::find(const char* section) const {
  if (handle_ == nullptr) {
    print(kError, "Config File open failed\n");
    return nullptr;
  }
  XMLElement* top = handle_->FirstChildElement(topElement_);
  if (top == nullptr) {
    print(kError, "<%s> not found\n", topElement_);
    return nullptr;
  }
  XMLElement* element = section == nullptr ? nullptr : top->FirstChildElement(section);
  if (element == nullptr)
    print(kError, "<%s> not found\n", section == nullptr ? "(null)" : section);
  return element;
}

std::int32_t MediaDocument::giveUp(tagBU_BOOL readOnly) const {
  const bool wrote = writing_;
  writing_ = false;
  closeRead();
  if (wrote)
    CFG_UnlockFile(kFile);
  else if (readOnly != BU_TRUE)
    releaseInsideProcess(kFile);
  return failure_;
}

void MediaDocument::leaveLocked() const {
  if (writing_) leaveLockedInsideProcess(kFile);
}

void MediaDocument::closeRead() const {
  leaveLocked();
  writing_ = false;
  delete handle_;
  handle_ = nullptr;
}

std::int32_t MediaDocument::closeWrite() const {
  if (handle_ == nullptr) return 0;
  const bool saved = CFG_SaveFile(handle_, kFile, BU_TRUE) == 0;
  writing_ = false;
  closeRead();
  return saved ? 0 : failure_;
}

bool MediaDocument::requireInt(const Attributes& attributes, std::size_t place, const char* path,
                               std::int32_t* value) const {
  *value = -1;
  attributes.readInt(place, *value);
  // Deliberate: a number written as -1 counts as missing. [minus-one-missing]
  if (*value == -1) reportMissing(attributes.name(place), path);
  return *value != -1;
}

bool MediaDocument::requireText(const Attributes& attributes, std::size_t place, const char* path,
                                std::string* value) const {
  const char* text = requireText(attributes, place, path);
  if (text != nullptr) *value = text;
  return text != nullptr;
}

const char* MediaDocument::requireText(const Attributes& attributes, std::size_t place,
                                       const char* path) const {
  const char* text = attributes.text(place);
  if (text == nullptr) reportMissing(attributes.name(place), path);
  return text;
}

void MediaDocument::reportMissing(const char* attribute, const char* path) const {
  print(kError, "Attr `%s` is required by %s .\n", attribute, path);
}

bool streamIsWritten = false;
bool liveMediaIsWritten = false;

}  // namespace camcfg

using camcfg::kLiveMedia;
using camcfg::kStream;

tinyxml2::XMLDocument* g_STREAM_xmlDoc = nullptr;
tinyxml2::XMLDocument* g_LM_xmlDoc = nullptr;

tinyxml2::XMLElement* CFG_MPP_Open(const char* pcSection, tagBU_BOOL enReadOnly) {
  return kStream.open(pcSection, enReadOnly);
}

int CFG_MPP_CloseRead() {
  kStream.closeRead();
  return 0;
}

int CFG_MPP_CloseWrite() {
  static_cast<void>(kStream.closeWrite());
  return 0;
}

tinyxml2::XMLElement* CFG_LM_Open(const char* pcSection, tagBU_BOOL enReadOnly) {
  return kLiveMedia.open(pcSection, enReadOnly);
}

int CFG_LM_CloseRead() {
  kLiveMedia.closeRead();
  return 0;
}

int CFG_LM_CloseWrite() {
  static_cast<void>(kLiveMedia.closeWrite());
  return 0;
}
