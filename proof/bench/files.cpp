#include "bench/files.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace camcfg::bench {

std::string lastParameter(int parameters) {
  char name[24];
  std::snprintf(name, sizeof name, "Param%06d", parameters - 1);
  return name;
}

std::string parameterFile(int parameters) {
  std::ostringstream out;
  out << "<Bench>\n";
  for (int i = 0; i < parameters; ++i)
    out << "    <" << lastParameter(i + 1) << " Cur=\"" << i
        << "\" Def=\"0\" Min=\"0\" Max=\"1000000\" Step=\"1\"/>\n";
  out << "</Bench>\n";
  return out.str();
}

std::string presetFile(int presets) {
  std::ostringstream out;
  out << "<PresetCfg>\n";
  for (int i = 0; i < presets; ++i)
    out << "    <preset Id=\"" << i << "\" Description=\"position " << i
        << "\" PanPos=\"100\" TiltPos=\"-20\" ZoomPos=\"3\" FocusPos=\"400\" FocusMode=\"1\"/>\n";
  out << "</PresetCfg>\n";
  return out.str();
}

namespace {

std::string entry(const std::string& section, int i) {
  const std::string id = std::to_string(i);
  if (section == "StreamSource")
    return "<VENC Id=\"" + id + "\" Name=\"video " + id + "\" ChnId=\"" + id + "\"/>";
  if (section == "StreamCache")
    return "<Cache Id=\"" + id + "\" Name=\"cache " + id + "\" BufferSizeKB=\"512\">" +
           R"(<AllowedStreamSource Id="0"/><AllowedStreamSource Id="1" Default="1"/></Cache>)";
  if (section == "WEBSOCKET") return "<Channel Id=\"" + id + "\" Name=\"channel " + id + "\"/>";
  if (section == "RTSP")
    return "<MediaGroup Name=\"group " + id + "\">" +
           R"(<Channel Id="0" Name="video"/><Channel Id="1" Name="audio"/></MediaGroup>)";
  if (section == "RTMP")
    return "<Target Id=\"" + id + "\" Enable=\"true\" url=\"rtmp://host/app" + id + "\" " +
           R"(username="user" password="secret"><Channel Id="0" Type="Video"/>)" +
           R"(<Channel Id="1" Type="Audio"/></Target>)";
  if (section == "NDI")
    return "<Instance Id=\"" + id + "\" Enable=\"true\" bDiscoveryServerEnable=\"false\" " +
           "DiscoveryServer=\"\" GroupName=\"g\" MainStreamName=\"stream " + id + "\" " +
           R"(MulticastEnable="false" MulticastIp="" MulticastNetmask="" MulticastTTL="0">)" +
           R"(<Channel Id="0" Type="MainVideo"/><Channel Id="2" Type="Audio"/></Instance>)";
  return "<Instance Id=\"" + id + "\" Mode=\"Listener\" Port=\"9000\" Latency=\"20\">" +
         R"(<Stream Id="main" Default="1"><Channel Id="0"/><Channel Id="1"/></Stream></Instance>)";
}

std::string mediaFile(const std::string& top, const std::string& section, int entries) {
  std::string out = "<" + top + ">\n<" + section + ">\n";
  for (int i = 0; i < entries; ++i) out += entry(section, i) + "\n";
  return out + "</" + section + ">\n</" + top + ">\n";
}

}  // namespace

std::string streamFile(const std::string& section, int entries) {
  return mediaFile("Stream", section, entries);
}

std::string liveMediaFile(const std::string& section, int entries) {
  return mediaFile("LiveMediaService", section, entries);
}

std::string networkFile(int cards) {
  std::ostringstream out;
  out << "<NetWork Hostname=\"encoder\">\n";
  for (int i = 0; i < cards; ++i)
    out << "<Lan" << i << "><Enable Cur=\"On\" Def=\"On\"/><Intf Cur=\"Eth0\" Def=\"Eth0\"/>"
        << "<IpMode Cur=\"StaticIp\" Def=\"DhcpIp\"/><IpAddr Cur=\"192.0.2.10\" Def=\"\"/>"
        << "<NetMask Cur=\"255.255.255.0\" Def=\"\"/><MTU Cur=\"1500\" Def=\"1500\"/></Lan" << i
        << ">\n";
  out << "</NetWork>\n";
  return out.str();
}

void writeFile(const std::string& path, const std::string& contents) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

}  // namespace camcfg::bench
