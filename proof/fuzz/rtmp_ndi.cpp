#include <camcfg/livemedia.h>
#include <camcfg/store.h>

#include "fuzz/round_trip.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using Ndi = tag_CFG_NDI_SESSION_T;

// The discovery switch is not read from where it is written.
std::string formOfNdi(const Ndi& session) {
  return field(session.s32Id) + field(session.bEnable) + field(session.strDiscoveryServer) +
         field(session.bMulticastEnable) + field(session.strMulticastIp) +
         field(session.strMulticastNetmask) + field(session.s32MulticastTTL) +
         field(session.strGroupName) + field(session.strMainStreamName) +
         field(session.s32MainVideoId) + field(session.s32SubVideoId) + field(session.s32AudioId);
}

// Nothing is saved, whatever the dumper is given, and the file stays locked.
void tryRtmp(const std::string& file) {
  std::list<tag_CFG_RTMP_SESSION_T> sessions;
  CFG_LM_LoadRtmpConfig(sessions);
  closeMedia();
  if (CFG_LM_DumpRtmpConfig(sessions) == 0) CFG_UnlockFile(const_cast<char*>(CFG_FILE_MPP));
  require(readFile(CFG_FILE_MPP) == file, "dumping RTMP targets leaves the file alone");
}

}  // namespace

// The media file.
void rtmpNdi(const Input& input) {
  writeFile(CFG_FILE_MPP, input.part(0));
  tryRtmp(readFile(CFG_FILE_MPP));
  roundTrip<Ndi>({CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig, always<Ndi>, formOfNdi});
}

}  // namespace camcfg::fuzz
