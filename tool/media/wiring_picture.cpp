#include <algorithm>
#include <set>

#include "base/concat.h"
#include "base/plain_text.h"
#include "media/wiring.h"

namespace camcfg::tool::media {
namespace {

constexpr char kDisabled[] = " color=\"#b0b0b0\" fontcolor=\"#909090\" fillcolor=\"#f2f2f2\"";
constexpr char kMissing[] =
    " color=\"#c00000\" fontcolor=\"#c00000\" fillcolor=\"#fff0f0\" style=\"filled,dashed\"";
constexpr char kRed[] = " color=\"#c00000\" fontcolor=\"#c00000\"";
constexpr char kGrey[] = " color=\"#b0b0b0\"";

constexpr char kHead[] =
    "digraph wiring {\n"
    "  rankdir=LR; ranksep=2.2; nodesep=0.12; newrank=true; outputorder=edgesfirst;\n"
    "  fontname=\"Helvetica\"; fontsize=13; labelloc=b;\n"
    "  label=\"solid: carried or sent    dashed: may be carried    grey: disabled    "
    "red: does not fit\";\n"
    "  node [shape=box style=filled fillcolor=\"#ffffff\" color=\"#606060\" "
    "fontname=\"Helvetica\" fontsize=11 height=0.3 margin=\"0.12,0.04\"];\n"
    "  edge [tailport=e headport=w arrowsize=0.6 penwidth=1.2 fontname=\"Helvetica\" "
    "fontsize=10];\n";

// Edges of one cache have one colour, so that the eye can follow them.
constexpr const char* kColours[] = {"#1f6fb4", "#2c8a4b", "#7a4fa3", "#8a6d1f",
                                    "#1b8a8f", "#a3497c", "#56606e", "#5a7d1e",
                                    "#b0661a", "#3f4fa8", "#6b4a3a", "#0f7f63"};

std::string colourOf(std::size_t cache) {
  return concat(" color=\"", kColours[cache % std::size(kColours)], "\"");
}

std::string inQuotes(const std::string& text) {
  return concat("\"", text, "\"");
}

constexpr char kSource[] = "source";
constexpr char kCache[] = "cache";
constexpr char kSession[] = "session";

// Names of nodes; records count, since their ids may be equal.
std::string nodeOf(const char* kind, std::size_t index) {
  return kind + std::to_string(index);
}

std::string missingNode(const char* kind, int id) {
  return inQuotes(concat("missing ", kind, " ", id));
}

class Picture {
 public:
  explicit Picture(const Wiring& wiring) : wiring_(wiring) {}

  std::string draw() {
    text_ = kHead;
    drawSources();
    drawCaches();
    drawSessions();
    align(kSource, wiring_.sources.size());
    align(kCache, wiring_.caches.size());
    align(kSession, wiring_.sessions.size());
    for (std::size_t i = 0; i < wiring_.caches.size(); ++i) connectSources(i);
    for (std::size_t i = 0; i < wiring_.sessions.size(); ++i) connectCaches(i);
    return text_ + "}\n";
  }

 private:
  void open(const std::string& cluster, const std::string& title) {
    text_ +=
        concat("  subgraph ", inQuotes("cluster " + cluster), " {\n    label=", inQuotes(title),
               "; labelloc=t; color=\"#d0d0d0\"; style=rounded;\n");
  }
  void close() { text_ += "  }\n"; }
  void node(const std::string& name, const std::string& label, const std::string& look) {
    text_ += concat("    ", name, " [label=", inQuotes(label), look, "];\n");
  }
  void edge(const std::string& from, const std::string& to, const std::string& look) {
    text_ += concat("  ", from, " -> ", to, look.empty() ? "" : concat(" [", look.substr(1), "]"),
                    ";\n");
  }

  // One below the other, whether anything is connected to them or not.
  void align(const char* kind, std::size_t count) {
    text_ += "  {rank=same;";
    for (std::size_t i = 0; i < count; ++i) text_ += concat(" ", nodeOf(kind, i), ";");
    text_ += "}\n";
  }

  void drawMissing(const char* kind, const std::set<int>& ids) {
    for (const int id : ids) node(missingNode(kind, id), concat("no ", kind, " ", id), kMissing);
  }

  void drawSources() {
    open("sources", "Stream sources");
    for (std::size_t i = 0; i < wiring_.sources.size(); ++i) {
      const Json& source = wiring_.sources[i];
      node(nodeOf(kSource, i),
           concat(source.at("id").dump(), "  ", dotText(source.at("name").text())),
           isEnabled(i) ? "" : kDisabled);
    }
    std::set<int> missing;
    for (const CacheEntry& cache : wiring_.caches) {
      std::vector<int> ids = cache.allowedIds();
      ids.push_back(cache.record->s32EnabledSrc);
      for (const int id : ids)
        if (!wiring_.source(id)) missing.insert(id);
    }
    drawMissing(kSource, missing);
    close();
  }

  void drawCaches() {
    open("caches", "Stream caches");
    const Json caches = jsonOf(wiring_.caches);
    for (std::size_t i = 0; i < caches.size(); ++i)
      node(nodeOf(kCache, i),
           concat(wiring_.caches[i].id(), "  ", dotText(wiring_.caches[i].record->strName), "\\n",
                  caches[i]["size"].get<std::string>()),
           colourOf(i) + " penwidth=1.6");
    std::set<int> missing;
    for (const WiredSession& session : wiring_.sessions)
      for (const WiredChannel& channel : session.channels)
        if (!wiring_.cache(channel.cacheId)) missing.insert(channel.cacheId);
    drawMissing(kCache, missing);
    close();
  }

  void drawSessions() {
    std::string service;
    for (std::size_t i = 0; i < wiring_.sessions.size(); ++i) {
      const WiredSession& session = wiring_.sessions[i];
      if (session.service != service) {
        if (!service.empty()) close();
        open(session.service, session.service);
        service = session.service;
      }
      node(nodeOf(kSession, i), labelOf(session), session.enabled ? "" : kDisabled);
    }
    if (!service.empty()) close();
  }

  static std::string labelOf(const WiredSession& session) {
    std::string channels;
    for (const WiredChannel& channel : session.channels) {
      const std::string role = channel.role.empty() ? "" : dotText(channel.role) + " ";
      channels += concat(channels.empty() ? "" : ", ", role, channel.cacheId);
    }
    return dotText(session.name) + (channels.empty() ? "" : concat("  (", channels, ")"));
  }

  bool isEnabled(std::size_t source) const {
    return wiring_.sources[source].at("enabled").get<bool>();
  }

  std::string colourFrom(std::size_t source, std::size_t cache) const {
    return isEnabled(source) ? colourOf(cache) : kGrey;
  }

  void connectSources(std::size_t index) {
    const CacheEntry& cache = wiring_.caches[index];
    const auto connect = [&](int id, const std::string& style, const char* colour = nullptr) {
      const std::optional<std::size_t> source = wiring_.source(id);
      const std::string look = !source             ? kRed
                               : colour != nullptr ? colour
                                                   : colourFrom(*source, index);
      edge(source ? nodeOf(kSource, *source) : missingNode(kSource, id), nodeOf(kCache, index),
           look + style);
    };
    const int carried = cache.record->s32EnabledSrc;
    connect(carried, " style=bold");
    for (const int id : cache.allowedIds()) {
      if (id == carried) continue;
      const auto isEnabledSource = [=](const AllowedSource& source) {
        return source.id == id && source.isEnabled;
      };
      if (std::any_of(cache.allowed.begin(), cache.allowed.end(), isEnabledSource))
        connect(id, " style=dotted label=\"Enable\"", kRed);
      else
        connect(id, " style=dashed");
    }
  }

  void connectCaches(std::size_t index) {
    const WiredSession& session = wiring_.sessions[index];
    for (const WiredChannel& channel : session.channels)
      if (const auto cache = wiring_.cache(channel.cacheId))
        edge(nodeOf(kCache, *cache), nodeOf(kSession, index),
             session.enabled ? colourOf(*cache) : kGrey);
      else
        edge(missingNode(kCache, channel.cacheId), nodeOf(kSession, index), kRed);
  }

  const Wiring& wiring_;
  std::string text_;
};

}  // namespace

std::string dotText(const std::string& text) {
  // Within quotes, "\" and "&" begin what stands for other characters.
  std::string shown;
  for (const char c : printable(asUtf8(text))) {
    if (c == '&')
      shown += "&amp;";
    else if (c == '"' || c == '\\')
      shown += std::string("\\") + c;
    else
      shown += c;
  }
  return shown;
}

std::string pictureOf(const Wiring& wiring) {
  return Picture(wiring).draw();
}

}  // namespace camcfg::tool::media
