// An application of another team: the example `ports`, in a scratch device with a factory set.
//
//   ports_on_device RESOURCE_DIRECTORY [ARGUMENT OF PORTS]...
#include <camcfg/store.h>
#include <camcfg/testkit/device_root.h>

int portsMain(int argc, char** argv);

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  camcfg::testkit::DeviceRoot device(camcfg::testkit::DeviceRoot::StayOut);
  device.copyFromHost(argv[1], "/app/resource");
  device.enter();
  CFG_VerifyFileFormat();
  // What is set first is read back from the file.
  if (argc > 2 && portsMain(argc - 1, argv + 1) != 0) return 1;
  return portsMain(1, argv + 1);
}
