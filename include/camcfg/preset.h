/// @file
/// PTZ presets: numbered camera positions in "/cfg0/preset_cfg.xml".
///
/// The presets are child elements of the top-level element "PresetCfg", which need not be the
/// file's first. An element is a preset when its name begins with "preset"; new ones are called
/// just that. The attributes are "Id", "Description", "PanPos", "TiltPos", "ZoomPos", "FocusPos"
/// and "FocusMode"; whatever else a preset carries (such as "private") is never changed. Units and
/// meaning of the positions and of the focus mode are the PTZ driver's: any integer is stored.
///
/// Every call but cfgGetPresetCfgNode is one transaction: it opens the file, works, saves or gives
/// up, and keeps nothing. Each returns with the file unlocked, except for one case of
/// CFG_PRESET_DeleteById. Threads: any, at any time.
///
/// Common failures, in addition to those named below, all with result -1 and outputs untouched: a
/// null argument, before the file is opened (level 3 "ARGUMENT is NULL\n" under the call's name); a
/// file that gives no "PresetCfg" (what cfgGetPresetCfgNode logs, then level 3 "pstPresetGrp is
/// NULL\n" under the call's name); no memory (if it runs out while saving, the main copy may be
/// left incomplete, as described at CFG_SaveFile). All records are level 3; nothing else is
/// printed.
#ifndef CAMCFG_PRESET_H
#define CAMCFG_PRESET_H

#include <camcfg/types.h>
#include <tinyxml2.h>

/// Highest id that CFG_PRESET_SetParam accepts. CFG_PRESET_GetUnusedId proposes lower ones only.
#define PRESET_ID_MAX 128
/// Bytes of tagPRESET_CFG_S::s8Description.
#define PRESET_DESC_SIZE 64

/// One preset.
struct tagPRESET_CFG_S {
  std::int32_t s32Id;                    ///< "Id": identifier, 0 to PRESET_ID_MAX
  std::int32_t s32PanPos;                ///< "PanPos": pan position
  std::int32_t s32TiltPos;               ///< "TiltPos": tilt position
  std::int32_t s32ZoomPos;               ///< "ZoomPos": zoom position
  std::int32_t s32FocusPos;              ///< "FocusPos": focus position
  std::int32_t s32FocusMode;             ///< "FocusMode": focus mode
  char s8Description[PRESET_DESC_SIZE];  ///< "Description": free text
};
/// Short name of the preset record.
typedef struct tagPRESET_CFG_S PRESET_CFG_S;

/// Opens the preset file and finds its preset group.
/// @param doc       receives the document, the caller's to delete; untouched on failure
/// @param readOnly  1: read mode, the file is unlocked on return; any other value: write mode, the
///                  file stays locked until CFG_SaveFile(*doc, "/cfg0/preset_cfg.xml", BU_TRUE) or
///                  CFG_UnlockFile("/cfg0/preset_cfg.xml")
/// @return the element "PresetCfg", owned by the document; null on failure, with the file unlocked
/// Prints, level 3: file not opened, "%s XMLDocument haven't initialize\n" with the path (after the
/// messages of CFG_GetDocByFileName); no top-level element, "Load %s failed\n" with the path; none
/// of them called "PresetCfg", "PresetCfg node doesn't exist\n". A null `doc` fails silently before
/// the file is opened.
CFG_API tinyxml2::XMLElement* cfgGetPresetCfgNode(tinyxml2::XMLDocument** doc, tagBU_BOOL readOnly);

/// Creates the preset of this id, or updates it in its place, and saves. A new preset becomes the
/// last one. Of the description, the text up to a terminator or the field's end is stored.
/// @param pstPresetCfg  the preset; all fields are stored
/// @return 0 with the file and its backup saved; -1 with the file untouched
/// Prints: an id below 0 or above PRESET_ID_MAX, "preset id %d out of rang %d\n" with the id and
/// PRESET_ID_MAX, before the file is opened; no memory for a new preset, "pstNode is NULL\n".
CFG_API int CFG_PRESET_SetParam(tagPRESET_CFG_S* pstPresetCfg);

/// Deletes the preset of an id and saves.
/// @param s32PresetId  identifier, any signed 32-bit number
/// @return 0, whether or not there was such a preset
/// Locks: when there was none, nothing is saved and the file stays LOCKED: end with
/// CFG_UnlockFile("/cfg0/preset_cfg.xml"), or find out with CFG_PRESET_QueryOneById first.
CFG_API int CFG_PRESET_DeleteById(int s32PresetId);

/// Deletes the first preset whose description begins with a text, and saves.
/// @param ps8Description  beginning of the description; the empty text takes the first preset that
///                        has a "Description"
/// @return 0; -1, without a message and with the file untouched, when there was none
CFG_API int CFG_PRESET_DeleteByDesc(const char* ps8Description);

/// Reads the preset of an id.
/// @param s32PresetId   identifier, any signed 32-bit number
/// @param pstPresetCfg  receives the preset: clear it first. A field whose attribute is missing or
///                      is no integer keeps its contents. A description of less than 32 bytes is
///                      stored without a terminator; a longer one is not stored at all.
/// @return 0 or -1
/// Prints: no such preset, "pstNode is NULL, can't find preset Id %d\n".
CFG_API int CFG_PRESET_QueryOneById(int s32PresetId, tagPRESET_CFG_S* pstPresetCfg);

/// Reads the first preset whose description begins with a text.
/// @param ps8Description  beginning of the description; the empty text takes the first preset that
///                        has a "Description"
/// @param pstPresetCfg    as for CFG_PRESET_QueryOneById, but a description is stored when it has
///                        less than 64 bytes
/// @return 0 or -1
/// Prints: no such preset, "pstNode is NULL, can't find preset Description %s\n". A null in either
/// argument is reported as "pstPresetCfg is NULL\n".
CFG_API int CFG_PRESET_QueryOneByDesc(const char* ps8Description, tagPRESET_CFG_S* pstPresetCfg);

/// Counts the presets.
/// @param ps32PresetCount  receives the number
/// @return 0 or -1
CFG_API int CFG_PRESET_GetCountNum(int* ps32PresetCount);

/// Finds the lowest id, from 0 to PRESET_ID_MAX - 1, that no preset has. Presets without a readable
/// "Id" that come before all others take up the id 0.
/// @param ps32UnusedId  receives the id; untouched when all are taken, which still returns 0: hand
///                      in -1
/// @return 0 or -1
CFG_API int CFG_PRESET_GetUnusedId(int* ps32UnusedId);

#endif
