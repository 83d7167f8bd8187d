// Walks all camera positions, or stores a new one.
//
//   presets                       all presets, in the order of the file
//   presets add DESCRIPTION PAN TILT
#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "number.h"

namespace {

// There is no call for "the next preset": a walk reads the elements itself, in a document of its
// own. Read mode holds no lock, so this may take its time.
int walk() {
  tinyxml2::XMLDocument* opened = nullptr;
  tinyxml2::XMLElement* group = cfgGetPresetCfgNode(&opened, BU_TRUE);
  const std::unique_ptr<tinyxml2::XMLDocument> document(opened);  // it is the caller's to delete
  if (group == nullptr) return 1;
  for (tinyxml2::XMLElement* preset = group->FirstChildElement("preset"); preset != nullptr;
       preset = preset->NextSiblingElement("preset")) {
    const char* description = preset->Attribute("Description");
    std::printf("%d: %s, pan %d, tilt %d\n", preset->IntAttribute("Id", -1),
                description == nullptr ? "" : description, preset->IntAttribute("PanPos"),
                preset->IntAttribute("TiltPos"));
  }
  return 0;
}

int add(const char* description, int pan, int tilt) {
  tagPRESET_CFG_S preset = {};
  preset.s32Id = -1;  // stays so when every id is taken, which is no failure
  if (CFG_PRESET_GetUnusedId(&preset.s32Id) != 0) return 1;
  if (preset.s32Id < 0) {
    std::fprintf(stderr, "presets: all are taken\n");
    return 1;
  }
  preset.s32PanPos = pan;
  preset.s32TiltPos = tilt;
  std::strncpy(preset.s8Description, description, sizeof preset.s8Description - 1);
  if (CFG_PRESET_SetParam(&preset) != 0) return 1;
  std::printf("%d\n", preset.s32Id);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) return walk();
  int pan = 0;
  int tilt = 0;
  if (argc == 5 && std::strcmp(argv[1], "add") == 0 && readNumber(argv[3], &pan) &&
      readNumber(argv[4], &tilt))
    return add(argv[2], pan, tilt);

  std::fprintf(stderr, "usage: presets [add DESCRIPTION PAN TILT]\n");
  return 2;
}
