/// @file
/// The file store: one lock per file path, documents loaded for reading or writing, saves that
/// also update the backup copy, repair at start-up, searches over the element tree.
///
/// Read mode: take the file's lock, load, release the lock, hand out a private document.
/// Write mode: take the lock, load, hand out the document with the lock held; the caller edits it
/// and ends with CFG_SaveFile(document, path, BU_TRUE), or gives up with CFG_UnlockFile(path).
/// In both modes the caller owns the document and deletes it.
///
/// Threads: every call may come from any thread, except CFG_VerifyFileFormat, which must run alone
/// in its process.
///
/// Programs: where the directory "/run/camcfg" exists, every lock also holds between processes: in
/// read mode shared with other readers, in write mode exclusive. All spellings of a file's path share
/// that lock; inside a process they are locks of their own, as without the directory. A program that
/// dies leaves no lock; if it died in a save, the next one to open the file first restores the main
/// copy from the backup or brings the backup up to date, with one level 4 record. A child of fork(2)
/// holds none of its parent's locks. Calls that leave a file locked leave it locked for their own
/// process only. Where a lock file cannot be used, one level 4 record per process and file says so,
/// and the lock holds inside the process.
/// No exception leaves the library; running out of memory is reported as failure.
#ifndef CAMCFG_STORE_H
#define CAMCFG_STORE_H

#include <camcfg/types.h>
#include <pthread.h>
#include <tinyxml2.h>

#include <map>
#include <string>

/// The lock of one file path. Records are created when a path is first named and live until the
/// process ends.
struct tag_CFG_FILE_LOCK {
  pthread_mutex_t* pstMutex;  ///< normal, non-recursive mutex on the heap; never freed
  std::int32_t s32Locked;     ///< 1 while the registry believes the file is locked, else 0
};

/// Path text, exactly as callers pass it, to lock record. "x.xml", "/cfg0/x.xml" and
/// "/cfg0//x.xml" are three locks. Guarded by g_lockMapFileLock.
CFG_API extern std::map<std::string, tag_CFG_FILE_LOCK> g_mapFileLock;

/// Guards g_mapFileLock. It is held only for a lookup, never while waiting for a file's lock.
CFG_API extern pthread_mutex_t g_lockMapFileLock;

/// Finds the lock record of a path, creating it unlocked if the path was never named.
/// @param path  file path, taken as it is
/// @return the record, valid until the process ends; null for a null path or when memory runs out
/// Locks: the caller holds g_lockMapFileLock.
CFG_API tag_CFG_FILE_LOCK* cfgGetLockByFile(const char* path);

/// Takes the lock of a path, waiting at most 10 seconds (realtime clock) for this process's and
/// other processes' holders together.
/// @param path  file path, taken as it is
/// @return 0 with the lock held; -1 when it was not free in time
/// On failure the flag of the record is cleared although another holder may still own the mutex:
/// that holder's unlock then warns and leaves the mutex locked.
/// Prints on failure: a level 4 record and a "[Warn][Cfg]" line on standard output, both saying
/// "Lock %s timeout, a deadlock may exist!".
/// Threads: any; the lock is not recursive, so a second call by its holder waits and fails.
CFG_API int cfgLockFile(const char* path);

/// Releases the lock of a path.
/// @param path  the text given when the lock was taken
/// @return always 0
/// Prints when the path is not locked: a level 4 record and a "[Warn][Cfg]" line on standard
/// output, both saying "%s has not been locked before unlock!"; nothing is released then.
/// Threads: any; no owner is recorded.
CFG_API int cfgUnlockFile(const char* path);

/// Gives up a document that was opened for writing: releases the lock, leaves the file alone.
/// @param pcPath  the path given to CFG_GetDocByFileName
/// @return always 0; prints as cfgUnlockFile
/// Ownership: the document stays the caller's to delete.
CFG_API int CFG_UnlockFile(char* pcPath);

/// Loads a file into a new document (entities processed, white space preserved).
/// @param pcPath      file path, used as it is for loading and as the lock's key
/// @param enReadOnly  1: read mode, the lock is released before returning; any other value: write
///                    mode, the lock stays held on success
/// @return the document, the caller's to delete; null on failure, with no lock held by this call
/// Failures: no document could be made (level 3 "New XMLDocument fail\n"); the lock was not free
/// within 10 seconds (only the warning of cfgLockFile); the file missing, unreadable or not
/// well-formed, a null path, or no memory to load it (level 3 "Load file %s fail\n").
CFG_API tinyxml2::XMLDocument* CFG_GetDocByFileName(char* pcPath, tagBU_BOOL enReadOnly);

/// Saves a document to its main copy, copies that to the backup directory, syncing after each.
/// The file is rewritten in place. The backup path is the main path with its first five characters
/// replaced by "/cfg1", whatever they were.
/// @param pstDoc    the document; stays the caller's to delete
/// @param pcPath    main path if it begins with "/", else a name below "/cfg0"; cut to 127
///                  characters
/// @param enUnlock  1: release the lock of pcPath at the end; any other value: keep it
/// @return 0 after saving, even if the save or the copy failed;
///         -1 for a null path, with nothing saved and no lock released;
///         -1 with the lock released (if asked) for a null document, with nothing saved;
///         -1 with a warning as cfgLockFile prints it, with nothing saved and the lock released (if
///         asked), for a path that nobody in this process has locked, when another process kept it
///         locked for 10 seconds;
///         -1 with the lock released (if asked) when memory ran out: the main copy may then be
///         incomplete, and the backup copy is left as it was
/// Prints: nothing but what cfgUnlockFile does, and that warning.
CFG_API int CFG_SaveFile(tinyxml2::XMLDocument* pstDoc, char* pcPath, tagBU_BOOL enUnlock);

/// Copies a file, with the outcome that the command "cp SOURCE DESTINATION" would have had if its
/// text were cut to 127 characters. The names are never seen by a shell.
/// @param source       file to copy
/// @param destination  file to write, or a directory to copy into; cut to what the 127 characters
///                     leave it. A new file gets the source's permissions less the umask; an
///                     existing one keeps its own.
/// @return 0, or 256 when the copy failed (a missing source, a missing or empty destination, no
///         room); a failed copy may leave the destination incomplete
/// Prints: nothing. Locks: none.
CFG_API int cfgSyncCfgFile(const char* source, const char* destination);

/// Counts the regular files directly in a directory.
/// @param dir    directory path
/// @param count  receives the number; untouched on failure
/// @return 0, or -1 when the directory cannot be opened or an argument is null
/// Prints on failure: "File %s didn't exist\n" with the directory, on standard output.
CFG_API int cfgQueryFileNum(char* dir, int* count);

/// Start-up verification: makes every main copy parse, restoring a broken or missing one from its
/// backup or else from its factory default (which then replaces the backup as well).
/// The names checked are those of the first directory of "/app/resource/defcfg", "/cfg0", "/cfg1"
/// that holds any regular file. Only well-formedness is checked; a restored copy is not read again.
/// @return 0 after a completed scan, whether or not anything was repaired;
///         -1 when no directory holds a file (level 3 "All File didn't exist\n"), when the chosen
///         one cannot be opened (level 3 "File %s didn't exist\n"), or when memory or descriptors
///         run out, after which nothing more is replaced
/// Prints: on standard output "file %s \n" per name; level 6 records of the counts, of each copy
/// that does not load ("%s load failed \n") and of each copy made ("sync %s \n").
/// Locks: none inside the process; between processes that of each file while it is looked at. A file
/// that another process keeps locked for 10 seconds is left as it is, with the warning of cfgLockFile.
/// Threads: call once, before any other use of the files in this process.
CFG_API int CFG_VerifyFileFormat();

/// Finds the first child element whose name begins with a text: "Rtsp" finds "RtspOverHttp" if that
/// comes first. An empty text finds the first child element.
/// @param parent  element whose children are searched
/// @param name    beginning of the name sought
/// @return the element, owned by its document; null when nothing matches or an argument is null
CFG_API tinyxml2::XMLElement* CFG_GetElementByName(tinyxml2::XMLElement* parent, const char* name);

/// Returns the first child element if its name begins with a text, and null if there is no child
/// element. In every other case it calls itself without end: do not use it. It is kept for
/// programs that link it.
/// @param parent  element whose first child is looked at
/// @param name    beginning of the name sought
CFG_API tinyxml2::XMLElement* CFG_GetElementByNameRecursion(tinyxml2::XMLElement* parent,
                                                            const char* name);

/// Finds the first child element whose name begins with a text and whose "Id" equals a number. A
/// candidate without a readable "Id" is compared by the "Id" of the candidate before it.
/// @param parent  element whose children are searched
/// @param name    beginning of the name sought
/// @param id      the number sought, signed 32-bit
/// @return the element, owned by its document; null when nothing matches or an argument is null
CFG_API tinyxml2::XMLElement* CFG_GetElementByNameId(tinyxml2::XMLElement* parent, const char* name,
                                                     int id);

/// Finds the first element of exactly this name among an element and its following siblings.
/// @param start  element to begin with
/// @param name   whole name sought
/// @return the element, owned by its document; null when nothing matches or an argument is null
CFG_API tinyxml2::XMLElement* CFG_GetBrotherElementByName(tinyxml2::XMLElement* start,
                                                          const char* name);

/// Finds the first child element whose name begins with one text and whose attribute "Usage" is
/// present and begins with another.
/// @param parent  element whose children are searched
/// @param name    beginning of the name sought
/// @param usage   beginning of the usage sought
/// @return the element, owned by its document; null when nothing matches or an argument is null
CFG_API tinyxml2::XMLElement* CFG_GetElementByUsage(tinyxml2::XMLElement* parent, const char* name,
                                                    char* usage);

#endif
