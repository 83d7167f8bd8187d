// Lists the SRT instances, adds a caller, or removes an instance.
//
//   srt                        all instances
//   srt call HOST PORT CACHE   adds an instance that sends the stream cache CACHE to HOST
//   srt remove ID              removes an instance
#include <camcfg/livemedia.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <list>

#include "number.h"

namespace {

typedef std::list<tag_CFG_SRT_INSTANCE_T> Instances;

// A fault in the file ends the loading: what comes after it is not in the list. A list that was
// not loaded whole must not be written back.
bool load(Instances& instances) {
  const bool loaded = CFG_LM_LoadSrtConfig(instances) == 0;
  if (!loaded) std::fprintf(stderr, "srt: the instances cannot be read\n");
  return loaded;
}

int store(const Instances& instances) {
  return CFG_LM_DumpSrtConfig(instances) == 0 ? 0 : 1;
}

int list() {
  Instances instances;
  if (!load(instances)) return 1;
  for (const tag_CFG_SRT_INSTANCE_T& instance : instances) {
    std::printf("%d: %s port %d%s%s\n", instance.s32Id, instance.s32Mode != 0 ? "listens" : "calls",
                instance.s32Port, instance.strHostname.empty() ? "" : " of ",
                instance.strHostname.c_str());
    for (const tag_CFG_SRT_STREAM_T& stream : instance.lstStream)
      std::printf("   stream %s, %zu channels\n", stream.strId.c_str(), stream.lstChannel.size());
  }
  return 0;
}

int freeId(const Instances& instances) {
  int id = 0;
  for (const tag_CFG_SRT_INSTANCE_T& instance : instances) id = std::max(id, instance.s32Id + 1);
  return id;
}

int call(const char* host, int port, int cache) {
  Instances instances;
  if (!load(instances)) return 1;

  tag_CFG_SRT_STREAM_T stream;
  stream.strId = "program";
  stream.s32Default = 1;
  stream.lstChannel.push_back(cache);

  tag_CFG_SRT_INSTANCE_T caller;  // as new: no encryption, latency 20
  caller.s32Id = freeId(instances);
  caller.s32Mode = 0;
  caller.strHostname = host;
  caller.s32Port = port;
  caller.lstStream.push_back(stream);
  instances.push_back(caller);
  return store(instances);
}

int removeInstance(int id) {
  Instances instances;
  if (!load(instances)) return 1;
  const Instances::size_type before = instances.size();
  instances.remove_if(
      [id](const tag_CFG_SRT_INSTANCE_T& instance) { return instance.s32Id == id; });
  if (instances.size() == before) {
    std::fprintf(stderr, "srt: there is no instance %d\n", id);
    return 1;
  }
  return store(instances);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) return list();
  int number = 0;
  int cache = 0;
  if (argc == 5 && std::strcmp(argv[1], "call") == 0 && readNumber(argv[3], &number) &&
      readNumber(argv[4], &cache))
    return call(argv[2], number, cache);
  if (argc == 3 && std::strcmp(argv[1], "remove") == 0 && readNumber(argv[2], &number))
    return removeInstance(number);

  std::fprintf(stderr, "usage: srt [call HOST PORT CACHE | remove ID]\n");
  return 2;
}
