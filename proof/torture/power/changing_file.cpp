#include "torture/power/changing_file.h"

#include <stdexcept>

#include "camcfg/livemedia.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/types.h"
#include "torture/harness/child.h"
#include "torture/harness/xml_text.h"

namespace camcfg::torture {
namespace {

void saveBusiness(int value) {
  CFG_SYSTEM_SetRtspPort(value);
}

void saveMedia(int value) {
  tinyxml2::XMLElement* section = CFG_LM_Open("SRT", BU_FALSE);
  if (section == nullptr || section->FirstChildElement() == nullptr) return;
  section->FirstChildElement()->SetAttribute("Latency", value);
  CFG_LM_CloseWrite();
}

void savePreset(int value) {
  tagPRESET_CFG_S preset{3, value, -500, 9800, 6120, 1, "Lectern"};
  CFG_PRESET_SetParam(&preset);
}

constexpr int kLearntWith = 43211;  // a number that no file of the sample set holds

}  // namespace

void ChangingFile::learn(const Device& device) {
  runInside(device.root(), [this] {
    save(kLearntWith);
    return 0;
  });
  const std::string text = device.read(mainPath(name_)).value_or("");
  const std::string number = std::to_string(kLearntWith);
  const auto at = text.find(number);
  if (at == std::string::npos || text.find(number, at + 1) != std::string::npos)
    throw std::runtime_error(std::string(name_) + " was not saved as expected");
  before_ = text.substr(0, at);
  behind_ = text.substr(at + number.size());
}

void ChangingFile::layOut(const Device& device, int value) const {
  device.write(mainPath(name_), textWith(value));
  device.write(backupPath(name_), textWith(value));
}

std::vector<ChangingFile> changingFiles() {
  return {
      {kSampleFiles[0], saveBusiness}, {kSampleFiles[1], saveMedia}, {kSampleFiles[2], savePreset}};
}

const char* wordFor(Contents contents) {
  switch (contents) {
    case Contents::Old:
      return "old";
    case Contents::New:
      return "new";
    case Contents::CutShort:
      return "cut short, parses";
    case Contents::Damaged:
      return "damaged";
    case Contents::Empty:
      return "empty";
    case Contents::Missing:
      return "missing";
  }
  return "";
}

Contents contentsOf(const std::optional<std::string>& text, const std::string& oldText,
                    const std::string& newText) {
  if (!text) return Contents::Missing;
  if (text->empty()) return Contents::Empty;
  if (*text == oldText) return Contents::Old;
  if (*text == newText) return Contents::New;
  const auto settings = settingsOf(*text);
  if (!settings) return Contents::Damaged;
  if (settings == settingsOf(newText)) return Contents::New;
  return settings == settingsOf(oldText) ? Contents::Old : Contents::CutShort;
}

}  // namespace camcfg::torture
