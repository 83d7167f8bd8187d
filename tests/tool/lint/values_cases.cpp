#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> valueCases() {
  return {
      {"not-an-integer", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="none" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="-0" Max="10" Step="2"/>)",
       R"(x.xml:10: error: Image/Gain: "Min" 'none' is not an integer [not-an-integer]
)"},
      {"not-an-integer", kCleanMedia, R"(Enabled="0")", R"(Enabled="false")", R"(Enabled="0")",
       R"(x.xml:5: error: <AI>: "Enabled" 'false' is not an integer [not-an-integer]
x.xml:10: warning: cache 0 can be switched to audio, and the channel at line 29 is for video [cache-mixed]
)"},
      {"integer-too-large", kCleanParameters,
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="4294967306" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="2147483647" Step="2"/>)",
       R"(x.xml:10: error: Image/Gain: "Max" '4294967306' does not fit into 32 bits and is read as another number [integer-too-large]
)"},
      {"odd-integer", kCleanMedia, R"(BufferSizeKB="128")", R"(BufferSizeKB="128KB")",
       R"(BufferSizeKB="129")",
       R"(x.xml:12: warning: <Cache>: "BufferSizeKB" '128KB' is read as 128 [odd-integer]
)"},
      {"missing-attribute", kCleanParameters,
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10"/>)",
       R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="1"/>)",
       R"(x.xml:10: error: Image/Gain has no "Step", which CFG_COM_GetIntParams needs [missing-attribute]
)"},
      {"missing-attribute", kCleanParameters,
       R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(x.xml:11: error: Image/Mode has no "Def", which CFG_COM_GetTxtParams needs [missing-attribute]
)"},
      {"only-shown", kCleanParameters, R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto">)", R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto, Manual">)",
       R"(x.xml:11: warning: Image/Mode has neither "Min" and "Max" nor "OptTxt" [only-shown]
)"},
      {"missing-attribute", kCleanParameters, R"( OptTxt="Slow,Fast")", "",
       R"( OptTxt="Slow, Fast")",
       R"(x.xml:12: error: Image/Mode/Speed has no "OptTxt", which CFG_COM_GetTxtParamByParent needs [missing-attribute]
)"},
      {"missing-attribute", kCleanParameters, R"( DeviceModel="E4")", "", R"( DeviceModel="")",
       R"(x.xml:3: error: System/DeviceAttr has no "DeviceModel", which CFG_SYSTEM_GetDeviceName needs [missing-attribute]
)"},
      {"missing-attribute", kCleanParameters, R"(<MTU Cur="1500" Def="1500"/>)",
       R"(<MTU Cur="1500"/>)", R"(<MTU Cur="1500" Def="1400"/>)",
       R"(x.xml:18: error: Lan0/MTU has no "Def", which CFG_NETWORK_GetAllParamDef reads [missing-attribute]
)"},
      {"value-too-long", kCleanParameters, R"(<Mode Cur="Auto" Def="Auto" OptTxt="Auto,Manual">)",
       R"(<Mode Cur="Auto" Def="sixteen-letters-" OptTxt="Auto,sixteen-letters-">)",
       R"(<Mode Cur="Auto" Def="fifteen-letters" OptTxt="Auto,fifteen-letters">)",
       R"(x.xml:11: error: Image/Mode: "Def" has 16 bytes, and its readers have room for 15 [value-too-long]
)"},
      {"value-too-long", kCleanParameters, R"(<DnsSearch Cur="")",
       R"(<DnsSearch Cur="thirty-two-bytes.of-a-domain.net")",
       R"(<DnsSearch Cur="thirty-one-byte.of-a-domain.net")",
       R"(x.xml:23: error: Lan0/DnsSearch: "Cur" has 32 bytes, and its readers have room for 31 [value-too-long]
)"},
      {"port-range", kCleanParameters, R"(<Rtsp Cur="554" Def="554" Min="1")",
       R"(<Rtsp Cur="0" Def="554" Min="0")", R"(<Rtsp Cur="1" Def="554" Min="1")",
       R"(x.xml:6: error: System/Rtsp: "Cur" 0 is not a port (1..65535) [port-range]
x.xml:6: warning: System/Rtsp: "Min" 0 lets calls set what is not a port (1..65535) [port-limits]
)"},
      {"port-range", kCleanMedia, R"(Port="9000")", R"(Port="65536")", R"(Port="65535")",
       R"(x.xml:39: error: <Instance>: "Port" 65536 is not a port (1..65535) [port-range]
)"},
      {"value-range", kCleanMedia, R"(Latency="120")", R"(Latency="-1")", R"(Latency="0")",
       R"(x.xml:39: error: <Instance>: "Latency" -1 is outside 0..2147483647 [value-range]
)"},
      {"value-range", kCleanMedia,
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastTTL="256">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastTTL="255">)",
       R"(x.xml:34: error: <Instance>: "MulticastTTL" 256 is outside 0..255 [value-range]
)"},
      {"attribute-case", kCleanParameters, R"(Hostname="gate")", R"(hostname="gate")",
       R"(Hostname="gate" hosts="")",
       R"(x.xml:15: error: NetWork: "hostname" is not read: readers look for "Hostname" [attribute-case]
x.xml:15: warning: NetWork has no "Hostname" [hostname]
)"},
      {"attribute-case", kCleanPresets, R"(Description="Dock")", R"(Description="Dock" panPos="1")",
       R"(Description="Dock" private="1")",
       R"(x.xml:3: error: preset 3: "panPos" is not read: readers look for "PanPos" [attribute-case]
)"},
      {"carried-id", kCleanPresets, R"(<preset Id="3")", "<preset", R"(<preset Id="4")",
       R"(x.xml:3: error: this preset has no readable "Id", and is taken for 0, as the one at line 2 [carried-id]
)"},
      {"carried-id", kCleanPresets, R"(<preset Id="0")", R"(<preset Id="zero")",
       R"(<preset Id="1")",
       R"(x.xml:2: error: this preset: "Id" 'zero' is not an integer [not-an-integer]
x.xml:2: error: this preset has no readable "Id", and there is none before it to take one from [carried-id]
)"},
      {"carried-id", kCleanParameters, R"(<Gain Cur="4" Def="6" Min="0" Max="10" Step="2"/>)",
       R"(<Port Id="1" Cur="1" Def="1" Min="0" Max="9" Step="1"/>
    <Port Cur="2" Def="2" Min="0" Max="9" Step="1"/>)",
       R"(<Port Id="1" Cur="1" Def="1" Min="0" Max="9" Step="1"/>
    <Port Id="2" Cur="2" Def="2" Min="0" Max="9" Step="1"/>)",
       R"(x.xml:11: error: Image/Port has no readable "Id", and is taken for 1, as the one at line 10 [carried-id]
)"},
      {"equal-id", kCleanPresets, R"(<preset Id="3")", R"(<preset Id="0")", R"(<preset Id="128")",
       R"(x.xml:3: error: this preset has the id 0 of the one at line 2 [equal-id]
)"},
      {"equal-id", kCleanMedia,
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
)",
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
        <AENC Id="2" Name="rear" AencId="1"/>
)",
       R"(        <AI Id="2" Name="mic" AiId="0" Enabled="0"/>
        <AENC Id="3" Name="rear" AencId="1" Enabled="0"/>
)",
       R"(x.xml:6: error: this source has the id 2 of the one at line 5 [equal-id]
)"},
      {"equal-id", kCleanMedia, R"(        <Cache Id="0")",
       R"(        <Cache Id="7" Name="a" BufferSizeB="10000"><AllowedStreamSource Id="1"/></Cache>
        <Cache Id="0")",
       R"(        <Cache Id="8" Name="a" BufferSizeB="10000"><AllowedStreamSource Id="1"/></Cache>
        <Cache Id="0")",
       R"(x.xml:13: error: this cache has the id 7 of the one at line 8 [equal-id]
)"},
  };
}

}  // namespace camcfg::tests
