#ifndef CAMCFG_TESTS_TOOL_LINT_CASES_H
#define CAMCFG_TESTS_TOOL_LINT_CASES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace camcfg::tests {

// Files in which nothing is found.

inline constexpr char kCleanParameters[] = R"(<System>
    <Language Cur="English" Def="English" OptTxt="English,German"/>
    <DeviceAttr DeviceName="North Gate" DeviceModel="E4"/>
    <WebHttp Cur="80" Def="80" Min="1" Max="65535" Step="1"/>
    <WebHttps Cur="443" Def="443" Min="1" Max="65535" Step="1"/>
    <Rtsp Cur="554" Def="554" Min="1" Max="65535" Step="1"/>
    <RtspOverHttp Cur="8080" Def="8080" Min="1" Max="65535" Step="1"/>
</System>
<Image>
    <Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>
    <Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">
        <Speed Cur="Fast" Def="Slow" OptTxt="Slow,Fast"/>
    </Mode>
</Image>
<NetWork Hostname="gate">
    <Lan0>
        <Enable Cur="On" Def="On"/>
        <MTU Cur="1500" Def="1500"/>
        <Intf Cur="Eth0" Def="Eth0"/>
        <IpMode Cur="StaticIp" Def="DhcpIp"/>
        <IpAddr Cur="192.0.2.7" Def=""/>
        <NetMask Cur="255.255.255.0" Def=""/>
        <DnsSearch Cur="" Def=""/>
    </Lan0>
</NetWork>
)";

inline constexpr char kCleanPresets[] = R"(<PresetCfg>
    <preset Id="0" Description="Home" PanPos="0" TiltPos="0" ZoomPos="0" FocusPos="0" FocusMode="0"/>
    <preset Id="3" Description="Dock" PanPos="-20" TiltPos="5" ZoomPos="100" FocusPos="7" FocusMode="1"/>
</PresetCfg>
)";

inline constexpr char kCleanMedia[] = R"(<Stream>
    <StreamSource>
        <VENC Id="0" Name="main" ChnId="0"/>
        <AENC Id="1" Name="line" AencId="0"/>
        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
    </StreamSource>
    <StreamCache>
        <Cache Id="0" Name="video" BufferSizeMB="8">
            <AllowedStreamSource Id="0" Default="1"/>
            <AllowedStreamSource Id="2"/>
        </Cache>
        <Cache Id="7" Name="audio" BufferSizeKB="128">
            <AllowedStreamSource Id="1"/>
        </Cache>
    </StreamCache>
</Stream>
<LiveMediaService>
    <WEBSOCKET>
        <Channel Id="0" Name="video"/>
    </WEBSOCKET>
    <RTSP>
        <MediaGroup Name="live">
            <Channel Id="0" Name="video"/>
            <Channel Id="7" Name="audio"/>
        </MediaGroup>
    </RTSP>
    <RTMP>
        <Target Id="0" Enable="true" url="rtmp://192.0.2.1/a" username="me" password="secret">
            <Channel Id="0" Type="Video"/>
            <Channel Id="7" Type="Audio"/>
        </Target>
    </RTMP>
    <NDI>
        <Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One">
            <Channel Id="0" Type="MainVideo"/>
        </Instance>
    </NDI>
    <SRT>
        <Instance Id="0" Mode="Listener" Port="9000" Latency="120">
            <Stream Id="program" Default="1">
                <Channel Id="0"/>
            </Stream>
        </Instance>
    </SRT>
</LiveMediaService>
)";

inline constexpr char kCleanTexts[] = R"(<Texts>
    <MenuLive Val="Live view"/>
    <MenuVideo Val="Video"/>
</Texts>
)";

/// A file that has a hazard, and one much like it that has none.
struct LintCase {
  const char* rule;
  const char* base;      ///< one of the files above
  const char* part;      ///< what of it is replaced
  std::string hazard;    ///< by this in the file with the hazard
  std::string harmless;  ///< by this in the one in which nothing is found
  std::string found;     ///< all lines for the file with the hazard, called "x.xml"
};

// Without it GoogleTest prints a case's bytes before every test, which takes longer than most tests.
inline void PrintTo(const LintCase& lintCase, std::ostream* out) {
  *out << lintCase.rule;
}

// Those of each subject, in the file of its name.
std::vector<LintCase> structureCases();
std::vector<LintCase> textCases();
std::vector<LintCase> valueCases();
std::vector<LintCase> parameterCases();
std::vector<LintCase> networkCases();
std::vector<LintCase> presetCases();
std::vector<LintCase> mediaCases();
std::vector<LintCase> relationCases();
std::vector<LintCase> streamCases();
std::vector<LintCase> languageCases();

/// All of them.
std::vector<LintCase> allCases();

/// The base of a case with its part replaced, wherever it is.
std::string fileWith(const LintCase& lintCase, const std::string& other);

/// A test's name for a case.
template <typename Case>
std::string caseName(const testing::TestParamInfo<Case>& info) {
  std::string name = info.param.rule + ("_" + std::to_string(info.index));
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

}  // namespace camcfg::tests

#endif
