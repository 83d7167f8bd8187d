#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> relationCases() {
  return {
      {"address-not-of-host", kCleanParameters, R"(192.0.2.7)", R"(192.0.2.255)", R"(192.0.2.254)",
       R"(x.xml:21: warning: Lan0/IpAddr: "Cur": 192.0.2.255 is the broadcast address of the subnet 192.0.2.0/24 [address-not-of-host]
)"},
      {"gateway-unreachable", kCleanParameters, R"(        <DnsSearch Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<GateWay Cur="192.0.3.1" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<GateWay Cur="192.0.2.1" Def=""/>
)",
       R"(x.xml:24: warning: Lan0/GateWay: "Cur": 192.0.3.1 is not in 192.0.2.0/24, the subnet of 192.0.2.7 [gateway-unreachable]
)"},
      {"address-twice", kCleanParameters, R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.2.7" Def=""/><NetMask Cur="255.255.255.0" Def=""/></Lan1>
)",
       R"(    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.3.7" Def=""/><NetMask Cur="255.255.255.0" Def=""/></Lan1>
)",
       R"(x.xml:26: error: Lan1/IpAddr: "Cur" '192.0.2.7' is the address of card Lan0, too [address-twice]
)"},
      {"subnet-twice", kCleanParameters, R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.2.8" Def=""/><NetMask Cur="255.255.255.0" Def=""/></Lan1>
)",
       R"(    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.3.8" Def=""/><NetMask Cur="255.255.255.0" Def=""/></Lan1>
)",
       R"(x.xml:26: warning: Lan1/IpAddr: "Cur" is in 192.0.2.0/24, as that of card Lan0 [subnet-twice]
)"},
      {"two-gateways", kCleanParameters, R"(    </Lan0>
)",
       R"(        <GateWay Cur="192.0.2.1" Def=""/>
    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.3.8" Def=""/><NetMask Cur="255.255.255.0" Def=""/><GateWay Cur="192.0.3.1" Def=""/>
</Lan1>
)",
       R"(        <GateWay Cur="192.0.2.1" Def=""/>
    </Lan0>
    <Lan1><Enable Cur="On" Def="On"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="StaticIp" Def="DhcpIp"/>
<IpAddr Cur="192.0.3.8" Def=""/><NetMask Cur="255.255.255.0" Def=""/><GateWay Cur="" Def=""/>
</Lan1>
)",
       R"(x.xml:27: warning: Lan1/GateWay: "Cur" is a second default route: card Lan0 has one [two-gateways]
)"},
      {"dns-missing", kCleanParameters, R"(        <DnsSearch Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.2.1" Def=""/>
)",
       R"(x.xml:24: warning: Lan0/DnsMode: "Cur" is ManualMode, but no name server is set [dns-missing]
)"},
      {"dns-order", kCleanParameters, R"(        <DnsSearch Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="" Def=""/><Dns2 Cur="192.0.2.1" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.2.2" Def=""/><Dns2 Cur="192.0.2.1" Def=""/>
)",
       R"(x.xml:24: warning: Lan0/Dns2: "Cur" is set, but Dns1 is empty [dns-order]
)"},
      {"gigabit-half-duplex", kCleanParameters, R"(        <DnsSearch Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<Speed Cur="1000M" Def="100M"/><Duplex Cur="Half" Def="Half"/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<Speed Cur="100M" Def="100M"/><Duplex Cur="Half" Def="Half"/>
)",
       R"(x.xml:24: warning: Lan0/Duplex: "Cur" is Half, and the speed is 1000M [gigabit-half-duplex]
)"},
      {"gigabit-forced", kCleanParameters, R"(        <DnsSearch Cur="" Def=""/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<Speed Cur="1000M" Def="100M"/><Autoneg Cur="Off" Def="On"/>
)",
       R"(        <DnsSearch Cur="" Def=""/>
<Speed Cur="100M" Def="1000M"/><Autoneg Cur="Off" Def="On"/>
)",
       R"(x.xml:24: warning: Lan0/Autoneg: "Cur" is Off, and the speed is 1000M [gigabit-forced]
)"},
      {"mtu-small", kCleanParameters, R"(MTU Cur="1500")", R"(MTU Cur="575")", R"(MTU Cur="576")",
       R"(x.xml:18: warning: Lan0/MTU: "Cur" 575 is below 576, which every network carries [mtu-small]
)"},
      {"all-cards-off", kCleanParameters, R"(<Enable Cur="On" Def="On"/>)",
       R"(<Enable Cur="Off" Def="On"/>)", R"(<Enable Cur="On" Def="Off"/>)",
       R"(x.xml:17: warning: Lan0/Enable: "Cur" is Off, as in all other cards [all-cards-off]
)"},
      {"hostname-number", kCleanParameters, R"("gate")", R"("1234")", R"("1234a")",
       R"(x.xml:15: warning: NetWork: "Hostname" '1234' is taken for an address [hostname-number]
)"},
      {"port-of-two-services", kCleanParameters, R"(<RtspOverHttp Cur="8080")",
       R"(<RtspOverHttp Cur="80")", R"(<RtspOverHttp Cur="81")",
       R"(x.xml:7: warning: System/RtspOverHttp: "Cur" 80 is the port of WebHttp at line 4, too [port-of-two-services]
)"},
      {"port-twice", kCleanMedia, R"(    </SRT>
)",
       R"(        <Instance Id="1" Mode="Listener" Port="9000"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
    </SRT>
)",
       R"(        <Instance Id="1" Mode="Listener" Port="9001"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
    </SRT>
)",
       R"(x.xml:44: error: <Instance> '1': "Port" is the port of the one at line 39 [port-twice]
)"},
      {"step-too-large", kCleanParameters, R"(Def="6" Min="0" Max="10" Step="2")",
       R"(Def="4" Min="4" Max="10" Step="7")", R"(Def="4" Min="4" Max="10" Step="6")",
       R"(x.xml:10: warning: Image/Gain: "Step" 7 is more than from "Min" to "Max" [step-too-large]
)"},
      {"options-empty", kCleanParameters, R"("Auto,Manual")", R"("Auto,,Manual")",
       R"("Auto, Manual")",
       R"(x.xml:11: warning: Image/Mode: "OptTxt" has an empty text between commas [options-empty]
)"},
      {"option-twice", kCleanParameters, R"("Auto,Manual")", R"("Auto,Manual,Auto")",
       R"("Auto,Manual,Auto1")",
       R"(x.xml:11: warning: Image/Mode: "OptTxt" has 'Auto' twice [option-twice]
)"},
      {"hardware-twice", kCleanMedia, R"(<AENC )",
       R"(<VENC Id="5" Name="b" ChnId="0" Enabled="0"/><AENC )",
       R"(<VENC Id="5" Name="b" ChnId="1" Enabled="0"/><AENC )",
       R"(x.xml:4: warning: <VENC>: "ChnId" 0 is that of the one at line 3, too [hardware-twice]
)"},
      {"channel-kind", kCleanMedia, R"(<Channel Id="7" Type="Audio"/>)",
       R"(<Channel Id="0" Type="Audio"/>)", R"(<Channel Id="7" Type="audio"/>)",
       R"(x.xml:30: error: <Channel>: "Type" 'Audio': cache 0 carries video [channel-kind]
)"},
      {"channel-name-kind", kCleanMedia, R"(<Channel Id="7" Name="audio"/>)",
       R"(<Channel Id="7" Name="Video"/>)", R"(<Channel Id="7" Name="Audio"/>)",
       R"(x.xml:24: warning: <Channel>: "Name" 'Video': cache 7 carries audio [channel-name-kind]
)"},
      {"nothing-sent", kCleanMedia, R"(            <Channel Id="0" Type="MainVideo"/>
)",
       "",
       R"(            <Channel Id="7" Type="Audio"/>
)",
       R"(x.xml:34: warning: <Instance> '0' has no <Channel>, so nothing is sent [nothing-sent]
)"},
      {"channel-twice", kCleanMedia, R"(<Channel Id="0"/>)",
       R"(<Channel Id="0"/>
<Channel Id="0"/>)",
       R"(<Channel Id="0"/>
<Channel Id="7"/>)",
       R"(x.xml:42: warning: <Stream> 'program': "Id" is that of the one at line 41 [channel-twice]
)"},
      {"name-empty", kCleanMedia, R"(<MediaGroup Name="live">)", R"(<MediaGroup Name="">)",
       R"(<MediaGroup Name="x">)",
       R"(x.xml:22: warning: <MediaGroup>: "Name" is empty [name-empty]
)"},
      {"rtmp-url", kCleanMedia, R"(rtmp://192.0.2.1/a)", R"(http://192.0.2.1/a)",
       R"(RTMPS://[2001:db8::1]:443/a)",
       R"(x.xml:28: error: <Target> '0': "url" is not of RTMP: its scheme is 'http' [rtmp-url]
)"},
      {"rtmp-url", kCleanMedia, R"(rtmp://192.0.2.1/a)", R"(rtmp://192.0.2.1:70000/a)",
       R"(rtmp://me:x@192.0.2.1:1935/a)",
       R"(x.xml:28: error: <Target> '0': "url" has a port that is not one [rtmp-url]
)"},
      {"url-twice", kCleanMedia, R"(    </RTMP>
)",
       R"(        <Target Id="1" Enable="true" url="rtmp://192.0.2.1/a" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>
)",
       R"(        <Target Id="1" Enable="true" url="rtmp://192.0.2.1/b" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>
)",
       R"(x.xml:32: warning: <Target> '1': "url" is that of the one at line 28 [url-twice]
)"},
      {"account-incomplete", kCleanMedia, R"(password="secret")", R"(password="")",
       R"(password="x")",
       R"(x.xml:28: warning: <Target> '0' has a user name without a password [account-incomplete]
)"},
      {"stream-name-twice", kCleanMedia, R"(    </NDI>
)",
       R"(        <Instance Id="1" Enable="true" DiscoveryServer="" GroupName="" MainStreamName="One"><Channel Id="0" Type="MainVideo"/></Instance>
    </NDI>
)",
       R"(        <Instance Id="1" Enable="true" DiscoveryServer="" GroupName="" MainStreamName="Two"><Channel Id="0" Type="MainVideo"/></Instance>
    </NDI>
)",
       R"(x.xml:37: warning: <Instance> '1': "MainStreamName" is that of the one at line 34 [stream-name-twice]
)"},
      {"discovery-without-server", kCleanMedia, R"(DiscoveryServer="")",
       R"(DiscoveryServerEnable="true" DiscoveryServer="")",
       R"(DiscoveryServerEnable="true" DiscoveryServer="a,192.0.2.1:5959")",
       R"(x.xml:34: error: <Instance> '0' uses a discovery server, but names none [discovery-without-server]
)"},
      {"multicast-ttl", kCleanMedia, R"(DiscoveryServer="")",
       R"(MulticastEnable="true" MulticastTTL="0" DiscoveryServer="")",
       R"(MulticastEnable="true" MulticastTTL="1" DiscoveryServer="")",
       R"(x.xml:34: warning: <Instance> '0': "MulticastTTL" 0 keeps it on the device [multicast-ttl]
)"},
      {"srt-password-missing", kCleanMedia, R"(Port="9000")", R"(Port="9000" AesMode="1")",
       R"(Port="9000" AesMode="0")",
       R"(x.xml:39: error: <Instance> '0' is encrypted, but has no password [srt-password-missing]
)"},
      {"srt-password-length", kCleanMedia, R"(Port="9000")",
       R"(Port="9000" AesMode="1" Password="nine byte")",
       R"(Port="9000" AesMode="1" Password="ten bytes!")",
       R"(x.xml:39: warning: <Instance> '0': "Password" has 9 bytes, outside 10..79 [srt-password-length]
)"},
      {"srt-latency", kCleanMedia, R"(Latency="120")", R"(Latency="10001")", R"(Latency="10000")",
       R"(x.xml:39: warning: <Instance> '0': "Latency" 10001 is more than 10000 ms [srt-latency]
)"},
      {"srt-host", kCleanMedia, R"(Mode="Listener")", R"(Mode="Caller" Hostname="239.0.0.1")",
       R"(Mode="Caller" Hostname="2001:db8::1")",
       R"(x.xml:39: error: <Instance> '0': "Hostname": '239.0.0.1' is a multicast address [srt-host]
)"},
      {"srt-host", kCleanMedia, R"(Mode="Listener")", R"(Mode="Caller" Hostname="relay:9000")",
       R"(Mode="Caller" Hostname="ingest_1.example.com.")",
       R"(x.xml:39: error: <Instance> '0': "Hostname": 'relay:9000' is no IPv6 address, and host names have no colon [srt-host]
)"},
      {"rtmp-url", kCleanMedia, R"(Enable="true" url="rtmp://192.0.2.1/a")",
       R"(Enable="true" url="")", R"(Enable="false" url="")",
       R"(x.xml:28: error: <Target> '0': "url" has no scheme as in rtmp:// [rtmp-url]
)"},
      {"rtmp-url", kCleanMedia, R"(rtmp://192.0.2.1/a)", R"(rtmp://192.0.2.1/)",
       R"(rtmp://live_1.example.com./a)",
       R"(x.xml:28: error: <Target> '0': "url" names no application, as in rtmp://HOST/APP [rtmp-url]
)"},
      {"rtmp-url", kCleanMedia, R"(rtmp://192.0.2.1/a)", R"(rtmp://239.0.0.1/a)",
       R"(rtmp://[2001:db8::1]/a)",
       R"(x.xml:28: error: <Target> '0': "url" '239.0.0.1' is a multicast address [rtmp-url]
)"},
      {"discovery-server", kCleanMedia, R"(DiscoveryServer="")",
       R"(DiscoveryServerEnable="true" DiscoveryServer="192.0.2.3,,192.0.2.4")",
       R"(DiscoveryServerEnable="true" DiscoveryServer="192.0.2.3:5959, ndi.example.com,[2001:db8::1]:5959,2001:db8::2")",
       R"(x.xml:34: error: <Instance> '0': "DiscoveryServer" '192.0.2.3,,192.0.2.4': names no host [discovery-server]
)"},
      {"discovery-server", kCleanMedia, R"(DiscoveryServer="")",
       R"(DiscoveryServerEnable="true" DiscoveryServer="ndi:99999")",
       R"(DiscoveryServerEnable="false" DiscoveryServer="ndi:99999")",
       R"(x.xml:34: error: <Instance> '0': "DiscoveryServer" 'ndi:99999': has a port that is not one [discovery-server]
)"},
      {"multicast", kCleanMedia, R"(DiscoveryServer="")",
       R"(MulticastEnable="true" MulticastNetmask="224.0.0.0" DiscoveryServer="")",
       R"(MulticastEnable="true" MulticastNetmask="240.0.0.0" DiscoveryServer="")",
       R"(x.xml:34: error: <Instance> '0': "MulticastNetmask": '224.0.0.0' is wider than all multicast addresses, 240.0.0.0 [multicast]
)"},
      {"cache-size-small", kCleanMedia, R"(BufferSizeKB="128")", R"(BufferSizeB="128")",
       R"(BufferSizeKB="4")",
       R"(x.xml:12: warning: cache 7: "BufferSizeB" 128 is less than 4 KiB [cache-size-small]
)"},
      {"equal-name", kCleanMedia, R"(Name="line" AencId)", R"(Name="main" AencId)",
       R"(Name="Main" AencId)",
       R"(x.xml:4: warning: this stream source has the name 'main' of the one at line 3 [equal-name]
)"},
      {"stream-default", kCleanMedia, R"(            <Stream Id="program" Default="1">)",
       R"(            <Stream Id="b" Default="1"><Channel Id="0"/></Stream>
            <Stream Id="program" Default="1">)",
       R"(            <Stream Id="b"><Channel Id="0"/></Stream>
            <Stream Id="program" Default="1">)",
       R"(x.xml:41: warning: <Stream> 'program' is a default, as the one at line 40 [stream-default]
)"},
      {"call-twice", kCleanMedia, R"(    </SRT>
)",
       R"(        <Instance Id="1" Mode="Caller" Port="9" Hostname="a"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
        <Instance Id="2" Mode="Caller" Port="9" Hostname="a"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
    </SRT>
)",
       R"(        <Instance Id="1" Mode="Caller" Port="9" Hostname="a"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
        <Instance Id="2" Mode="Caller" Port="8" Hostname="a"><Stream Id="a"><Channel Id="0"/></Stream></Instance>
    </SRT>
)",
       R"(x.xml:45: warning: <Instance> '2': "Port" is the host and port of the one at line 44 [call-twice]
)"},
      {"hardware-number", kCleanMedia, R"(ChnId="0")", R"(ChnId="-2")", R"(ChnId="63")",
       R"(x.xml:3: warning: <VENC>: "ChnId" -2 is below 0: there is no such channel [hardware-number]
)"},
      {"source-unused", kCleanMedia, R"(<AENC )", R"(<VENC Id="5" Name="b" ChnId="1"/><AENC )",
       R"(<VENC Id="5" Name="b" ChnId="1" Enabled="0"/><AENC )",
       R"(x.xml:4: warning: <VENC>: "Id" 5 is allowed by no cache [source-unused]
)"},
      {"cache-mixed", kCleanMedia, R"(<AllowedStreamSource Id="2"/>)",
       R"(<AllowedStreamSource Id="1"/>)", R"(<AllowedStreamSource Id="2" Default="0"/>)",
       R"(x.xml:10: warning: cache 0 can be switched to audio, and the channel at line 29 is for video [cache-mixed]
)"},
      {"session-two-videos", kCleanMedia, R"(<Channel Id="7" Name="audio"/>)",
       R"(<Channel Id="0" Name="second"/>)", R"(<Channel Id="7" Name="second"/>)",
       R"(x.xml:24: error: this channel of an RTSP session has the id 0 of the one at line 23 [equal-id]
x.xml:24: warning: session 'live' sends video here, as with the channel at line 23 [session-two-videos]
)"},
      {"equal-name", kCleanMedia, R"(<Channel Id="7" Name="audio"/>)",
       R"(<Channel Id="7" Name="video"/>)", R"(<Channel Id="7" Name="VIDEO 2"/>)",
       R"(x.xml:24: warning: <Channel>: "Name" 'video': cache 7 carries audio [channel-name-kind]
x.xml:24: warning: this channel has the name 'video' of the one at line 23 [equal-name]
)"},
      {"session-name", kCleanMedia, R"(<MediaGroup Name="live">)", R"(<MediaGroup Name="live 1">)",
       R"(<MediaGroup Name="/live/1">)",
       R"(x.xml:22: warning: session 'live 1' has white space in its name [session-name]
)"},
      {"session-name", kCleanMedia, R"(<MediaGroup Name="live">)",
       R"(<MediaGroup Name="rtsp://192.0.2.1/live">)", R"(<MediaGroup Name="rtsp:live">)",
       R"(x.xml:22: warning: session 'rtsp://192.0.2.1/live' is called by an address; its name is the path [session-name]
)"},
      {"session-name", kCleanMedia, "    </RTSP>",
       R"(<MediaGroup Name="LIVE"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>)",
       R"(<MediaGroup Name="live2"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>)",
       R"(x.xml:26: warning: session 'LIVE' is called as the one at line 22 except for case or the first slash [session-name]
)"},
      {"url-when-enabled", kCleanMedia, R"(Enable="true" url="rtmp://192.0.2.1/a")",
       R"(Enable="false" url="rtmp://192.0.2.256/a")", R"(Enable="false" url="")",
       R"(x.xml:28: warning: <Target> '0': "url" '192.0.2.256' is not of the form 192.0.2.1 [url-when-enabled]
)"},
      {"expected-attribute", kCleanMedia, R"(Enable="true" url)", "url", R"(Enable="false" url)",
       R"(x.xml:28: warning: <Target> '0' has no "Enable", so it is sent to [expected-attribute]
)"},
      {"rtmp-raw-sound", kCleanMedia, R"(<AENC Id="1" Name="line" AencId="0"/>)",
       R"(<AI Id="1" Name="line" AiId="1"/>)", R"(<AENC Id="1" Name="line" AencId="1"/>)",
       R"(x.xml:30: warning: <Channel>: "Id" 7: the cache carries an audio input, not an encoder [rtmp-raw-sound]
)"},
      {"multicast-local", kCleanMedia, R"(DiscoveryServer="")",
       R"(DiscoveryServer="" MulticastEnable="true" MulticastIp="224.0.0.251")",
       R"(DiscoveryServer="" MulticastEnable="true" MulticastIp="224.0.1.0")",
       R"(x.xml:34: warning: <Instance> '0': "MulticastIp" 224.0.0.251 is of the protocols of routers [multicast-local]
)"},
      {"main-video-missing", kCleanMedia, R"(Type="MainVideo")", R"(Type="SubVideo")",
       R"(Type="MAINVIDEO")",
       R"(x.xml:35: warning: <Instance> '0' has a channel of type SubVideo, but none of type MainVideo [main-video-missing]
)"},
      {"channel-twice", kCleanMedia, R"(<Channel Id="0" Type="MainVideo"/>)",
       R"(<Channel Id="0" Type="MainVideo"/><Channel Id="0" Type="SubVideo"/>)",
       R"(<Channel Id="0" Type="MainVideo"/><Channel Id="7" Type="Audio"/>)",
       R"(x.xml:35: warning: <Instance> '0': "Id" is that of the one at line 35 [channel-twice]
)"},
      {"stream-id-too-long", kCleanMedia, R"(Id="program")",
       R"(Id=")" + std::string(513, 'm') + R"(")", R"(Id=")" + std::string(512, 'm') + R"(")",
       R"(x.xml:40: warning: <Stream> ')" + std::string(80, 'm') +
           R"(...': "Id" has 513 bytes, and callers send 512 at most [stream-id-too-long]
)"},
      {"name-space", kCleanMedia, R"(Name="video" BufferSizeMB)", R"(Name="video " BufferSizeMB)",
       R"(Name="a video" BufferSizeMB)",
       R"(x.xml:8: warning: <Cache>: "Name" 'video ' begins or ends with a space [name-space]
)"},
      {"name-space", kCleanPresets, R"(Description="Dock")", R"(Description=" Dock")",
       R"(Description="Dock 1")",
       R"(x.xml:3: warning: preset 3: "Description" ' Dock' begins or ends with a space [name-space]
)"},
      {"session-name", kCleanMedia, R"(<MediaGroup Name="live">)", R"(<MediaGroup Name="live#1">)",
       R"(<MediaGroup Name="live_1">)",
       R"(x.xml:22: warning: session 'live#1' has "#" in its name, where players end the address [session-name]
)"},
      {"session-name", kCleanMedia, "    </RTSP>",
       R"(<MediaGroup Name="/live"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>)",
       R"(<MediaGroup Name="live/"><Channel Id="0" Name="a"/></MediaGroup>
    </RTSP>)",
       R"(x.xml:26: warning: session '/live' is called as the one at line 22 except for case or the first slash [session-name]
)"},
      {"url-twice", kCleanMedia, "    </RTMP>",
       R"(<Target Id="1" Enable="true" url="RTMP://192.0.2.1:1935/a" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>)",
       R"(<Target Id="1" Enable="true" url="rtmp://192.0.2.1:1935/A" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>)",
       R"(x.xml:32: warning: <Target> '1': "url" is that of the one at line 28 [url-twice]
)"},
      {"url-twice", kCleanMedia, "    </RTMP>",
       R"(<Target Id="1" Enable="true" url="Rtmp://192.0.2.1/a" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>)",
       R"(<Target Id="1" Enable="true" url="rtmps://192.0.2.1:1935/a" username="" password=""><Channel Id="0" Type="Video"/></Target>
    </RTMP>)",
       R"(x.xml:32: warning: <Target> '1': "url" is that of the one at line 28 [url-twice]
)"},
      {"name-space", kCleanMedia, R"(username="me")", R"(username="me ")", R"(username="you")",
       R"(x.xml:28: warning: <Target> '0': "username" 'me ' begins or ends with a space [name-space]
)"},
      {"stream-name-twice", kCleanMedia, R"(    </NDI>)",
       R"(<Instance Id="1" Enable="true" DiscoveryServer="" GroupName="" MainStreamName="ONE"><Channel Id="0" Type="MainVideo"/></Instance>
    </NDI>)",
       R"(<Instance Id="1" Enable="false" DiscoveryServer="" GroupName="" MainStreamName="ONE"><Channel Id="0" Type="MainVideo"/></Instance>
    </NDI>)",
       R"(x.xml:37: warning: <Instance> '1': "MainStreamName" is that of the one at line 34 [stream-name-twice]
)"},
  };
}

}  // namespace camcfg::tests
