/// @file
/// The live media services, `<LiveMediaService>` of "/cfg0/mpp_cfg.xml": what the device publishes
/// over WebSocket, RTSP, RTMP, NDI and SRT, one section each.
///
/// A loader reads a whole section into the caller's list, a dumper replaces a whole section by the
/// list without checking any value. Each opens and closes the family's document itself; CFG_LM_Open
/// and the two close operations serve programs that read or edit the elements on their own.
///
/// Results: 0 or CFG_LM_ERR. A save that fails is not noticed. Running out of memory is CFG_LM_ERR
/// with the document dropped and no lock held.
/// Loaders empty the list once the section is open (CFG_LM_LoadWebsocketConfig before that) and
/// fill it in document order. On a fault they stop at once: the list keeps the records before the
/// faulty one, and the document stays open until the next CFG_LM_Open or close.
/// Prints: on standard output only, each message in the frame "[LEVEL][CFG][LiveMedia]: MESSAGE".
/// "Attr" below stands for the line "[Error][CFG][LiveMedia]: Attr `NAME` is required by PATH .\n"
/// with an attribute's name and a path of elements; it is always a fault. An integer attribute
/// counts as missing when it is absent, no integer or -1; a text attribute when it is absent.
/// "Unknown" stands for the line "[Warning][CFG][LiveMedia]: Un-support element <NAME> at PATH,
/// ignored.\n", drawn by an element that is skipped. Where it is not named, unknown elements are
/// skipped without a message.
/// Every loader and dumper prints what CFG_LM_Open does, and ends with Info "Load SECTION Config
/// success.\n" or "Update SECTION Config success.\n".
/// Element names inside a section, and words such as "true", "Video" and "Caller", match in upper
/// and lower case alike, attribute names exactly.
/// Threads: one at a time for the whole family, because it has one document, and none at the
/// same time in the stream family, which works on the same file. Families of other files may run at
/// the same time.
#ifndef CAMCFG_LIVEMEDIA_H
#define CAMCFG_LIVEMEDIA_H

#include <camcfg/types.h>
#include <tinyxml2.h>

#include <list>
#include <memory>
#include <string>

/// Failure of a loader or dumper of this family.
static const std::int32_t CFG_LM_ERR = static_cast<std::int32_t>(0x80002305);

/// A WebSocket session: `<Channel Id="" Name=""/>`.
struct tag_CFG_WEBSOCKET_SESSION_T {
  std::string strName;      ///< "Name": the session's name
  std::int32_t s32Id = -1;  ///< "Id": the session's number
};
/// Short name of the WebSocket session record.
typedef struct tag_CFG_WEBSOCKET_SESSION_T CFG_WEBSOCKET_SESSION_T;

/// A channel of an RTSP session: `<Channel Id="" Name=""/>`.
struct tag_CFG_RTSP_SUBSESSION_T {
  std::string strName;      ///< "Name": the channel's name
  std::int32_t s32Id = -1;  ///< "Id": the channel's number
};
/// Short name of the RTSP channel record.
typedef struct tag_CFG_RTSP_SUBSESSION_T CFG_RTSP_SUBSESSION_T;

/// An RTSP session, the media group: `<MediaGroup Name="">` with its channels.
struct tag_CFG_RTSP_SESSION_T {
  std::string strName;                                 ///< "Name": the group's name
  std::list<tag_CFG_RTSP_SUBSESSION_T> lstSubSession;  ///< its channels, in document order
};
/// Short name of the RTSP session record.
typedef struct tag_CFG_RTSP_SESSION_T CFG_RTSP_SESSION_T;

/// An RTMP target: `<Target Id="" Enable="" url="" username="" password="">` with up to two
/// `<Channel Id="" Type=""/>`.
struct tag_CFG_RTMP_SESSION_T {
  std::int32_t s32Id = -1;       ///< "Id": the target's number
  std::int32_t bEnable = 0;      ///< "Enable": 1 when the target is sent to, else 0
  std::string strUrl;            ///< "url": the target's address
  std::string strUsername;       ///< "username": user name for the server
  std::string strPassword;       ///< "password": password for the server, in clear
  std::int32_t s32VideoId = -1;  ///< channel of Type "Video"; -1 for none
  std::int32_t s32AudioId = -1;  ///< channel of Type "Audio"; -1 for none
};
/// Short name of the RTMP target record.
typedef struct tag_CFG_RTMP_SESSION_T CFG_RTMP_SESSION_T;

/// An NDI instance: `<Instance ...>` with up to three `<Channel Id="" Type=""/>`.
struct tag_CFG_NDI_SESSION_T {
  std::int32_t s32Id = -1;                     ///< "Id": the instance's number
  std::int32_t bEnable = 0;                    ///< "Enable": 1 when it is published, else 0
  std::int32_t bDiscoveryServerEnable = 0;     ///< 1 when a discovery server is used; read from
                                               ///< "DiscoveryServerEnable", written as
                                               ///< "bDiscoveryServerEnable"
  std::string strDiscoveryServer;              ///< "DiscoveryServer": its address
  std::int32_t bMulticastEnable = 0;           ///< "MulticastEnable": 1 when sent by multicast
  std::string strMulticastIp = "239.255.0.0";  ///< "MulticastIp": dotted IPv4 address
  std::string strMulticastNetmask = "255.255.0.0";  ///< "MulticastNetmask": dotted IPv4 mask
  std::int32_t s32MulticastTTL = 1;                 ///< "MulticastTTL": time to live
  std::string strGroupName;                         ///< "GroupName": groups that it is announced in
  std::string strMainStreamName;  ///< "MainStreamName": name that its main stream is announced by
  std::int32_t s32MainVideoId = -1;  ///< channel of Type "MainVideo"; -1 for none
  std::int32_t s32SubVideoId = -1;   ///< channel of Type "SubVideo"; -1 for none
  std::int32_t s32AudioId = -1;      ///< channel of Type "Audio"; -1 for none
};
/// Short name of the NDI instance record.
typedef struct tag_CFG_NDI_SESSION_T CFG_NDI_SESSION_T;

/// A stream of an SRT instance: `<Stream Id="" Default="">` with one `<Channel Id=""/>` each.
struct tag_CFG_SRT_STREAM_T {
  std::string strId;            ///< "Id": the stream's number or name, as written
  std::int32_t s32Default = 0;  ///< "Default": mark of the stream
  std::list<int> lstChannel;    ///< numbers of its channels, in document order
};
/// Short name of the SRT stream record.
typedef struct tag_CFG_SRT_STREAM_T CFG_SRT_STREAM_T;

/// An SRT instance: `<Instance Id="" Mode="" Hostname="" Port="" AesMode="" Password=""
/// Latency="">` with its streams.
struct tag_CFG_SRT_INSTANCE_T {
  std::int32_t s32Id = -1;       ///< "Id": the instance's number; -1 when not set
  std::int32_t s32Mode = 0;      ///< "Mode": 1 "Listener", 0 "Caller"
  std::string strHostname;       ///< "Hostname": host to call; empty for a listener
  std::int32_t s32Port = -1;     ///< "Port": local port of a listener, remote port of a caller
  std::int32_t s32AesMode = 0;   ///< "AesMode": mode of encryption; 0 or less for none
  std::string strPassword;       ///< "Password": pass phrase, in clear; empty for none
  std::int32_t s32Latency = 20;  ///< "Latency", as stored
  std::list<tag_CFG_SRT_STREAM_T> lstStream;  ///< its streams, in document order
};
/// Short name of the SRT instance record.
typedef struct tag_CFG_SRT_INSTANCE_T CFG_SRT_INSTANCE_T;

/// The family's open document of "/cfg0/mpp_cfg.xml", or null. The family owns it.
CFG_API extern tinyxml2::XMLDocument* g_LM_xmlDoc;

/// Loads "/cfg0/mpp_cfg.xml" into g_LM_xmlDoc and finds a section of `<LiveMediaService>`. A
/// document that is still open is dropped first, unsaved; a lock that it holds stays held.
/// @param pcSection   whole name of the section: "WEBSOCKET", "RTSP", "RTMP", "NDI" or "SRT"
/// @param enReadOnly  1: read mode, no lock is held on return; any other value: write mode, on
///                    success the file's lock is held until CFG_LM_CloseWrite
/// @return the first element of that name, owned by g_LM_xmlDoc and valid while that is open; null
///         on failure, with g_LM_xmlDoc null and no lock held
/// Prints, level Error: file not opened, "Config File open failed\n"; no `<LiveMediaService>` or no
/// such section, "<NAME> not found\n". A file that was not opened in write mode draws the warning
/// of CFG_UnlockFile as well, since there is no lock left to release.
CFG_API tinyxml2::XMLElement* CFG_LM_Open(const char* pcSection, tagBU_BOOL enReadOnly);

/// Drops the open document without saving it; does nothing when none is open.
/// @return always 0
/// Locks: none is released. Ending write mode like this needs CFG_UnlockFile(CFG_FILE_MPP) as well.
CFG_API int CFG_LM_CloseRead();

/// Saves the open document and its backup, releases the file's lock and drops the document; does
/// nothing when none is open.
/// @return always 0, whatever became of the save
CFG_API int CFG_LM_CloseWrite();

/// Reads all WebSocket sessions.
/// @param sessions  emptied even when the file cannot be opened
/// @return 0 or CFG_LM_ERR
/// Prints: Attr with "Id", then with "Name", and "<WEBSOCKET><Channel>"; Unknown at "<WEBSOCKET>".
CFG_API int CFG_LM_LoadWebsocketConfig(std::list<tag_CFG_WEBSOCKET_SESSION_T>& sessions);

/// Replaces all WebSocket sessions and saves.
/// @param sessions  records to write, in order
/// @return 0; CFG_LM_ERR with the file untouched when it was not opened
CFG_API int CFG_LM_DumpWebsocketConfig(const std::list<tag_CFG_WEBSOCKET_SESSION_T>& sessions);

/// Reads all RTSP sessions.
/// @param sessions  left as it was when the file cannot be opened. Each record is made by
///                  std::make_shared; one that the application still holds outlives the next load.
/// @return 0 or CFG_LM_ERR
/// Prints: Attr with "Name" and "<RTSP><MediaGroup>", or with "Id", then with "Name", and
/// "<RTSP><MediaGroup><Channel>"; Unknown at "<RTSP>".
CFG_API int CFG_LM_LoadRtspConfig(std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>>& sessions);

/// Replaces all RTSP sessions and saves.
/// @param sessions  records to write, in order; null pointers are left out
/// @return 0; CFG_LM_ERR with the file untouched when it was not opened
CFG_API int CFG_LM_DumpRtspConfig(
    const std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>>& sessions);

/// Reads all RTMP targets.
/// @param sessions  left as it was when the file cannot be opened
/// @return 0 or CFG_LM_ERR
/// Without "Enable" a target is enabled; any word but "true" disables it. Without "username" or
/// "password" that text is empty. Of several channels of one Type the first counts; other Types are
/// ignored without a message.
/// Prints: Attr with "Id", then with "url", and "<RTSP><MediaGroup>" (which stands for the target);
/// Attr with "Id" or else "Type" and "<RTMP><Target><Channel>"; Unknown at "<RTSP>" (which stands
/// for the section); Warning "Video has been set for RTMP[ID] as CHANNEL, ignore CHANNEL\n", or
/// "Audio ..." likewise.
CFG_API int CFG_LM_LoadRtmpConfig(std::list<tag_CFG_RTMP_SESSION_T>& sessions);

/// Acts as if it replaced all RTMP targets, but saves nothing: the file stays as it
/// was and its lock stays held, so that every later opening of the file waits and fails until
/// CFG_UnlockFile(CFG_FILE_MPP). To store targets, open the section with CFG_LM_Open, edit it and
/// end with CFG_LM_CloseWrite.
/// @param sessions  records to write, in order
/// @return 0; CFG_LM_ERR, with the lock not held, when the file was not opened
CFG_API int CFG_LM_DumpRtmpConfig(const std::list<tag_CFG_RTMP_SESSION_T>& sessions);

/// Reads all NDI instances.
/// @param sessions  left as it was when the file cannot be opened
/// @return 0 or CFG_LM_ERR
/// No attribute of an instance is required: numbers, addresses and switches keep the values of a
/// new record, other texts are empty. A switch is on for the word "true" only. Of several channels
/// of one Type the first counts.
/// Prints: Attr with "Id" or else "Type" and
/// "<NDI><Session><Channel>"; Unknown at "<NDI>"; Warning "Un-support Type TYPE for
/// <NDI><Instance><Channel>, ignored.\n"; Warning "TYPE has been set for NDI[ID] as CHANNEL, ignore
/// CHANNEL\n".
CFG_API int CFG_LM_LoadNdiConfig(std::list<tag_CFG_NDI_SESSION_T>& sessions);

/// Replaces all NDI instances and saves. The discovery switch is written under another name than it
/// is read from, so it is off when the file is loaded again.
/// @param sessions  records to write, in order
/// @return 0; CFG_LM_ERR with the file untouched when it was not opened
CFG_API int CFG_LM_DumpNdiConfig(const std::list<tag_CFG_NDI_SESSION_T>& sessions);

/// Reads all SRT instances.
/// @param instances  left as it was when the file cannot be opened
/// @return 0 or CFG_LM_ERR
/// "AesMode", "Password", "Latency" and a stream's "Default" may be absent and keep the values of a
/// new record then. "Hostname" is required of a caller and not read of a listener.
/// Prints: Attr with "Id", then "Mode", then "Port", then "Hostname", and "<SRT><Instance>"; with
/// "Id" and "<SRT><Instance><Stream>" or "<SRT><Instance><Stream><Channel>"; Warning "Bad srt mode
/// = MODE, only allow {Listener, Caller}, skip instance.\n", which is a fault nevertheless; Unknown
/// at "<SRT>" and at "<SRT><Instance>".
CFG_API int CFG_LM_LoadSrtConfig(std::list<tag_CFG_SRT_INSTANCE_T>& instances);

/// Replaces all SRT instances and saves. "Hostname" and "Password" are left out when they are
/// empty, "AesMode" when it is not above 0; a mode other than 0 is written as "Listener".
/// @param instances  records to write, in order
/// @return 0; CFG_LM_ERR with the file untouched when it was not opened
CFG_API int CFG_LM_DumpSrtConfig(const std::list<tag_CFG_SRT_INSTANCE_T>& instances);

#endif
