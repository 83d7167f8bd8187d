#include <algorithm>
#include <map>
#include <numeric>

#include "base/concat.h"
#include "base/html.h"
#include "media/wiring.h"

namespace camcfg::tool::media {
namespace {

// All lengths are in the units of the drawing, which are pixels where it is shown in its own size.
constexpr int kPitch = 30;   // from one node to the next
constexpr int kHeight = 24;  // of a node
constexpr int kTop = 64;     // of the first node
constexpr int kHeading = 26;
constexpr int kWidth = 1000;
constexpr std::size_t kFlowColours = 12;
constexpr std::size_t kLongest = 300;  // characters of a title

struct Column {
  const char* title;
  int left;
  int width;
  std::size_t characters;  // of a label
};
constexpr Column kSources{"Stream sources", 10, 190, 27};
constexpr Column kCaches{"Stream caches", 340, 210, 30};
constexpr Column kSessions{"What the services send", 680, 310, 52};

struct Box {
  std::string name;   // as remarks have it
  std::string label;  // what is written in it
  std::string title;  // what is said of it
  const char* look;   // a class; empty: none
  double wanted = 0;  // where it would be without the others
  double weight = 0;
  int y = 0;
};

enum class Flow { Carried, Allowed, Sent };

struct Edge {
  std::size_t from;
  std::size_t to;
  Flow flow;
  bool isOff;
};

// The places nearest to those that are wanted, in order and a pitch apart.
void spread(std::vector<Box>& nodes) {
  struct Block {
    double sum;
    double weight;
    std::size_t count;
  };
  std::vector<Block> blocks;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const double weight = std::max(nodes[i].weight, 0.001);
    const double wanted = nodes[i].weight > 0 ? nodes[i].wanted : i == 0 ? 0 : nodes[i - 1].wanted;
    nodes[i].wanted = wanted;
    blocks.push_back({(wanted - static_cast<double>(i) * kPitch) * weight, weight, 1});
    while (blocks.size() > 1 &&
           blocks.back().sum / blocks.back().weight <
               blocks[blocks.size() - 2].sum / blocks[blocks.size() - 2].weight) {
      const Block last = blocks.back();
      blocks.pop_back();
      blocks.back().sum += last.sum;
      blocks.back().weight += last.weight;
      blocks.back().count += last.count;
    }
  }
  std::size_t at = 0;
  for (const Block& block : blocks)
    for (std::size_t i = 0; i < block.count; ++i, ++at)
      nodes[at].y = kTop + std::max(0, static_cast<int>(block.sum / block.weight)) +
                    static_cast<int>(at) * kPitch;
}

std::string textOfId(const Json& id) {
  return id.is_string() ? id.text() : id.dump();
}

// Names are in the order of the file.
void sortById(std::vector<Json>& entries) {
  std::stable_sort(entries.begin(), entries.end(), [](const Json& a, const Json& b) {
    return !a.at("id").is_string() && a.at("id") < b.at("id");
  });
}

std::vector<Json> byId(const Json& entries) {
  std::vector<Json> sorted(entries.begin(), entries.end());
  sortById(sorted);
  return sorted;
}

class Drawing {
 public:
  Drawing(const Json& wiring, const Json& remarks) : remarks_(remarks) {
    addSources(wiring.at("sources"));
    addCaches(wiring.at("caches"));
    addSessions(wiring.at("sessions"));
    // Those that are referred to and missing come last, so the others can be connected first.
    connectCaches();
    connectSources();
    placeSessions();
    pull(sent_, caches_, sessions_);
    spread(caches_);
    pull(carried_, sources_, caches_);
    spread(sources_);
  }

  std::string svg(bool isFile) const {
    const int height = this->height();
    std::string text = "<svg";
    if (isFile)
      write(text, " xmlns=\"http://www.w3.org/2000/svg\" width=\"", kWidth, "\" height=\"", height,
            "\"");
    write(text,
          " class=\"wiring\" role=\"img\" aria-labelledby=\"wiring-title wiring-desc\" viewBox=\"0 "
          "0 ",
          kWidth, " ", height,
          "\">\n<title id=\"wiring-title\">Sources, caches and services</title>\n",
          "<desc id=\"wiring-desc\">", description(), "</desc>\n");
    if (isFile) write(text, "<style>", kDrawingStyle, "</style>\n");
    write(text, "<rect class=\"ground\" width=\"", kWidth, "\" height=\"", height, "\"/>\n");
    for (const Column& column : {kSources, kCaches, kSessions})
      addLabel(column.left, 24, column.title, "head", text);
    for (const auto& [y, service] : services_)
      addLabel(kSessions.left, y, service, "service", text);
    addEdges(carried_, kSources, sources_, kCaches, caches_, text);
    addEdges(sent_, kCaches, caches_, kSessions, sessions_, text);
    addNodes(kSources, sources_, text);
    addNodes(kCaches, caches_, text);
    addNodes(kSessions, sessions_, text);
    addLabel(kSources.left, height - 14,
             "thick: carried   thin: sent   dashed: may be carried   grey: disabled   "
             "red and ? : missing   ! : see the findings",
             "key", text);
    return text + "</svg>\n";
  }

 private:
  void addSources(const Json& sources) {
    for (const Json& source : byId(sources))
      sources_.push_back({"source " + source.at("id").dump(),
                          concat(source.at("id").dump(), "  ", source.at("name").text()),
                          concat("source ", source.at("id").dump(), ", ", source.at("name").text()),
                          source.at("enabled") == true ? "" : "off"});
  }

  void addCaches(const Json& caches) {
    entries_ = byId(caches);
    for (const Json& cache : entries_) {
      const std::string id = cache.at("id").dump();
      const std::string& name = cache.at("name").text();
      const std::string& size = cache.at("size").text();
      Box node{"cache " + id, "", "", ""};
      write(node.label, id, "  ", cutTo(name, kCaches.characters - 12), "  ", size);
      write(node.title, node.name, ", ", name, ", ", size);
      caches_.push_back(std::move(node));
    }
  }

  // Those of one service side by side, in the order in which the services come.
  void addSessions(const Json& sessions) {
    std::vector<std::pair<std::string, std::vector<Json>>> services;
    for (const Json& session : sessions) {
      const std::string& service = session.at("service").text();
      if (services.empty() || services.back().first != service) services.push_back({service, {}});
      services.back().second.push_back(session);
    }
    for (auto& [service, entries] : services) {
      sortById(entries);
      for (const Json& session : entries) addSession(service, session);
    }
  }

  void addSession(const std::string& service, const Json& session) {
    const std::string& name = session.at("name").text();
    wired_.push_back(session);
    sessions_.push_back(
        {concat(service, " ", textOfId(session.at("id"))), cutTo(name, 24) + rolesOf(session),
         concat(service, " ", name, rolesOf(session)), session.at("enabled") == true ? "" : "off"});
  }

  static std::string rolesOf(const Json& session) {
    std::string roles;
    for (const Json& channel : session.at("channels")) {
      const std::string& role = channel.at("role").text();
      roles += concat(roles.empty() ? "  (" : ", ", role, role.empty() ? "" : " ",
                      channel.at("cache").dump());
    }
    return roles.empty() ? "" : roles + ")";
  }

  // The node of an id; one that stands for what is missing if there is none.
  static std::size_t require(std::vector<Box>& nodes, const char* kind, const Json& id) {
    const std::string name = concat(kind, " ", id.dump());
    for (std::size_t i = 0; i < nodes.size(); ++i)
      if (nodes[i].name == name) return i;
    nodes.push_back({name, "?  no " + name, "there is no " + name, "missing"});
    return nodes.size() - 1;
  }

  void connectCaches() {
    for (std::size_t i = 0; i < wired_.size(); ++i)
      for (const Json& channel : wired_[i].at("channels"))
        sent_.push_back({require(caches_, "cache", channel.at("cache")), i, Flow::Sent,
                         wired_[i].at("enabled") != true});
  }

  void connectSources() {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      const Json& carried = entries_[i].at("carries");
      if (!carried.is_null()) connectSource(carried, i, Flow::Carried);
      for (const Json& id : entries_[i].at("allowed"))
        if (id != carried) connectSource(id, i, Flow::Allowed);
    }
  }

  void connectSource(const Json& id, std::size_t cache, Flow flow) {
    const std::size_t source = require(sources_, "source", id);
    carried_.push_back({source, cache, flow, *sources_[source].look != '\0'});
  }

  void placeSessions() {
    int y = kTop - kHeading;
    for (std::size_t i = 0; i < sessions_.size(); ++i) {
      const std::string& service = wired_[i].at("service").text();
      if (services_.empty() || services_.back().second != service) {
        services_.emplace_back(y + kHeading - 8, service);
        y += kHeading;
      }
      sessions_[i].y = y;
      y += kPitch;
    }
  }

  // Nodes want to be where those are that they are connected to.
  static void pull(const std::vector<Edge>& edges, std::vector<Box>& from,
                   const std::vector<Box>& to) {
    for (const Edge& edge : edges) {
      const double weight = edge.flow == Flow::Allowed ? 0.2 : 1;
      Box& node = from[edge.from];
      node.wanted += (to[edge.to].y - kTop) * weight;
      node.weight += weight;
    }
    for (Box& node : from)
      if (node.weight > 0) node.wanted /= node.weight;
  }

  int height() const {
    int lowest = kTop;
    for (const std::vector<Box>* nodes : {&sources_, &caches_, &sessions_})
      for (const Box& node : *nodes) lowest = std::max(lowest, node.y);
    return lowest + kHeight + 50;
  }

  std::string description() const {
    return htmlText(concat(sources_.size(), " sources, ", caches_.size(), " caches, ",
                           sessions_.size(), " sessions of ", services_.size(), " services"));
  }

  static void addLabel(int x, int y, const std::string& label, const char* look,
                       std::string& text) {
    write(text, "<text class=\"", look, "\" x=\"", x, "\" y=\"", y, "\">", htmlText(label),
          "</text>\n");
  }

  // Entries of one name share their remarks, so there may be many at many of them.
  static void addRemarks(const Json& remarks, std::string& text) {
    constexpr std::size_t kMost = 10;
    for (std::size_t i = 0; i < std::min(remarks.size(), kMost); ++i)
      write(text, "&#10;", htmlText(cutTo(remarks.at(i).text(), kLongest)));
    if (remarks.size() > kMost)
      write(text, "&#10;and ", std::to_string(remarks.size() - kMost), " more");
  }

  void addNodes(const Column& column, const std::vector<Box>& nodes, std::string& text) const {
    for (const Box& node : nodes) {
      const auto remarks = remarks_.find(node.name);
      const bool isMarked = remarks != remarks_.end();
      write(text, "<g class=\"node", *node.look == '\0' ? "" : " ", node.look,
            isMarked ? " marked" : "", "\"><title>", htmlText(cutTo(node.title, kLongest)));
      if (isMarked) addRemarks(*remarks, text);
      const std::string label = (isMarked ? "! " : "") + cutTo(node.label, column.characters);
      write(text, "</title><rect x=\"", column.left, "\" y=\"", node.y, "\" width=\"", column.width,
            "\" height=\"", kHeight, "\" rx=\"4\"/><text x=\"", column.left + 8, "\" y=\"",
            node.y + 16, "\"", within(column.width - 16, label, isMarked ? 13 : 12), ">",
            htmlText(label), "</text></g>\n");
    }
  }

  // Edges of one cache have one colour, so that the eye can follow them.
  static std::string lookOf(const Edge& edge, const Box& from) {
    constexpr const char* kFlows[] = {" carried", " may", ""};
    std::string look = "off";
    if (std::string_view(from.look) == "missing")
      look = "missing";
    else if (!edge.isOff)
      look = "c" + std::to_string((edge.flow == Flow::Sent ? edge.from : edge.to) % kFlowColours);
    return look + kFlows[static_cast<std::size_t>(edge.flow)];
  }

  static void addEdges(const std::vector<Edge>& edges, const Column& left,
                       const std::vector<Box>& from, const Column& right,
                       const std::vector<Box>& to, std::string& text) {
    std::map<std::string, std::string> paths;
    const int begin = left.left + left.width;
    const int middle = (begin + right.left) / 2;
    for (const Edge& edge : edges) {
      const int y1 = from[edge.from].y + kHeight / 2;
      const int y2 = to[edge.to].y + kHeight / 2;
      write(paths[lookOf(edge, from[edge.from])], "M", begin, " ", y1, "C", middle, " ", y1, " ",
            middle, " ", y2, " ", right.left, " ", y2);
    }
    for (const auto& [look, path] : paths)
      write(text, "<path class=\"edge ", look, "\" d=\"", path, "\"/>\n");
  }

  const Json& remarks_;
  std::vector<Json> entries_;  // of the caches that are there
  std::vector<Json> wired_;    // the sessions
  std::vector<Box> sources_;
  std::vector<Box> caches_;
  std::vector<Box> sessions_;
  std::vector<std::pair<int, std::string>> services_;  // headings, and where they are
  std::vector<Edge> carried_;                          // from sources to caches
  std::vector<Edge> sent_;                             // from caches to sessions
};

}  // namespace

// On white in any surroundings, so that colours keep their contrast.
const char* const kDrawingStyle =
    ".wiring{font:12px Helvetica,Arial,sans-serif;max-width:100%;height:auto}"
    ".wiring .ground{fill:#fff}"
    ".wiring text{fill:#222;unicode-bidi:isolate;white-space:pre}"
    ".wiring .head{font-size:14px;font-weight:bold}.wiring .service{font-weight:bold;fill:#444}"
    ".wiring .key{fill:#444}"
    ".node rect{fill:#fff;stroke:#555}"
    ".node.off rect{fill:#f2f2f2;stroke:#999}.node.off text{fill:#666}"
    ".node.missing rect{fill:#fff0f0;stroke:#b00000;stroke-dasharray:4 3}"
    ".node.missing text{fill:#b00000}"
    ".node.marked rect{stroke:#b00000;stroke-width:2.5}.node.marked text{font-weight:bold}"
    ".edge{fill:none;stroke-width:1.2}.edge.carried{stroke-width:2.4}"
    ".edge.may{stroke-dasharray:5 4}.edge.off{stroke:#999}.edge.missing{stroke:#b00000}"
    ".c0{stroke:#1f6fb4}.c1{stroke:#2c8a4b}.c2{stroke:#7a4fa3}.c3{stroke:#8a6d1f}"
    ".c4{stroke:#1b8a8f}.c5{stroke:#a3497c}.c6{stroke:#56606e}.c7{stroke:#5a7d1e}"
    ".c8{stroke:#b0661a}.c9{stroke:#3f4fa8}.c10{stroke:#6b4a3a}.c11{stroke:#0f7f63}";

std::string drawingOf(const Json& wiring, const Json& remarks, bool isFile) {
  return Drawing(wiring, remarks).svg(isFile);
}

}  // namespace camcfg::tool::media
