#ifndef CAMCFG_MEDIA_DOCUMENT_H
#define CAMCFG_MEDIA_DOCUMENT_H

#include <string>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"
#include "media/attributes.h"

namespace camcfg {

/// Level words of the console lines.
inline constexpr char kError[] = "Error";
inline constexpr char kWarning[] = "Warning";
inline constexpr char kInfo[] = "Info";

/// The media file as one family sees it. The families that share the file differ in the values
/// given here and do everything else alike.
class MediaDocument {
 public:
  /// @param handle      the family's exported handle of its open document
  /// @param writing     whether that was opened for writing
  /// @param topElement  element at the top of the file that holds the family's sections
  /// @param frame       the family's name in its console lines
  /// @param failure     what the family's calls return when they fail
  constexpr MediaDocument(tinyxml2::XMLDocument*& handle, bool& writing, const char* topElement,
                          const char* frame, std::int32_t failure)
      : handle_(handle),
        writing_(writing),
        topElement_(topElement),
        frame_(frame),
        failure_(failure) {}

  /// Leaves the open document as it is and its file locked, for this process only.
  void leaveLocked() const;

  /// Loads the file into the handle, in place of a document that is still open, and finds a
  /// section.
  /// @return the section; null with the handle cleared and, in write mode, the lock released
  tinyxml2::XMLElement* open(const char* section, tagBU_BOOL readOnly) const;

  /// Drops the open document; a lock that it holds stays held for this process.
  void closeRead() const;

  /// Saves the open document, releases its lock and drops it.
  /// @return 0, or the family's failure when memory ran out while saving
  std::int32_t closeWrite() const;

  /// Drops the document when memory ran out; in write mode the lock is released as well.
  /// @return the family's failure
  std::int32_t giveUp(tagBU_BOOL readOnly) const;

  /// What the family's calls return when they fail.
  constexpr std::int32_t failure() const { return failure_; }

  /// Prints a message in the family's frame on standard output.
  void print(const char* level, const char* message, ...) const
      __attribute__((format(printf, 3, 4)));

  /// Reads an attribute that an element must have, or reports it missing at `path`. The value -1
  /// counts as missing.
  bool requireInt(const Attributes& attributes, std::size_t place, const char* path,
                  std::int32_t* value) const;
  bool requireText(const Attributes& attributes, std::size_t place, const char* path,
                   std::string* value) const;
  /// @return the text; null when it is missing
  const char* requireText(const Attributes& attributes, std::size_t place, const char* path) const;
  void reportMissing(const char* attribute, const char* path) const;

 private:
  tinyxml2::XMLElement* find(const char* section) const;

  tinyxml2::XMLDocument*& handle_;
  bool& writing_;
  const char* topElement_;
  const char* frame_;
  std::int32_t failure_;
};

extern bool streamIsWritten;
extern bool liveMediaIsWritten;

inline constexpr MediaDocument kStream(g_STREAM_xmlDoc, streamIsWritten, "Stream", "MppStream",
                                       CFG_MPP_ERR);
inline constexpr MediaDocument kLiveMedia(g_LM_xmlDoc, liveMediaIsWritten, "LiveMediaService",
                                          "LiveMedia", CFG_LM_ERR);

}  // namespace camcfg

#endif
