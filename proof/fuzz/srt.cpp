#include <camcfg/livemedia.h>

#include "fuzz/round_trip.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using Instance = tag_CFG_SRT_INSTANCE_T;

// A caller's host name must be there but is not written when it is empty.
bool survives(const Instance& instance) {
  return instance.s32Mode == 1 || !instance.strHostname.empty();
}

std::string formOfInstance(const Instance& instance) {
  std::string form = field(instance.s32Id) + field(instance.s32Mode) + field(instance.strHostname) +
                     field(instance.s32Port) +
                     field(instance.s32AesMode > 0 ? instance.s32AesMode : 0) +
                     field(instance.strPassword) + field(instance.s32Latency);
  for (const tag_CFG_SRT_STREAM_T& stream : instance.lstStream) {
    form += field(stream.strId) + field(stream.s32Default);
    for (const int channel : stream.lstChannel) form += field(channel);
  }
  return form;
}

}  // namespace

// The media file.
void srt(const Input& input) {
  writeFile(CFG_FILE_MPP, input.part(0));
  roundTrip<Instance>({CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig, survives, formOfInstance});
}

}  // namespace camcfg::fuzz
