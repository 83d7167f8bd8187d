#ifndef CAMCFG_TESTS_TOOL_MEDIA_TOOL_TEST_H
#define CAMCFG_TESTS_TOOL_MEDIA_TOOL_TEST_H

#include <string>

#include "tool/tool_test.h"

namespace camcfg::tests {

constexpr char kMppBackup[] = "/cfg1/mpp_cfg.xml";

/// A media file as the library writes it.
constexpr char kMedia[] =
    "<Stream>\n"
    "    <StreamSource>\n"
    "        <VENC Id=\"0\" Name=\"main\" ChnId=\"0\"/>\n"
    "        <AENC Id=\"1\" Name=\"mic\" AencId=\"3\" Enabled=\"0\"/>\n"
    "        <AI Id=\"2\" Name=\"line\" AiId=\"1\"/>\n"
    "    </StreamSource>\n"
    "    <StreamCache>\n"
    "        <Cache Id=\"0\" Name=\"program\" BufferSizeMB=\"8\">\n"
    "            <AllowedStreamSource Id=\"0\" Default=\"1\"/>\n"
    "            <AllowedStreamSource Id=\"2\"/>\n"
    "        </Cache>\n"
    "        <Cache Id=\"7\" Name=\"audio\" BufferSizeB=\"192000\">\n"
    "            <AllowedStreamSource Id=\"1\"/>\n"
    "            <AllowedStreamSource Id=\"2\" Default=\"1\"/>\n"
    "        </Cache>\n"
    "    </StreamCache>\n"
    "</Stream>\n"
    "\n"
    "<LiveMediaService>\n"
    "    <WEBSOCKET>\n"
    "        <Channel Id=\"7\" Name=\"listen\"/>\n"
    "    </WEBSOCKET>\n"
    "    <RTSP>\n"
    "        <MediaGroup Name=\"live\">\n"
    "            <Channel Id=\"0\" Name=\"video\"/>\n"
    "            <Channel Id=\"7\" Name=\"audio\"/>\n"
    "        </MediaGroup>\n"
    "        <MediaGroup Name=\"empty\"/>\n"
    "    </RTSP>\n"
    "    <RTMP>\n"
    "        <Target Id=\"0\" Enable=\"true\" url=\"rtmp://u:p@192.0.2.1/a\" username=\"me\" "
    "password=\"secret\">\n"
    "            <Channel Id=\"0\" Type=\"Video\"/>\n"
    "        </Target>\n"
    "        <Target Id=\"1\" Enable=\"false\" url=\"rtmp://192.0.2.2/b\" username=\"\" "
    "password=\"\"/>\n"
    "    </RTMP>\n"
    "    <NDI>\n"
    "        <Instance Id=\"0\" Enable=\"true\" DiscoveryServerEnable=\"true\" "
    "DiscoveryServer=\"192.0.2.3\" GroupName=\"public\" MainStreamName=\"One\" "
    "MulticastEnable=\"false\" MulticastIp=\"239.255.0.0\" MulticastNetmask=\"255.255.0.0\" "
    "MulticastTTL=\"4\">\n"
    "            <Channel Id=\"0\" Type=\"MainVideo\"/>\n"
    "        </Instance>\n"
    "    </NDI>\n"
    "    <SRT>\n"
    "        <Instance Id=\"0\" Mode=\"Listener\" Port=\"9000\" Latency=\"120\">\n"
    "            <Stream Id=\"program\" Default=\"1\">\n"
    "                <Channel Id=\"0\"/>\n"
    "                <Channel Id=\"7\"/>\n"
    "            </Stream>\n"
    "            <Stream Id=\"quiet\" Default=\"0\"/>\n"
    "        </Instance>\n"
    "        <Instance Id=\"1\" Mode=\"Caller\" Hostname=\"example.com\" Port=\"9001\" "
    "AesMode=\"1\" Password=\"secret\" Latency=\"20\"/>\n"
    "    </SRT>\n"
    "</LiveMediaService>\n";

/// A scratch device with a media file.
class MediaToolTest : public ToolTest {
 protected:
  MediaToolTest() { give(kMedia); }

  void give(const std::string& media) const {
    device.write(kMpp, media);
    device.write(kMppBackup, media);
  }
  /// Replaces a part of the media file.
  void giveWith(const std::string& part, const std::string& other) const {
    give(with(device.read(kMpp), part, other));
  }
  void expectBoth(const std::string& media) const {
    EXPECT_EQ(device.read(kMpp), media);
    EXPECT_EQ(device.read(kMppBackup), media);
  }
  /// Runs a command that must be refused and change nothing.
  void expectRefused(const std::vector<std::string>& arguments, int status,
                     const std::string& refusal) const {
    const std::string former = device.read(kMpp);
    EXPECT_EQ(run(arguments), (ToolRun{status, "", "camcfg: " + refusal + "\n"}));
    expectBoth(former);
  }
};

}  // namespace camcfg::tests

#endif
