#include "media/wiring_picture.h"

#include <algorithm>
#include <set>

#include "base/printable.h"
#include "base/utf8.h"

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
  return " color=\"" + std::string(kColours[cache % std::size(kColours)]) + "\"";
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// Names of nodes; records count, since their ids may be equal.
std::string sourceNode(std::size_t index) {
  return "source" + std::to_string(index);
}
std::string cacheNode(std::size_t index) {
  return "cache" + std::to_string(index);
}
std::string sessionNode(std::size_t index) {
  return "session" + std::to_string(index);
}
std::string missingNode(const char* what, int id) {
  return quoted("missing " + std::string(what) + " " + std::to_string(id));
}

class Picture {
 public:
  explicit Picture(const Wiring& wiring) : wiring_(wiring) {}

  std::string draw() {
    text_ = kHead;
    drawSources();
    drawCaches();
    drawSessions();
    align(sourceNode, wiring_.sources.size());
    align(cacheNode, wiring_.caches.size());
    align(sessionNode, wiring_.sessions.size());
    for (std::size_t i = 0; i < wiring_.caches.size(); ++i) connectSources(i);
    for (std::size_t i = 0; i < wiring_.sessions.size(); ++i) connectCaches(i);
    return text_ + "}\n";
  }

 private:
  void open(const std::string& cluster, const std::string& title) {
    text_ += "  subgraph " + quoted("cluster " + cluster) + " {\n    label=" + quoted(title) +
             "; labelloc=t; color=\"#d0d0d0\"; style=rounded;\n";
  }
  void close() { text_ += "  }\n"; }
  void node(const std::string& name, const std::string& label, const std::string& look) {
    text_ += "    " + name + " [label=" + quoted(label) + look + "];\n";
  }
  void edge(const std::string& from, const std::string& to, const std::string& look) {
    text_ += "  " + from + " -> " + to + (look.empty() ? "" : " [" + look.substr(1) + "]") + ";\n";
  }

  // One below the other, whether anything is connected to them or not.
  void align(std::string (*name)(std::size_t), std::size_t count) {
    text_ += "  {rank=same;";
    for (std::size_t i = 0; i < count; ++i) text_ += " " + name(i) + ";";
    text_ += "}\n";
  }

  void drawSources() {
    open("sources", "Stream sources");
    for (std::size_t i = 0; i < wiring_.sources.size(); ++i) {
      const tag_CFG_STREAM_SOURCE_T& source = *wiring_.sources[i];
      node(sourceNode(i), std::to_string(source.s32Id) + "  " + dotText(source.strName),
           source.s32Enabled == 0 ? kDisabled : "");
    }
    std::set<int> missing;
    for (const CacheEntry& cache : wiring_.caches) {
      missing.insert(cache.record->s32EnabledSrc);
      for (const int id : cache.allowedIds()) missing.insert(id);
    }
    for (const int id : missing)
      if (wiring_.source(id) == nullptr)
        node(missingNode("source", id), "no source " + std::to_string(id), kMissing);
    close();
  }

  void drawCaches() {
    open("caches", "Stream caches");
    const Json caches = jsonOf(wiring_.caches);
    for (std::size_t i = 0; i < caches.size(); ++i)
      node(cacheNode(i),
           std::to_string(wiring_.caches[i].id()) + "  " +
               dotText(wiring_.caches[i].record->strName) + "\\n" +
               caches[i]["size"].get<std::string>(),
           colourOf(i) + " penwidth=1.6");
    std::set<int> missing;
    for (const WiredSession& session : wiring_.sessions)
      for (const WiredChannel& channel : session.channels)
        if (!wiring_.hasCache(channel.cacheId)) missing.insert(channel.cacheId);
    for (const int id : missing)
      node(missingNode("cache", id), "no cache " + std::to_string(id), kMissing);
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
      node(sessionNode(i), labelOf(session), session.enabled ? "" : kDisabled);
    }
    if (!service.empty()) close();
  }

  static std::string labelOf(const WiredSession& session) {
    std::string channels;
    for (const WiredChannel& channel : session.channels) {
      const std::string role = channel.role.empty() ? "" : dotText(channel.role) + " ";
      channels += (channels.empty() ? "" : ", ") + role + std::to_string(channel.cacheId);
    }
    return dotText(session.name) + (channels.empty() ? "" : "  (" + channels + ")");
  }

  void connectSource(int id, std::size_t cache, const std::string& style, bool fits = true) {
    const auto source = std::find_if(wiring_.sources.begin(), wiring_.sources.end(),
                                     [=](const StreamSource& one) { return one->s32Id == id; });
    if (source == wiring_.sources.end()) {
      edge(missingNode("source", id), cacheNode(cache), kRed + style);
      return;
    }
    const std::string colour = (*source)->s32Enabled == 0 ? kGrey : colourOf(cache);
    edge(sourceNode(static_cast<std::size_t>(source - wiring_.sources.begin())), cacheNode(cache),
         (fits ? colour : kRed) + style);
  }

  void connectSources(std::size_t index) {
    const CacheEntry& cache = wiring_.caches[index];
    const int carried = cache.record->s32EnabledSrc;
    const auto enabled =
        cache.marksDiffer() ? cache.marked(&AllowedSource::isEnabled) : std::nullopt;
    connectSource(carried, index, " style=bold");
    for (const int id : cache.allowedIds()) {
      if (id == enabled)
        connectSource(id, index, " style=dotted label=\"Enable\"", false);
      else if (id != carried)
        connectSource(id, index, " style=dashed");
    }
  }

  void connectCaches(std::size_t index) {
    const WiredSession& session = wiring_.sessions[index];
    for (const WiredChannel& channel : session.channels) {
      if (!wiring_.hasCache(channel.cacheId)) {
        edge(missingNode("cache", channel.cacheId), sessionNode(index), kRed);
        continue;
      }
      std::size_t cache = 0;
      while (wiring_.caches[cache].id() != channel.cacheId) ++cache;
      edge(cacheNode(cache), sessionNode(index), session.enabled ? colourOf(cache) : kGrey);
    }
  }

  const Wiring& wiring_;
  std::string text_;
};

}  // namespace

std::string dotText(const std::string& text) {
  // Within quotes, "\" and "&" begin what stands for other characters.
  std::string shown;
  for (const char c : printable(utf8::repaired(text))) {
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
