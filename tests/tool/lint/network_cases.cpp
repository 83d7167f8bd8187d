#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> networkCases() {
  return {
      {"network-address", kCleanParameters, R"(<DnsSearch Cur="")",
       R"(<DnsSearch Cur="a.example  b")", R"(<DnsSearch Cur="a.example b")",
       R"(x.xml:23: error: Lan0/DnsSearch: "Cur": '' has an empty label [network-address]
)"},
      {"hostname", kCleanParameters, R"( Hostname="gate")", "", R"( Hostname="north-gate")",
       R"(x.xml:15: warning: NetWork has no "Hostname" [hostname]
)"},
      {"hostname", kCleanParameters, R"(Hostname="gate")", R"(Hostname="north gate")",
       R"(Hostname="gate.example.com")",
       R"(x.xml:15: warning: NetWork: "Hostname": 'north gate' has a character that is not a letter, digit or hyphen [hostname]
)"},
      {"too-many-cards", kCleanParameters,
       R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Eth1"/></Lan1>
    <Lan2><Intf Cur="Wlan0" Def="Wlan0"/></Lan2>
    <Lan3><Intf Cur="" Def=""/></Lan3>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Eth1"/></Lan1>
    <Lan2><Intf Cur="Wlan0" Def="Wlan0"/></Lan2>
)",
       R"(x.xml:27: error: card Lan3 is not listed: there are 3 before it [too-many-cards]
x.xml:27: error: Lan3/Intf: "Cur" '' is none of Eth0, Eth1, Wlan0 [network-word]
x.xml:27: error: Lan3/Intf: "Def" '' is none of Eth0, Eth1, Wlan0 [network-word]
)"},
      {"card-name-too-long", kCleanParameters, "Lan0", "EthernetPortRear", "EthernetPortRea",
       R"(x.xml:16: error: card EthernetPortRear is listed as EthernetPortRea [card-name-too-long]
)"},
      {"card-shadowed", kCleanParameters, "    <Lan0>",
       R"(    <Lan01><Intf Cur="Eth1" Def="Eth1"/></Lan01>
    <Lan0>)",
       R"(    <Lan1><Intf Cur="Eth1" Def="Eth1"/></Lan1>
    <Lan0>)",
       R"(x.xml:17: error: card Lan0: calls find <Lan01> at line 16, which begins with this name [card-shadowed]
)"},
      {"card-twice", kCleanParameters,
       R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan0><Intf Cur="Eth1" Def="Eth1"/></Lan0>
)",
       R"(    </Lan0>
    <Lan01><Intf Cur="Eth1" Def="Eth1"/></Lan01>
)",
       R"(x.xml:25: error: card Lan0: calls find the one at line 16 [card-twice]
)"},
      {"not-a-card", kCleanParameters,
       R"(    </Lan0>
)",
       R"(    </Lan0>
    <Timeout Cur="30"/>
)",
       R"(    </Lan0>
    <Timeout><Intf Cur="Eth1" Def="Eth1"/></Timeout>
)",
       R"(x.xml:25: warning: <Timeout> is listed as a card, but has nothing of one [not-a-card]
)"},
      {"interface-missing", kCleanParameters,
       R"(        <Intf Cur="Eth0" Def="Eth0"/>
)",
       "",
       R"(        <Intf Cur="Wlan0" Def="Eth0"/>
)",
       R"(x.xml:16: warning: card Lan0 has no <Intf> [interface-missing]
)"},
      {"interface-twice", kCleanParameters,
       R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth0" Def="Eth1"/></Lan1>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Wlan0"/></Lan1>
)",
       R"(x.xml:25: warning: card Lan1 drives Eth0, as card Lan0 does [interface-twice]
)"},
      {"interface-twice", kCleanParameters,
       R"(    </Lan0>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Eth0"/></Lan1>
)",
       R"(    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Wlan0"/></Lan1>
)",
       R"(x.xml:25: warning: card Lan1 after a reset drives Eth0, as card Lan0 does [interface-twice]
)"},
      {"dns-auto-static", kCleanParameters, "        <DnsSearch",
       R"(        <DnsMode Cur="AutoMode" Def="AutoMode"/>
        <DnsSearch)",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.2.1" Def=""/>
        <DnsSearch)",
       R"(x.xml:23: warning: Lan0/DnsMode: "Cur" is AutoMode, but the address is static [dns-auto-static]
)"},
      {"dns-unreachable", kCleanParameters, "        <DnsSearch",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.3.1" Def=""/>
        <DnsSearch)",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="127.0.0.53" Def=""/>
        <DnsSearch)",
       R"(x.xml:23: warning: Lan0/Dns1: "Cur" 192.0.3.1 is not in 192.0.2.0/24, and no gateway leads there [dns-unreachable]
)"},
      {"dns-unreachable", kCleanParameters, "        <DnsSearch",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.3.1" Def=""/>
        <DnsSearch)",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.3.1" Def=""/>
        <GateWay Cur="192.0.2.1" Def=""/><DnsSearch)",
       R"(x.xml:23: warning: Lan0/Dns1: "Cur" 192.0.3.1 is not in 192.0.2.0/24, and no gateway leads there [dns-unreachable]
)"},
      {"dns-unreachable", kCleanParameters, "        <DnsSearch",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.2.255" Def=""/>
        <DnsSearch)",
       R"(        <DnsMode Cur="ManualMode" Def="AutoMode"/><Dns1 Cur="192.0.2.254" Def=""/>
        <DnsSearch)",
       R"(x.xml:23: warning: Lan0/Dns1: "Cur": 192.0.2.255 is the broadcast address of the subnet 192.0.2.0/24 [dns-unreachable]
)"},
      {"hostname", kCleanParameters, R"(Hostname="gate")", R"(Hostname="localhost")",
       R"(Hostname="localhost1")",
       R"(x.xml:15: warning: NetWork: "Hostname" 'localhost' is what every device calls itself [hostname]
)"},
      {"card-field-missing", kCleanParameters, "    </Lan0>\n",
       R"(        <GateWay Cur="" Def=""/>
    </Lan0>
    <Lan1><Enable Cur="Off" Def="Off"/><Intf Cur="Eth1" Def="Eth1"/><IpMode Cur="DhcpIp" Def="DhcpIp"/>
<IpAddr Cur="" Def=""/><NetMask Cur="" Def=""/></Lan1>
)",
       R"(        <GateWay Cur="" Def=""/>
    </Lan0>
    <Lan1><Intf Cur="Eth1" Def="Eth1"/></Lan1>
)",
       R"(x.xml:26: warning: card Lan1 has no <GateWay>, as card Lan0 has: none can be stored [card-field-missing]
)"},
      {"card-field-shadowed", kCleanParameters, "        <MTU",
       R"(        <MTUs/>
        <MTU)",
       R"(        <Speed Cur="10M" Def="10M"/>
        <MTU)",
       R"(x.xml:18: warning: Lan0/MTUs: no reader knows this element [card-field-unread]
x.xml:19: error: Lan0/MTU: setters find <MTUs> at line 18 [card-field-shadowed]
)"},
      {"card-field-twice", kCleanParameters, "        <MTU",
       R"(        <Enable Cur="Off" Def="On"/>
        <MTU)",
       R"(        <Autoneg Cur="Off" Def="On"/>
        <MTU)",
       R"(x.xml:18: error: Lan0/Enable: setters write the one at line 17 [card-field-twice]
)"},
      {"written-as-another", kCleanParameters, "        <MTU",
       R"(        <EnableWifi Cur="On" Def="On"/>
        <MTU)",
       R"(        <Autoneg Cur="On" Def="On"/>
        <MTU)",
       R"(x.xml:18: error: Lan0/EnableWifi: setters write Enable into it, and no reader knows it [written-as-another]
)"},
      {"card-field-unread", kCleanParameters, "        <MTU",
       R"(        <Ipaddr Cur="192.0.2.8" Def=""/>
        <MTU)",
       R"(        <GateWay Cur="192.0.2.8" Def=""/>
        <MTU)",
       R"(x.xml:18: warning: Lan0/Ipaddr: no reader knows this element [card-field-unread]
)"},
      {"network-word", kCleanParameters, R"(<Enable Cur="On" Def="On")",
       R"(<Enable Cur="on" Def="On")", R"(<Enable Cur="On" Def="Off")",
       R"(x.xml:17: error: Lan0/Enable: "Cur" 'on' is none of Off, On [network-word]
)"},
      {"network-word", kCleanParameters, R"(<Intf Cur="Eth0")", R"(<Intf Cur="eth0")",
       R"(<Intf Cur="Eth1")",
       R"(x.xml:19: error: Lan0/Intf: "Cur" 'eth0' is none of Eth0, Eth1, Wlan0 [network-word]
)"},
      {"network-address", kCleanParameters, "192.0.2.7", "192.0.2.256", "192.0.2.254",
       R"(x.xml:21: error: Lan0/IpAddr: "Cur": '192.0.2.256' is not of the form 192.0.2.1 [network-address]
)"},
      {"network-address", kCleanParameters, "255.255.255.0", "255.0.255.0", "255.255.0.0",
       R"(x.xml:22: error: Lan0/NetMask: "Cur": '255.0.255.0' is not a netmask: its set bits are not all at the beginning [network-address]
)"},
      {"network-address", kCleanParameters, R"(Cur="StaticIp" Def="DhcpIp")",
       R"(Cur="StaticIp" Def="StaticIp")", R"(Cur="DhcpIp" Def="DhcpIp")",
       R"(x.xml:21: error: Lan0/IpAddr: "Def": '' is not of the form 192.0.2.1 [network-address]
x.xml:22: error: Lan0/NetMask: "Def": '' is not of the form 192.0.2.1 [network-address]
)"},
      {"mtu-range", kCleanParameters, R"(MTU Cur="1500")", R"(MTU Cur="67")", R"(MTU Cur="576")",
       R"(x.xml:18: error: Lan0/MTU: "Cur" 67 is outside 68..9216 [mtu-range]
)"},
      {"mtu-range", kCleanParameters, R"(MTU Cur="1500")", R"(MTU Min="1280" Cur="1000")",
       R"(MTU Min="1000" Cur="1000")",
       R"(x.xml:18: error: Lan0/MTU: "Cur" 1000 is outside 1280..9216 [mtu-range]
)"},
  };
}

}  // namespace camcfg::tests
