/// @file
/// What every family of the interface shares: the export mark, the flag type, the fixed paths.
#ifndef CAMCFG_TYPES_H
#define CAMCFG_TYPES_H

#include <cstdint>

/// Marks what the shared library exports; everything else is hidden.
#define CFG_API __attribute__((visibility("default")))

/// Directory of the main copies.
#define CFG_DIR_MAIN "/cfg0"
/// Directory of the backup copies, under the same file names.
#define CFG_DIR_BACKUP "/cfg1"
/// Directory of the factory defaults, under the same file names.
#define CFG_DIR_DEFAULT "/app/resource/defcfg"
/// Directory of the translated texts, one "LANGUAGE.xml" each.
#define CFG_DIR_LANGUAGE "/app/resource/language/"

/// Parameters by section: device, video, network and so on (params.h, network.h).
#define CFG_FILE_BUSINESS "/cfg0/business_param.xml"
/// Streams and live media services (stream.h, livemedia.h).
#define CFG_FILE_MPP "/cfg0/mpp_cfg.xml"
/// PTZ presets (preset.h).
#define CFG_FILE_PRESET "/cfg0/preset_cfg.xml"

/// Size in bytes, terminator included, of every path buffer of the library. A longer path is cut to
/// CFG_PATH_SIZE - 1 characters.
#define CFG_PATH_SIZE 128

/// The two-valued flag of the interface, 32 bits wide. Only the value 1 counts as true; whatever
/// else arrives counts as false, so any integer may be passed.
enum tagBU_BOOL : std::int32_t {
  BU_FALSE = 0,  ///< false, as is every value other than 1
  BU_TRUE = 1    ///< true
};
/// Short name of the flag type.
typedef enum tagBU_BOOL BU_BOOL;

#endif
