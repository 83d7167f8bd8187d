#ifndef CAMCFG_TOOL_MEDIA_WIRING_H
#define CAMCFG_TOOL_MEDIA_WIRING_H

#include <optional>
#include <string>
#include <vector>

#include "media/stream_cache.h"

namespace camcfg::tool::media {

/// A channel of a session: a stream cache, by its id, in a role.
struct WiredChannel {
  int cacheId;
  std::string role;  ///< "video"
};

/// What a live media service sends under one name.
struct WiredSession {
  std::string service;  ///< "RTSP"
  std::string name;
  Json id{};  ///< of the entry that it is in
  bool enabled = true;
  std::vector<WiredChannel> channels{};
};

/// The media wiring as configured: sources, the caches that may carry them, and the services that
/// send what the caches carry.
struct Wiring {
  Json sources;  ///< the entries, as documents have them
  std::vector<CacheEntry> caches;
  std::vector<WiredSession> sessions;  ///< those of one service side by side

  /// Where the first one of an id is; none if there is none.
  std::optional<std::size_t> source(int id) const;
  std::optional<std::size_t> cache(int id) const;
};

/// What the entries of a live media service send, as its table describes them. An entry is a session,
/// unless it has a list of records that are not channels: then each of those is one.
std::vector<WiredSession> sessionsOf(const settings::Table& table, const Json& entries);

/// @throws Refusal if any of the sections is unusable
Wiring readWiring();

/// The wiring as an answer shows it.
Json jsonOf(const Wiring& wiring);

/// The wiring as a graph in the DOT language: sources, caches and sessions from left to right. An
/// edge is solid where a source is carried or a cache sent, dashed where a source may be carried.
/// Whatever is disabled is grey; what does not exist, or is marked "Enable" without being carried, red.
std::string pictureOf(const Wiring& wiring);

/// What is to be said of a line of the media file.
struct Remark {
  int line;
  std::string text;
};

/// Remarks by what of a picture they are about: {"cache 7": ["..."]}. Those that are about nothing that is
/// drawn are left out.
Json remarksByNode(const tinyxml2::XMLDocument& document, const std::vector<Remark>& remarks);

/// The wiring as a drawing in SVG: sources, caches and sessions from left to right, in the order of their
/// ids, as high as they need to be. It loads nothing, and has the drawing's meaning as a text. Edges
/// are as in pictureOf.
/// @param wiring   as an answer shows it
/// @param remarks  as remarksByNode has them; what they are about is marked, and they are its title
/// @param isFile   a file by itself, with its style; otherwise a part of a page that has kDrawingStyle
std::string drawingOf(const Json& wiring, const Json& remarks, bool isFile);

extern const char* const kDrawingStyle;

/// A text within the quotes of the DOT language, shown as it is: control characters as "\n" or
/// "\x1b", bytes that are not UTF-8 as U+FFFD.
std::string dotText(const std::string& text);

}  // namespace camcfg::tool::media

#endif
