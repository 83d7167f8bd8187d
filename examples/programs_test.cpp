// The programs in this folder, called inside a scratch device with the sample factory set.
#include <camcfg/store.h>
#include <camcfg/testkit/captured_output.h>
#include <camcfg/testkit/device_root.h>
#include <camcfg/testkit/log_recorder.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

int portsMain(int argc, char** argv);
int presetsMain(int argc, char** argv);
int srtMain(int argc, char** argv);
int startupMain();

namespace {

using camcfg::testkit::captureErrors;
using camcfg::testkit::captureOutput;
using camcfg::testkit::DeviceRoot;
using camcfg::testkit::LogRecorder;

// A device that was started once.
class ProgramsTest : public testing::Test {
 protected:
  ProgramsTest() : device(DeviceRoot::StayOut) {
    device.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
    device.enter();
    captureOutput([] { CFG_VerifyFileFormat(); });
    for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
      device.write(std::string("/cfg1/") + name, device.read(std::string("/cfg0/") + name));
  }

  struct Run {
    int status;
    std::string out;
    std::string errors;
  };

  static Run run(int (*program)(int, char**), std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "program");
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(&argument[0]);
    Run result;
    result.errors = captureErrors([&] {
      result.out = captureOutput(
          [&] { result.status = program(static_cast<int>(pointers.size()), pointers.data()); });
    });
    return result;
  }

  static int startUp(int, char**) { return startupMain(); }

  static void expect(const Run& run, int status, const std::string& out,
                     const std::string& errors = "") {
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(run.errors, errors);
  }

  DeviceRoot device;
  LogRecorder log;
};

const char kLoaded[] = "[Info][CFG][LiveMedia]: Load SRT Config success.\n";
const char kStored[] = "[Info][CFG][LiveMedia]: Update SRT Config success.\n";
const char kSampleInstances[] =
    "0: listens port 9000\n"
    "   stream program, 2 channels\n"
    "   stream ch1, 2 channels\n"
    "1: calls port 9001 of ingest.example.com\n"
    "   stream program, 2 channels\n";

TEST_F(ProgramsTest, PortsAreShown) {
  expect(run(portsMain, {}), 0, "web 80 443\nrtsp 554\nrtsp-over-http 8080\n");
}

TEST_F(ProgramsTest, PortsAreSet) {
  expect(run(portsMain, {"rtsp", "8554"}), 0, "");
  expect(run(portsMain, {"rtsp-over-http", "8081"}), 0, "");
  expect(run(portsMain, {"web", "81", "444"}), 0, "");
  expect(run(portsMain, {}), 0, "web 81 444\nrtsp 8554\nrtsp-over-http 8081\n");
  EXPECT_EQ(device.read("/cfg1/business_param.xml"), device.read("/cfg0/business_param.xml"));
}

TEST_F(ProgramsTest, PortOutOfRangeIsRefusedWithTheRange) {
  expect(run(portsMain, {"rtsp", "70000"}), 1, "", "ports: Rtsp takes 1 to 65535\n");
  expect(run(portsMain, {}), 0, "web 80 443\nrtsp 554\nrtsp-over-http 8080\n");
}

TEST_F(ProgramsTest, SrtInstancesAreListed) {
  expect(run(srtMain, {}), 0, std::string(kLoaded) + kSampleInstances);
}

TEST_F(ProgramsTest, SrtCallerIsAddedAndRemoved) {
  expect(run(srtMain, {"call", "relay.example.com", "9100", "12"}), 0,
         std::string(kLoaded) + kStored);
  expect(run(srtMain, {}), 0,
         std::string(kLoaded) + kSampleInstances +
             "2: calls port 9100 of relay.example.com\n"
             "   stream program, 1 channels\n");
  expect(run(srtMain, {"remove", "2"}), 0, std::string(kLoaded) + kStored);
  expect(run(srtMain, {}), 0, std::string(kLoaded) + kSampleInstances);
}

TEST_F(ProgramsTest, MissingSrtInstanceIsNotRemoved) {
  const std::string before = device.read(CFG_FILE_MPP);
  expect(run(srtMain, {"remove", "9"}), 1, kLoaded, "srt: there is no instance 9\n");
  EXPECT_EQ(device.read(CFG_FILE_MPP), before);
}

TEST_F(ProgramsTest, SrtListThatWasNotLoadedWholeIsNotWrittenBack) {
  const std::string faulty =
      "<LiveMediaService><SRT><Instance Id=\"0\" Mode=\"Listener\" Port=\"1\"/>"
      "<Instance/></SRT></LiveMediaService>";
  device.write(CFG_FILE_MPP, faulty);
  EXPECT_EQ(run(srtMain, {"call", "relay.example.com", "9100", "12"}).status, 1);
  EXPECT_EQ(device.read(CFG_FILE_MPP), faulty);
}

TEST_F(ProgramsTest, PresetsAreWalkedInTheOrderOfTheFile) {
  expect(run(presetsMain, {}), 0,
         "0: Home, pan 0, tilt 0\n"
         "1: Stage left, pan -4200, tilt -350\n"
         "2: Stage right, pan 4150, tilt -360\n"
         "3: Lectern, pan -1800, tilt -500\n"
         "4: Whiteboard, pan 2600, tilt 150\n"
         "5: Audience, pan 17000, tilt -800\n"
         "6: Wide shot, pan 0, tilt -250\n");
}

TEST_F(ProgramsTest, PresetIsAddedUnderTheNextFreeId) {
  device.write(CFG_FILE_PRESET, "<PresetCfg><preset Id=\"0\"/><preset Id=\"2\"/></PresetCfg>");
  expect(run(presetsMain, {"add", "Door", "10", "-5"}), 0, "1\n");
  expect(run(presetsMain, {}), 0,
         "0: , pan 0, tilt 0\n2: , pan 0, tilt 0\n1: Door, pan 10, tilt -5\n");
}

TEST_F(ProgramsTest, StartUpOfASoundDevicePrintsNothing) {
  const Run result = run(startUp, {});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
}

TEST_F(ProgramsTest, StartUpReportsARepairedFile) {
  device.write(CFG_FILE_MPP, device.read(CFG_FILE_MPP).substr(0, 1000));
  const Run result = run(startUp, {});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "startup: /cfg0/mpp_cfg.xml was repaired\n");
  EXPECT_EQ(device.read(CFG_FILE_MPP), device.read("/cfg1/mpp_cfg.xml"));
}

TEST_F(ProgramsTest, StartUpReportsAFileThatNothingRepairs) {
  for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"})
    device.write(std::string(directory) + "preset_cfg.xml", "<PresetCfg");
  const Run result = run(startUp, {});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.errors, "startup: /cfg0/preset_cfg.xml is unusable\n");
}

TEST_F(ProgramsTest, CommandLinesThatMakeNoSenseAreRefused) {
  expect(run(portsMain, {"rtsp"}), 2, "",
         "usage: ports [rtsp PORT | rtsp-over-http PORT | web HTTP HTTPS]\n");
  expect(run(presetsMain, {"add"}), 2, "", "usage: presets [add DESCRIPTION PAN TILT]\n");
  for (const char* id : {"", "x", "0x", "1 ", "9999999999"})
    expect(run(srtMain, {"remove", id}), 2, "", "usage: srt [call HOST PORT CACHE | remove ID]\n");
}

}  // namespace
