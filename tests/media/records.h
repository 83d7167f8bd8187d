#ifndef CAMCFG_TESTS_MEDIA_RECORDS_H
#define CAMCFG_TESTS_MEDIA_RECORDS_H

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <ostream>
#include <tuple>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"

inline auto fields(const tag_CFG_WEBSOCKET_SESSION_T& record) {
  return std::make_tuple(record.strName, record.s32Id);
}

inline auto fields(const tag_CFG_RTSP_SUBSESSION_T& record) {
  return std::make_tuple(record.strName, record.s32Id);
}

inline auto fields(const tag_CFG_RTSP_SESSION_T& record) {
  return std::make_tuple(record.strName, record.lstSubSession);
}

inline auto fields(const tag_CFG_RTMP_SESSION_T& record) {
  return std::make_tuple(record.s32Id, record.bEnable, record.strUrl, record.strUsername,
                         record.strPassword, record.s32VideoId, record.s32AudioId);
}

inline auto fields(const tag_CFG_NDI_SESSION_T& record) {
  return std::make_tuple(record.s32Id, record.bEnable, record.bDiscoveryServerEnable,
                         record.strDiscoveryServer, record.bMulticastEnable, record.strMulticastIp,
                         record.strMulticastNetmask, record.s32MulticastTTL, record.strGroupName,
                         record.strMainStreamName, record.s32MainVideoId, record.s32SubVideoId,
                         record.s32AudioId);
}

inline auto fields(const tag_CFG_SRT_STREAM_T& record) {
  return std::make_tuple(record.strId, record.s32Default, record.lstChannel);
}

inline auto fields(const tag_CFG_SRT_INSTANCE_T& record) {
  return std::make_tuple(record.s32Id, record.s32Mode, record.strHostname, record.s32Port,
                         record.s32AesMode, record.strPassword, record.s32Latency,
                         record.lstStream);
}

template <typename Record>
auto operator==(const Record& left, const Record& right) -> decltype(fields(left), true) {
  return fields(left) == fields(right);
}

template <typename Record>
auto operator<<(std::ostream& out, const Record& record) -> decltype(fields(record), out) {
  return out << testing::PrintToString(fields(record));
}

namespace camcfg::tests {

using SourceList = std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>;
using CacheList = std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>;
using WebsocketList = std::list<tag_CFG_WEBSOCKET_SESSION_T>;
using RtspList = std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>>;
using RtmpList = std::list<tag_CFG_RTMP_SESSION_T>;
using NdiList = std::list<tag_CFG_NDI_SESSION_T>;
using SrtList = std::list<tag_CFG_SRT_INSTANCE_T>;

/// What to compare a list by: its records, or what they hold where they are shared.
template <typename Record>
std::list<Record> contentsOf(const std::list<Record>& records) {
  return records;
}

inline std::list<tag_CFG_RTSP_SESSION_T> contentsOf(const RtspList& sessions) {
  std::list<tag_CFG_RTSP_SESSION_T> contents;
  for (const auto& session : sessions) contents.push_back(*session);
  return contents;
}

inline RtspList shared(const std::list<tag_CFG_RTSP_SESSION_T>& sessions) {
  RtspList list;
  for (const auto& session : sessions)
    list.push_back(std::make_shared<tag_CFG_RTSP_SESSION_T>(session));
  return list;
}

}  // namespace camcfg::tests

#endif
