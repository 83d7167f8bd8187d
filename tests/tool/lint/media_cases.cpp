#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> mediaCases() {
  return {
      {"required-attribute", kCleanMedia, R"( ChnId="0")", "", R"( ChnId="5")",
       R"(x.xml:3: error: <VENC> has no "ChnId", without which the section does not load [required-attribute]
)"},
      {"required-attribute", kCleanMedia, R"(<MediaGroup Name="live">)", "<MediaGroup>",
       R"(<MediaGroup Name="x">)",
       R"(x.xml:22: error: <MediaGroup> has no "Name", without which the section does not load [required-attribute]
)"},
      {"minus-one", kCleanMedia, R"(ChnId="0")", R"(ChnId="-1")", R"(ChnId="5")",
       R"(x.xml:3: error: <VENC>: "ChnId" -1 counts as missing [minus-one]
)"},
      {"minus-one", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="-1"/>)", R"(<AllowedStreamSource Id="2" Default="0"/>)",
       R"(x.xml:10: error: <AllowedStreamSource>: "Id" -1 counts as missing [minus-one]
)"},
      {"expected-attribute", kCleanMedia, R"( GroupName="public")", "", R"( GroupName="")",
       R"(x.xml:34: warning: <Instance> has no "GroupName" [expected-attribute]
)"},
      {"unread-attribute", kCleanMedia, R"(DiscoveryServer="")",
       R"(bDiscoveryServerEnable="true" DiscoveryServer="")",
       R"(DiscoveryServerEnable="false" DiscoveryServer="")",
       R"(x.xml:34: warning: <Instance>: no loader reads "bDiscoveryServerEnable"; the loader reads "DiscoveryServerEnable" [unread-attribute]
)"},
      {"unread-attribute", kCleanMedia, R"( Enabled="0")", R"( Enabled="0" Codec="aac")",
       R"( Enabled="0")",
       R"(x.xml:5: warning: <AI>: no loader reads "Codec" [unread-attribute]
)"},
      {"unknown-element", kCleanMedia, "        <AENC ",
       R"(        <VDEC Id="3" Name="in"/>
        <AENC )",
       "        <aenc ",
       R"(x.xml:4: warning: <StreamSource>: no loader reads <VDEC>, and the next save drops it [unknown-element]
)"},
      {"unknown-element", kCleanMedia,
       R"(            <Channel Id="0" Type="Video"/>
)",
       R"(            <Server/>
            <Channel Id="0" Type="Video"/>
)",
       R"(            <channel Id="0" Type="video"/>
)",
       R"(x.xml:29: warning: <Target>: no loader reads <Server> [unknown-element]
)"},
      {"dropped-by-save", kCleanMedia, "        <AENC ",
       R"(        <!-- rear -->
        <AENC )",
       R"(
        <AENC )",
       R"(x.xml:4: warning: <StreamSource>: the next save drops this comment [dropped-by-save]
)"},
      {"not-a-switch", kCleanMedia, R"(Enable="true" url)", R"(Enable="1" url)",
       R"(Enable="FALSE" url)",
       R"(x.xml:28: error: <Target>: "Enable" '1' is read as false [not-a-switch]
)"},
      {"equal-name", kCleanMedia,
       R"(    </RTSP>
)",
       R"(        <MediaGroup Name="live"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>
)",
       R"(        <MediaGroup Name="Live2"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>
)",
       R"(x.xml:26: warning: this RTSP session has the name 'live' of the one at line 22 [equal-name]
)"},
      {"channel-missing", kCleanMedia, R"(<Channel Id="7" Name="audio"/>)",
       R"(<Channel Id="9" Name="audio"/>)", R"(<Channel Id="7" Name="sound"/>)",
       R"(x.xml:24: warning: <MediaGroup> 'live' sends channel 9, which is the id of no stream cache [channel-missing]
)"},
      {"channel-type-unknown", kCleanMedia, R"(Type="MainVideo")", R"(Type="Video")",
       R"(Type="mainvideo")",
       R"(x.xml:35: warning: <Instance> '0' has no channel of type 'Video': it is left out [channel-type-unknown]
)"},
      {"channel-type-twice", kCleanMedia, R"(Type="Audio")", R"(Type="video")", R"(Type="AUDIO")",
       R"(x.xml:30: warning: <Target> '0' has a channel of type Video at line 29 already: this one is left out [channel-type-twice]
)"},
      {"srt-mode", kCleanMedia, R"(Mode="Listener")", R"(Mode="Rendezvous")", R"(Mode="LISTENER")",
       R"(x.xml:39: error: <Instance> '0': "Mode" 'Rendezvous' is neither Listener nor Caller [srt-mode]
)"},
      {"srt-caller-without-host", kCleanMedia, R"(Mode="Listener")", R"(Mode="Caller")",
       R"(Mode="caller" Hostname="a")",
       R"(x.xml:39: error: <Instance> '0' is a caller without "Hostname" [srt-caller-without-host]
)"},
      {"srt-host-of-listener", kCleanMedia, R"(Mode="Listener")", R"(Mode="Listener" Hostname="a")",
       R"(Mode="Caller" Hostname="a")",
       R"(x.xml:39: warning: <Instance> '0': "Hostname" of a listener is not read [srt-host-of-listener]
)"},
      {"multicast", kCleanMedia,
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastEnable="true" MulticastIp="223.255.255.255">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastEnable="true" MulticastIp="239.0.0.0">)",
       R"(x.xml:34: error: <Instance> '0': "MulticastIp": '223.255.255.255' is not a multicast address [multicast]
)"},
      {"multicast", kCleanMedia,
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastEnable="true" MulticastNetmask="255.0.255.0">)",
       R"(<Instance Id="0" Enable="true" DiscoveryServer="" GroupName="public" MainStreamName="One" MulticastEnable="true" MulticastNetmask="255.255.0.0">)",
       R"(x.xml:34: error: <Instance> '0': "MulticastNetmask": '255.0.255.0' is not a netmask: its set bits are not all at the beginning [multicast]
)"},
      {"srt-password-unused", kCleanMedia, R"(Port="9000")", R"(Port="9000" Password="secret")",
       R"(Port="9000" AesMode="1" Password="ten bytes!")",
       R"(x.xml:39: warning: <Instance> '0' has a password, but no "AesMode" above 0 that uses it [srt-password-unused]
)"},
  };
}

}  // namespace camcfg::tests
