/// @file
/// The media stream layout, `<Stream>` of "/cfg0/mpp_cfg.xml": stream sources (encoders and audio
/// inputs) in its `<StreamSource>`, stream caches (buffers that carry one source each) in its
/// `<StreamCache>`.
///
/// A loader reads a whole section into the caller's list, a dumper replaces a whole section by the
/// list, an updater changes one cache in place. Each opens and closes the family's document itself;
/// CFG_MPP_Open and the two close operations serve programs that read or edit the elements on their
/// own.
///
/// Results: 0 or CFG_MPP_ERR, unless stated otherwise. A save that fails is not noticed. Running
/// out of memory is CFG_MPP_ERR with the document dropped and no lock held.
/// Prints: on standard output only, each message in the frame "[LEVEL][CFG][MppStream]: MESSAGE".
/// "Attr" below stands for the line "[Error][CFG][MppStream]: Attr `NAME` is required by PATH .\n"
/// with an attribute's name and the path of the element it was sought in. An integer attribute
/// counts as missing when it is absent, no integer or -1; a text attribute when it is absent.
/// Element names inside a section match in upper and lower case alike, attribute names exactly.
/// Threads: one at a time for the whole family, because it has one document, and none at the
/// same time in the live media family, which works on the same file. Families of other files may
/// run at the same time.
#ifndef CAMCFG_STREAM_H
#define CAMCFG_STREAM_H

#include <camcfg/types.h>
#include <tinyxml2.h>

#include <list>
#include <memory>
#include <string>

/// Failure of a loader, dumper or updater of this family.
static const std::int32_t CFG_MPP_ERR = static_cast<std::int32_t>(0x80002205);

/// Kinds of stream source, values of tag_CFG_STREAM_SOURCE_T::s32Type.
static const std::int32_t CFG_STREAM_SOURCE_VENC = 1;  ///< video encoder
static const std::int32_t CFG_STREAM_SOURCE_AI = 2;    ///< audio input
static const std::int32_t CFG_STREAM_SOURCE_AENC = 3;  ///< audio encoder

/// A stream source: what the three kinds have in common, which is every field. Records are made as
/// one of the kinds below and destroyed through this type.
struct tag_CFG_STREAM_SOURCE_T {
  std::int32_t s32Type = 0;     ///< the kind; agrees with the record's own class
  std::int32_t s32Id = -1;      ///< "Id": the source's number
  std::string strName;          ///< "Name": the source's name
  std::int32_t s32Enabled = 0;  ///< "Enabled": nonzero when the source is enabled
  /// "ChnId", "AiId" or "AencId": number of the encoder channel, audio input or audio encoder. Not
  /// set in a new record; the loader always fills it in.
  std::int32_t s32ChnId;

  tag_CFG_STREAM_SOURCE_T() = default;
  virtual ~tag_CFG_STREAM_SOURCE_T() = default;
};
/// Short name of the stream source record.
typedef struct tag_CFG_STREAM_SOURCE_T CFG_STREAM_SOURCE_T;

/// A video encoder as stream source: `<VENC Id="" Name="" ChnId=""/>`.
struct tag_CFG_STREAM_SOURCE_VENC_T : public tag_CFG_STREAM_SOURCE_T {
  tag_CFG_STREAM_SOURCE_VENC_T() { s32Type = CFG_STREAM_SOURCE_VENC; }
  ~tag_CFG_STREAM_SOURCE_VENC_T() override = default;
};
/// Short name of the video encoder record.
typedef struct tag_CFG_STREAM_SOURCE_VENC_T CFG_STREAM_SOURCE_VENC_T;

/// An audio input as stream source: `<AI Id="" Name="" AiId=""/>`.
struct tag_CFG_STREAM_SOURCE_AI_T : public tag_CFG_STREAM_SOURCE_T {
  tag_CFG_STREAM_SOURCE_AI_T() { s32Type = CFG_STREAM_SOURCE_AI; }
  ~tag_CFG_STREAM_SOURCE_AI_T() override = default;
};
/// Short name of the audio input record.
typedef struct tag_CFG_STREAM_SOURCE_AI_T CFG_STREAM_SOURCE_AI_T;

/// An audio encoder as stream source: `<AENC Id="" Name="" AencId=""/>`.
struct tag_CFG_STREAM_SOURCE_AENC_T : public tag_CFG_STREAM_SOURCE_T {
  tag_CFG_STREAM_SOURCE_AENC_T() { s32Type = CFG_STREAM_SOURCE_AENC; }
  ~tag_CFG_STREAM_SOURCE_AENC_T() override = default;
};
/// Short name of the audio encoder record.
typedef struct tag_CFG_STREAM_SOURCE_AENC_T CFG_STREAM_SOURCE_AENC_T;

/// A stream cache: a buffer of s32BufSize x s32BufUnit bytes that carries one of the stream sources
/// it allows.
struct tag_CFG_STREAM_CACHE_T {
  std::int32_t s32Id = 0;           ///< "Id": the cache's number
  std::string strName;              ///< "Name": the cache's name
  std::int32_t s32BufSize = 0;      ///< size in units of s32BufUnit
  std::int32_t s32BufUnit = 0;      ///< bytes per unit: 1, 1024 or 1048576
  std::int32_t s32EnabledSrc = 0;   ///< number of the source that the cache carries
  std::int32_t s32AllowedMask = 0;  ///< bit n set: source n (0 to 29) may be carried
};
/// Short name of the stream cache record.
typedef struct tag_CFG_STREAM_CACHE_T CFG_STREAM_CACHE_T;

/// The family's open document of "/cfg0/mpp_cfg.xml", or null. The family owns it.
CFG_API extern tinyxml2::XMLDocument* g_STREAM_xmlDoc;

/// Loads "/cfg0/mpp_cfg.xml" into g_STREAM_xmlDoc and finds a section of `<Stream>`. A document
/// that is still open is dropped first, unsaved; a lock that it holds stays held.
/// @param pcSection   whole name of the section: "StreamSource" or "StreamCache"
/// @param enReadOnly  1: read mode, no lock is held on return; any other value: write mode, on
///                    success the file's lock is held until CFG_MPP_CloseWrite
/// @return the first element of that name, owned by g_STREAM_xmlDoc and valid while that is open;
///         null on failure, with g_STREAM_xmlDoc null and no lock held
/// Prints, level Error: file not opened, "Config File open failed\n"; no `<Stream>` or no such
/// section, "<NAME> not found\n". A file that was not opened in write mode draws the warning of
/// CFG_UnlockFile as well, since there is no lock left to release.
CFG_API tinyxml2::XMLElement* CFG_MPP_Open(const char* pcSection, tagBU_BOOL enReadOnly);

/// Drops the open document without saving it; does nothing when none is open.
/// @return always 0
/// Locks: none is released. Ending write mode like this needs CFG_UnlockFile(CFG_FILE_MPP) as well.
CFG_API int CFG_MPP_CloseRead();

/// Saves the open document and its backup, releases the file's lock and drops the document; does
/// nothing when none is open.
/// @return always 0, whatever became of the save
CFG_API int CFG_MPP_CloseWrite();

/// Reads all stream sources.
/// @param sources  emptied once the section is open, then filled in document order, each record
///                 made by std::make_shared of its kind. The file not opened: left as it was. A
///                 faulty element: keeps the records before it.
/// @return 0 or CFG_MPP_ERR
/// An "Enabled" that is absent or no integer is 1. An element without "Name" takes the name of the
/// nearest source before it that had one; only with no such source is "Name" missing.
/// Prints: as CFG_MPP_Open; Attr with "ChnId", "AiId" or "AencId" and
/// "<Stream><StreamSource><VENC>", "...<AI>" or "...<AENC>", then with "Id", then with "Name", and
/// "<Stream><StreamSource><*>"; for an element of another name, which is skipped, Warning
/// "Un-Support node <NAME> by <StreamSource>, Skip.\n".
CFG_API int CFG_MPP_LoadStreamSourceConfig(
    std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>& sources);

/// Replaces all stream sources and saves. Whatever else was in the section is lost.
/// @param sources  records to write, in order; null pointers and records of an unknown kind are
///                 left out. "Enabled" is written as 0 for a disabled source and not at all
///                 otherwise.
/// @return 0; CFG_MPP_ERR with the file untouched when it was not opened
/// Prints: as CFG_MPP_Open.
CFG_API int CFG_MPP_DumpStreamSourceConfig(
    const std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>& sources);

/// Reads all stream caches. Elements of other names are skipped without a message.
/// @param caches  emptied once the section is open, then filled in document order, each record made
///                by std::make_shared. The file not opened: left as it was. A faulty element: keeps
///                the records before it.
/// @return 0 or CFG_MPP_ERR
/// Size: of "BufferSizeB", "BufferSizeKB" and "BufferSizeMB" the largest amount counts, the smaller
/// unit if they are equal; amounts of 2 GiB and more wrap as signed 32-bit numbers do.
/// Sources: each `<AllowedStreamSource>` allows the source "Id"; without "Id" the first one stands
/// for the cache's own number and a later one for the number before it. A bit is the number modulo
/// 32. The first one with a nonzero "Default" is the source carried, else the last one; "Enable" is
/// not read.
/// Prints: as CFG_MPP_Open; Attr with "Id" or "Name" and "<Stream><StreamCache><Cache>", or with
/// "Id" and "<Stream><StreamCache><Cache><AllowedStreamSource>"; Error "Missing any of
/// {BufferSizeB, BufferSizeKB, BufferSizeMB} for setup chanel buffer size.\n" (only after this one
/// does the document stay open); Error "StreamCache[ID] no allowed StreamSource!\n"; Warning
/// "StreamCache[ID] already enabled StreamSource[SOURCE], ignore enable SOURCE.\n"; for each cache
/// Info "StreamCache[ID] size SIZE x UNIT\n" and, if none is marked, Info "StreamCache[ID] no
/// enabled StreamSource, default select SOURCE.\n".
CFG_API int CFG_MPP_LoadStreamCacheConfig(
    std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>& caches);

/// Replaces all stream caches and saves. Whatever else was in the section is lost.
/// @param caches  records to write, in order; null pointers are left out. A unit other than 1, 1024
///                and 1048576 writes no size; a mask below 1 writes no sources. The source carried
///                is marked "Default" if it is allowed.
/// @return 0; CFG_MPP_ERR with the file untouched when it was not opened
/// Prints: as CFG_MPP_Open.
CFG_API int CFG_MPP_DumpStreamCacheConfig(
    const std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>& caches);

/// Marks the entries of one source in a cache with "Enable", takes that mark from all its other
/// entries, and saves. "Default", which CFG_MPP_LoadStreamCacheConfig goes by, stays as it is.
/// @param s32CacheId   number of the cache: the first element whose name begins with "Cache" (in
///                     this case) and has it as "Id"
/// @param s32SourceId  number of the source; entries without "Id" count as -1
/// @return 0;
///         CFG_MPP_ERR when the file was not opened;
///         CFG_MPP_ERR when there is no such cache: the document is dropped, the lock stays held;
///         -1 when the cache does not allow the source: the document stays open with its edits
///         unsaved and the lock stays held. End it with CFG_MPP_CloseWrite, or with
///         CFG_MPP_CloseRead and CFG_UnlockFile(CFG_FILE_MPP).
/// Prints: as CFG_MPP_Open; Error "StreamCache[ID] not found at config\n" or "StreamSource[SOURCE]
/// not found in whitelist of StreamCache[ID]\n".
CFG_API int CFG_MPP_UpdateStreamCacheEnabledStreamSource(int s32CacheId, int s32SourceId);

/// Replaces the sources that a cache allows and saves; its name and size stay as they are.
/// @param cache  s32Id is the cache (found as above), s32AllowedMask the sources (below 1:
///               none), s32EnabledSrc the one to be marked "Enable" if it is allowed. A null
///               pointer is CFG_MPP_ERR with nothing opened.
/// @return 0; CFG_MPP_ERR as CFG_MPP_UpdateStreamCacheEnabledStreamSource: with the lock held when
///         there is no such cache
/// Prints: as CFG_MPP_Open; Error "StreamCache[ID] not found at config\n".
CFG_API int CFG_MPP_UpdateStreamCacheAllowedStreamSource(
    std::shared_ptr<tag_CFG_STREAM_CACHE_T> cache);

#endif
