/// @file
/// The network cards' settings, the host name, the list of cards, and the names of interfaces.
///
/// All of it is in the section "NetWork" of "/cfg0/business_param.xml", a top-level element
/// found by its whole name. The host name is the section's attribute "Hostname". Every child
/// element of the section is a card and its name is the card's name. A card has one
/// element per parameter, its current value in the attribute "Cur" and its factory value in "Def";
/// a card may lack any of them. Only "Cur" is ever written, and no element is ever made or removed:
///
/// | element                        | field                          | words                |
/// |--------------------------------|--------------------------------|----------------------|
/// | "Enable"                       | enEnable                       | Off, On              |
/// | "Autoneg"                      | enAutoneg                      | Off, On              |
/// | "Duplex"                       | enDuplex                       | Half, Full           |
/// | "Speed"                        | enSpeed                        | 10M, 100M, 1000M     |
/// | "MTU"                          | s32MTU                         | a decimal integer    |
/// | "Intf"                         | acIntf                         | Eth0, Eth1, Wlan0    |
/// | "IpMode"                       | enIpMode                       | DhcpIp, StaticIp     |
/// | "IpAddr", "NetMask", "GateWay" | acIpAddr, acNetMask, acGateWay | any text             |
/// | "DnsMode"                      | enDnsMode                      | AutoMode, ManualMode |
/// | "Dns1", "Dns2", "DnsSearch"    | acDns1, acDns2, acDnsSearch    | any text             |
/// | "DhcpDns1", "DhcpDns2"         | acDhcpDns1, acDhcpDns2         | any text             |
///
/// How names match: a card is the first one whose name begins with the text given, so within the
/// section a card whose name begins another's must come first. Reading takes a parameter element by
/// its whole name; writing takes it by the beginning of its name ("EnableWifi" is written as
/// "Enable") except "MTU", "DnsSearch", "DhcpDns1" and "DhcpDns2", which are written by whole name.
///
/// Texts longer than their field are cut to fit, with their terminator; an absent attribute is an
/// empty text. No value is checked otherwise: any text may be stored as an address.
///
/// Locks: a call that writes holds the file's lock from loading to saving; one that reads holds it
/// while it loads. Each returns with the file unlocked. Threads: any, at any time.
///
/// Most calls return nothing: a failure shows only in the log, in level 3 records that
/// name the call which does the work (named below where that is another one). Common failures:
/// - "pcCard is NULL\n": a null card, parameter, attribute or record; nothing is opened.
/// - "XMLDocument haven't initialize\n": the file cannot be opened (CFG_GetDocByFileName has
///   reported why).
/// - "Load %s failed\n" with the path: the file has no top-level element.
/// - "NetWork node doesn't exist\n": it has no such section.
/// - "Network %s node doesn't exist\n": no such card, or no such parameter of the card, whichever
///   name is given.
/// - "Save %s failed\n" with the path: memory ran out before the change was stored.
/// A failed write leaves the file as it was, except for the last of these.
#ifndef CAMCFG_NETWORK_H
#define CAMCFG_NETWORK_H

#include <camcfg/types.h>

/// Bytes of an interface or card name, terminator included.
#define CFG_NETWORK_NAME_SIZE 16
/// Bytes of every other text field, terminator included.
#define CFG_NETWORK_TEXT_SIZE 32
/// Cards that tagNETWORK_CARDS_S has room for.
#define CFG_NETWORK_CARDS_MAX 3

/// Duplex of a link. Other values may be passed and are not written.
enum tagDUPLEX_E : std::int32_t {
  LINK_DUPLEX_HALF = 0,  ///< "Half"
  LINK_DUPLEX_FULL = 1   ///< "Full"
};
/// Short name of the duplex type.
typedef enum tagDUPLEX_E DUPLEX_E;

/// Speed of a link in Mbit/s. Other values may be passed and are not written.
enum tagLINK_SPEED_E : std::int32_t {
  LINK_SPEED_10M = 10,     ///< "10M"
  LINK_SPEED_100M = 100,   ///< "100M"
  LINK_SPEED_1000M = 1000  ///< "1000M"
};
/// Short name of the speed type.
typedef enum tagLINK_SPEED_E LINK_SPEED_E;

/// Where a card's address comes from. Other values may be passed and are not written.
enum tagIP_MODE_E : std::int32_t {
  IP_MODE_DHCP = 0,   ///< "DhcpIp"
  IP_MODE_STATIC = 1  ///< "StaticIp"
};
/// Short name of the address mode type.
typedef enum tagIP_MODE_E IP_MODE_E;

/// Where a card's DNS servers come from. Other values may be passed and are not written.
enum tagDNS_MODE_E : std::int32_t {
  DNS_MODE_AUTO = 0,   ///< "AutoMode": those learnt from DHCP
  DNS_MODE_MANUAL = 1  ///< "ManualMode": those set by hand
};
/// Short name of the DNS mode type.
typedef enum tagDNS_MODE_E DNS_MODE_E;

/// The settings of one card. Reading leaves every field terminated. When writing, a text field
/// without a terminator is taken for one that ends with the field's last byte.
struct tagNETWORK_CFG_S {
  tagBU_BOOL enEnable;                      ///< 1: the card is in use
  char acIntf[CFG_NETWORK_NAME_SIZE];       ///< "eth0", "eth1" or "wlan0"; empty when unknown
  tagIP_MODE_E enIpMode;                    ///< where the address comes from
  char acIpAddr[CFG_NETWORK_TEXT_SIZE];     ///< address
  char acNetMask[CFG_NETWORK_TEXT_SIZE];    ///< netmask
  char acGateWay[CFG_NETWORK_TEXT_SIZE];    ///< gateway
  tagDNS_MODE_E enDnsMode;                  ///< where the DNS servers come from
  char acDns1[CFG_NETWORK_TEXT_SIZE];       ///< first DNS server set by hand
  char acDns2[CFG_NETWORK_TEXT_SIZE];       ///< second DNS server set by hand
  char acDnsSearch[CFG_NETWORK_TEXT_SIZE];  ///< search domain
  char acDhcpDns1[CFG_NETWORK_TEXT_SIZE];   ///< first DNS server learnt from DHCP
  char acDhcpDns2[CFG_NETWORK_TEXT_SIZE];   ///< second DNS server learnt from DHCP
  tagBU_BOOL enAutoneg;                     ///< 1: speed and duplex are negotiated
  tagLINK_SPEED_E enSpeed;                  ///< speed; 0 when unknown
  tagDUPLEX_E enDuplex;                     ///< duplex
  std::int32_t s32MTU;                      ///< MTU in bytes
};
/// Short name of the settings record.
typedef struct tagNETWORK_CFG_S NETWORK_CFG_S;

/// The configured cards, in the order of the file.
struct tagNETWORK_CARDS_S {
  char acCard[CFG_NETWORK_CARDS_MAX][CFG_NETWORK_NAME_SIZE];  ///< names of the cards
  /// Interface of each card ("eth0", "eth1", "wlan0"); empty when it has none or an unknown one.
  char acIntf[CFG_NETWORK_CARDS_MAX][CFG_NETWORK_NAME_SIZE];
  std::int32_t s32Count;  ///< number of cards listed, 0 to CFG_NETWORK_CARDS_MAX
};
/// Short name of the card list.
typedef struct tagNETWORK_CARDS_S NETWORK_CARDS_S;

/// Writes every parameter element that a card has, and saves, even if nothing changed.
/// @param pcCard  card, beginning of its name; the empty text is the first card
/// @param stCfg   the values. An enEnable other than 0 and 1, and a duplex, speed or mode without a
///                word, leave their element as it is; an enAutoneg other than 1 is written as
///                "Off"; an unknown acIntf is written as the empty text.
/// Prints: the common failures.
CFG_API void cfgNetworkSetAllParam(char* pcCard, tagNETWORK_CFG_S stCfg);

/// Writes one parameter element of a card, and saves, even if nothing changed.
/// @param pcParam  parameter, beginning of its name. The name of the element found decides what is
///                 written; if that is no parameter's name, the element stays as it is.
/// @param pcCard   card, beginning of its name
/// @param stCfg    the value in the field that belongs to the element, as for
///                 cfgNetworkSetAllParam; the other fields are not looked at
/// Prints: the common failures.
CFG_API void cfgNetworkSetSingleParam(char* pcParam, char* pcCard, tagNETWORK_CFG_S stCfg);

/// Reads every parameter of a card.
/// @param pcAttr  attribute to read: "Cur" or "Def"
/// @param pcCard  card, beginning of its name
/// @param pstCfg  receives the values. A word that the parameter does not have gives 0, as does an
///                MTU without a number; an MTU beyond 32 bits keeps its lower 32. Fields whose
///                element the card lacks are zero. Zeroed on failure, but untouched when an
///                argument is null.
/// Prints: the common failures.
CFG_API void cfgNetworkGetParam(char* pcAttr, char* pcCard, tagNETWORK_CFG_S* pstCfg);

/// The same as cfgNetworkSetAllParam, which the messages name.
/// @param pcCard  card, beginning of its name
/// @param stCfg   the values
CFG_API void CFG_NETWORK_SetAllParam(char* pcCard, tagNETWORK_CFG_S stCfg);

extern "C" {

/// Reads the current values ("Cur") of a card.
/// @param pcCard  card, beginning of its name
/// @param pstCfg  receives the values as described for cfgNetworkGetParam; zeroed on any failure
/// Prints: the common failures, under the name of cfgNetworkGetParam.
CFG_API void CFG_NETWORK_GetAllParamCur(char* pcCard, tagNETWORK_CFG_S* pstCfg);

}  // extern "C"

/// Reads the factory values ("Def") of a card.
/// @param pcCard  card, beginning of its name
/// @param pstCfg  receives the values as described for cfgNetworkGetParam; zeroed on any failure
/// Prints: the common failures, under the name of cfgNetworkGetParam.
CFG_API void CFG_NETWORK_GetAllParamDef(char* pcCard, tagNETWORK_CFG_S* pstCfg);

/// @defgroup one_field Setters of one field
/// Each writes one parameter element of a card and saves, as cfgNetworkSetSingleParam does, which
/// the messages name.
/// A text argument is cut to CFG_NETWORK_TEXT_SIZE - 1 characters; null is the empty text.
/// @{

/// Sets whether the card is in use ("Enable").
/// @param pcCard    card, beginning of its name
/// @param enEnable  1 or 0; any other value leaves the element as it is
CFG_API void CFG_NETWORK_SetNetMode(char* pcCard, tagBU_BOOL enEnable);
/// Sets whether speed and duplex are negotiated ("Autoneg").
/// @param pcCard     card, beginning of its name
/// @param enAutoneg  1: "On"; any other value: "Off"
CFG_API void CFG_NETWORK_SetLinkAutoneg(char* pcCard, tagBU_BOOL enAutoneg);
/// Sets the duplex ("Duplex").
/// @param pcCard    card, beginning of its name
/// @param enDuplex  an unknown value leaves the element as it is
CFG_API void CFG_NETWORK_SetLinkDuplex(char* pcCard, tagDUPLEX_E enDuplex);
/// Sets the speed ("Speed").
/// @param pcCard   card, beginning of its name
/// @param enSpeed  Mbit/s; an unknown value leaves the element as it is
CFG_API void CFG_NETWORK_SetLinkSpeed(char* pcCard, tagLINK_SPEED_E enSpeed);
/// Sets the MTU ("MTU").
/// @param pcCard  card, beginning of its name
/// @param s32MTU  bytes; any integer is stored
CFG_API void CFG_NETWORK_SetLinkMTU(char* pcCard, int s32MTU);
/// Sets where the address comes from ("IpMode").
/// @param pcCard    card, beginning of its name
/// @param enIpMode  an unknown value leaves the element as it is
CFG_API void CFG_NETWORK_SetIpMode(char* pcCard, tagIP_MODE_E enIpMode);
/// Sets the address ("IpAddr").
/// @param pcCard    card, beginning of its name
/// @param pcIpAddr  any text
CFG_API void CFG_NETWORK_SetIpAddr(char* pcCard, char* pcIpAddr);
/// Sets the netmask ("NetMask").
/// @param pcCard     card, beginning of its name
/// @param pcNetMask  any text
CFG_API void CFG_NETWORK_SetNetMask(char* pcCard, char* pcNetMask);
/// Sets the gateway ("GateWay").
/// @param pcCard     card, beginning of its name
/// @param pcGateWay  any text
CFG_API void CFG_NETWORK_SetGateWay(char* pcCard, char* pcGateWay);
/// Sets where the DNS servers come from ("DnsMode").
/// @param pcCard     card, beginning of its name
/// @param enDnsMode  an unknown value leaves the element as it is
CFG_API void CFG_NETWORK_SetDnsMode(char* pcCard, tagDNS_MODE_E enDnsMode);
/// Sets the first DNS server ("Dns1").
/// @param pcCard  card, beginning of its name
/// @param pcDns1  any text
CFG_API void CFG_NETWORK_SetDns1(char* pcCard, char* pcDns1);
/// Sets the second DNS server ("Dns2").
/// @param pcCard  card, beginning of its name
/// @param pcDns2  any text
CFG_API void CFG_NETWORK_SetDns2(char* pcCard, char* pcDns2);
/// Sets the search domain ("DnsSearch").
/// @param pcCard       card, beginning of its name
/// @param pcDnsSearch  any text
CFG_API void CFG_NETWORK_SetDnsSearch(char* pcCard, char* pcDnsSearch);

/// @}

/// Stores the DNS servers learnt from DHCP ("DhcpDns1", then "DhcpDns2"), each saved in a locked
/// cycle of its own: another writer may come between, and the first is stored even if the second
/// cannot be.
/// @param pcCard  card, beginning of its name
/// @param pcDns1  first server, any text; cut and null as for the setters of one field
/// @param pcDns2  second server likewise
/// Prints: the common failures, under the name of cfgNetworkSetSingleParam, once per cycle.
CFG_API void CFG_NETWORK_CacheDnsFromDhcp(char* pcCard, char* pcDns1, char* pcDns2);

/// Reads the host name.
/// @param pcBuf   receives the name: the rest of the s32Len bytes is zeroed, but a name of s32Len
///                characters or more fills them all without a terminator. Hand in one byte more
///                than the longest name that you accept. Zeroed when there is no "Hostname";
///                untouched on failure. May be null, which receives nothing.
/// @param s32Len  bytes of pcBuf; 0 or less receives nothing
/// Prints: the common failures.
CFG_API void CFG_NETWORK_GetHostname(char* pcBuf, int s32Len);

/// Sets the host name and saves.
/// @param pcName  any text of any length; null does nothing at all
/// Prints: the common failures.
CFG_API void CFG_NETWORK_SetHostname(char* pcName);

/// Lists the cards, the first CFG_NETWORK_CARDS_MAX of them.
/// @param pstCards  receives the list; zeroed on failure
/// @return 0 or -1; a section without cards is an empty list and 0
/// Prints: the common failures, with one difference: a file that cannot be opened is also reported
/// as "Load %s failed\n" with the path.
CFG_API int CFG_NETWORK_GetCards(tagNETWORK_CARDS_S* pstCards);

/// Reads the current values of a card that names a known interface.
/// @param pcCard  card, beginning of its name
/// @param pstCfg  receives the values as CFG_NETWORK_GetAllParamCur does. On failure acIntf is
///                cleared and the rest untouched; all of it is untouched when an argument is null.
/// @return 0; -1 on failure, one of them, without a message: a card with an unknown interface
///
/// The interface is looked for in the first element of the card whose name begins with "Intf"; if
/// it is a known one, the file is read again as by cfgNetworkGetParam, which takes acIntf from the
/// element of exactly this name. If that second reading fails, only its log record shows it.
///
/// Prints: as CFG_NETWORK_GetCards; no such card, "Network %s node doesn't exist\n"; no "Intf",
/// "Network %s intf node doesn't exist\n", both with pcCard.
CFG_API int CFG_NETWORK_GetCardIntf(char* pcCard, tagNETWORK_CFG_S* pstCfg);

/// Translates an interface name from the file's form to the operating system's.
/// @param pcName  "Eth0", "Eth1" or "Wlan0"
/// @return "eth0", "eth1" or "wlan0"; the empty text for any other name or null. The text is
///         constant and the library's.
CFG_API const char* CFG_NETWORK_IntfXmlStr2EthName(const char* pcName);

/// Translates an interface name from the operating system's form to the file's.
/// @param pcName  "eth0", "eth1" or "wlan0"
/// @return "Eth0", "Eth1" or "Wlan0"; the empty text for any other name or null. The text is
///         constant and the library's.
CFG_API const char* CFG_NETWORK_IntfEthName2XmlStr(const char* pcName);

#endif
