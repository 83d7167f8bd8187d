#include "bench/cases.h"

#include <list>
#include <memory>

#include "bench/files.h"
#include "bench/floors.h"
#include "bench/loaders_by_hand.h"
#include "camcfg/livemedia.h"
#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"

namespace camcfg::bench {
namespace {

const char* const kBackupBusiness = "/cfg1/business_param.xml";
const char* const kBackupMpp = "/cfg1/mpp_cfg.xml";
const char* const kBackupPreset = "/cfg1/preset_cfg.xml";

const std::vector<int> kParameters = {10, 100, 1000, 10000, 100000};
const std::vector<int> kPresets = {1, 8, 32, 128};
const std::vector<int> kSessions = {1, 10, 100, 1000};

char bench[] = "Bench";
std::string last;

void prepareParameters(int size) {
  last = lastParameter(size);
  writeFile(CFG_FILE_BUSINESS, parameterFile(size));
  writeFile(kBackupBusiness, parameterFile(size));
}

std::vector<Case> parameterCases() {
  return {
      {"parameter_read", kParameters, prepareParameters,
       [] {
         int value = 0;
         CFG_COM_GetIntParam(bench, last.data(), &value);
       },
       [] { readByHand(CFG_FILE_BUSINESS, last.c_str(), "Cur"); }},
      {"parameter_write", kParameters, prepareParameters,
       [] { CFG_COM_SetIntParam(bench, last.data(), 7); },
       [] { writeByHand(CFG_FILE_BUSINESS, kBackupBusiness, last.c_str(), "Cur", 7); }},
      {"parameter_by_name", kParameters, prepareParameters,
       [] {
         tagCFG_VALUE_INT_S value;
         CFG_COM_GetIntParams(last.data(), &value);
       },
       [] { readByHand(CFG_FILE_BUSINESS, last.c_str(), "Cur"); }},
  };
}

int lastPreset = 0;

void preparePresets(int size) {
  lastPreset = size - 1;
  writeFile(CFG_FILE_PRESET, presetFile(size));
  writeFile(kBackupPreset, presetFile(size));
}

const std::vector<const char*> kPresetAttributes = {"Id",      "Description", "PanPos",   "TiltPos",
                                                    "ZoomPos", "FocusPos",    "FocusMode"};

std::vector<Case> presetCases() {
  return {
      {"preset_query", kPresets, preparePresets,
       [] {
         tagPRESET_CFG_S preset{};
         CFG_PRESET_QueryOneById(lastPreset, &preset);
       },
       [] { findByHand(CFG_FILE_PRESET, lastPreset, kPresetAttributes); }},
      {"preset_unused_id", kPresets, preparePresets,
       [] {
         int id = 0;
         CFG_PRESET_GetUnusedId(&id);
       },
       [] { findByHand(CFG_FILE_PRESET, lastPreset, {}); }},
      {"preset_set", kPresets, preparePresets,
       [] {
         tagPRESET_CFG_S preset{};
         preset.s32Id = lastPreset;
         CFG_PRESET_SetParam(&preset);
       },
       [] { setByHand(CFG_FILE_PRESET, kBackupPreset, lastPreset, kPresetAttributes); }},
  };
}

// A section's loader compared with one written by hand and with parsing its file only, its dumper with
// parsing and saving it.
template <typename List>
void addSection(std::vector<Case>& cases, const std::string& name,
                const std::function<std::string(int)>& file, int (*load)(List&),
                int (*dump)(const List&)) {
  const auto list = std::make_shared<List>();
  const auto prepare = [=](int size) {
    writeFile(CFG_FILE_MPP, file(size));
    writeFile(kBackupMpp, file(size));
    load(*list);
  };
  cases.push_back(
      {name + "_load", kSessions, prepare, [=] { load(*list); }, [=] { loadByHand(*list); }});
  cases.push_back({name + "_load_over_parsing", kSessions, prepare, [=] { load(*list); },
                   [] { parseByHand(CFG_FILE_MPP); }});
  if (dump == nullptr) return;
  const auto floor = [] { rewriteByHand(CFG_FILE_MPP, kBackupMpp); };
  cases.push_back({name + "_dump", kSessions, prepare, [=] { dump(*list); }, floor});
  // Each record in the place of another one.
  cases.push_back({name + "_moved_dump", kSessions, prepare,
                   [=] {
                     list->splice(list->end(), *list, list->begin());
                     dump(*list);
                   },
                   floor});
}

auto streamSection(const char* section) {
  return [section](int size) { return streamFile(section, size); };
}

auto liveSection(const char* section) {
  return [section](int size) { return liveMediaFile(section, size); };
}

std::vector<Case> mediaCases() {
  std::vector<Case> cases;
  addSection(cases, "stream_sources", streamSection("StreamSource"), CFG_MPP_LoadStreamSourceConfig,
             CFG_MPP_DumpStreamSourceConfig);
  addSection(cases, "stream_caches", streamSection("StreamCache"), CFG_MPP_LoadStreamCacheConfig,
             CFG_MPP_DumpStreamCacheConfig);
  addSection(cases, "websocket", liveSection("WEBSOCKET"), CFG_LM_LoadWebsocketConfig,
             CFG_LM_DumpWebsocketConfig);
  addSection(cases, "rtsp", liveSection("RTSP"), CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig);
  // The RTMP dumper saves nothing and leaves the file locked; there is nothing to compare it with.
  addSection<std::list<tag_CFG_RTMP_SESSION_T>>(cases, "rtmp", liveSection("RTMP"),
                                                CFG_LM_LoadRtmpConfig, nullptr);
  addSection(cases, "ndi", liveSection("NDI"), CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig);
  addSection(cases, "srt", liveSection("SRT"), CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig);
  return cases;
}

void prepareVerification(int size) {
  for (const char* directory : {CFG_DIR_MAIN, CFG_DIR_BACKUP, CFG_DIR_DEFAULT}) {
    writeFile(std::string(directory) + "/business_param.xml", parameterFile(size));
    writeFile(std::string(directory) + "/mpp_cfg.xml", liveMediaFile("SRT", size / 10));
    writeFile(std::string(directory) + "/preset_cfg.xml", presetFile(8));
  }
}

std::vector<Case> storeCases() {
  return {
      {"verification", kParameters, prepareVerification, [] { CFG_VerifyFileFormat(); },
       [] {
         for (const char* path : {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET})
           parseByHand(path);
       }},
  };
}

void prepareNetwork(int size) {
  writeFile(CFG_FILE_BUSINESS, networkFile(size));
  writeFile(kBackupBusiness, networkFile(size));
}

std::vector<Case> networkCases() {
  static char card[] = "Lan0";
  return {
      {"network_read",
       {1, 3},
       prepareNetwork,
       [] {
         tagNETWORK_CFG_S settings;
         CFG_NETWORK_GetAllParamCur(card, &settings);
       },
       [] { parseByHand(CFG_FILE_BUSINESS); }},
  };
}

template <typename... Lists>
std::vector<Case> joined(Lists... lists) {
  std::vector<Case> all;
  (all.insert(all.end(), lists.begin(), lists.end()), ...);
  return all;
}

}  // namespace

const std::vector<Case>& cases() {
  static const std::vector<Case> all =
      joined(parameterCases(), storeCases(), presetCases(), networkCases(), mediaCases());
  return all;
}

}  // namespace camcfg::bench
