#include "preset/record.h"

#include <cstring>

#include "base/text.h"
#include "base/xml_edit.h"

namespace camcfg {
namespace {

constexpr char kId[] = "Id";
constexpr char kDescription[] = "Description";

struct Position {
  char attribute[10];
  std::int32_t tagPRESET_CFG_S::*field;
};

constexpr Position kPositions[] = {
    {"PanPos", &tagPRESET_CFG_S::s32PanPos},       {"TiltPos", &tagPRESET_CFG_S::s32TiltPos},
    {"ZoomPos", &tagPRESET_CFG_S::s32ZoomPos},     {"FocusPos", &tagPRESET_CFG_S::s32FocusPos},
    {"FocusMode", &tagPRESET_CFG_S::s32FocusMode},
};

}  // namespace

void readRecord(const tinyxml2::XMLElement& preset, tagPRESET_CFG_S& record,
                std::size_t descriptionLimit) {
  preset.QueryIntAttribute(kId, &record.s32Id);
  for (const Position& position : kPositions)
    preset.QueryIntAttribute(position.attribute, &(record.*position.field));

  const char* description = preset.Attribute(kDescription);
  // Deliberate: no terminator. Callers clear the record first; an older, longer text in it keeps
  // its tail. [no-terminator]
  if (description != nullptr && std::strlen(description) < descriptionLimit)
    copyCharacters(record.s8Description, sizeof record.s8Description, description);
}

bool writeRecord(tinyxml2::XMLElement& preset, const tagPRESET_CFG_S& record) {
  char description[sizeof record.s8Description + 1] = {};
  std::memcpy(description, record.s8Description, sizeof record.s8Description);

  bool written =
      setAttribute(preset, kId, record.s32Id) && setAttribute(preset, kDescription, description);
  for (const Position& position : kPositions)
    written = written && setAttribute(preset, position.attribute, record.*position.field);
  return written;
}

}  // namespace camcfg
