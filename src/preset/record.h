#ifndef CAMCFG_PRESET_RECORD_H
#define CAMCFG_PRESET_RECORD_H

#include <tinyxml2.h>

#include <cstddef>

#include "camcfg/preset.h"

namespace camcfg {

/// Fills a record from a preset. What is missing or unreadable, and a description that is not
/// shorter than `descriptionLimit`, leaves its field as it was.
void readRecord(const tinyxml2::XMLElement& preset, tagPRESET_CFG_S& record,
                std::size_t descriptionLimit);

/// Sets all attributes of a preset that the record has a field for.
/// @return false when memory ran out, with some of them set
bool writeRecord(tinyxml2::XMLElement& preset, const tagPRESET_CFG_S& record);

}  // namespace camcfg

#endif
