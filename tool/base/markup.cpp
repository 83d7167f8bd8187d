#include "base/markup.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

using Kind = Markup::Kind;

struct Delimited {
  std::string_view start;
  std::string_view end;
  Kind kind;
};

// The first that fits counts.
constexpr Delimited kDelimited[] = {{"<?", "?>", Kind::Declaration},
                                    {"<!--", "-->", Kind::Comment},
                                    {"<![CDATA[", "]]>", Kind::CData},
                                    {"<!", ">", Kind::Other}};

bool isNameStart(char c) {
  return static_cast<unsigned char>(c) >= 0x80 || (c >= 'a' && c <= 'z') ||
         (c >= 'A' && c <= 'Z') || c == ':' || c == '_';
}

class MarkupReader {
 public:
  explicit MarkupReader(std::string_view bytes) : bytes_(bytes.substr(0, bytes.find('\0'))) {}

  std::vector<Markup> read() {
    while (at_ < bytes_.size())
      if (bytes_[at_] == '<' ? !readMarked() : !readText()) break;
    return std::move(found_);
  }

 private:
  std::string_view from(std::size_t start) const { return bytes_.substr(start, at_ - start); }

  bool readText() {
    const std::size_t start = at_;
    at_ = std::min(bytes_.find('<', at_), bytes_.size());
    found_.push_back({Kind::Text, from(start), {}});
    return true;
  }

  bool readMarked() {
    for (const Delimited& form : kDelimited) {
      if (bytes_.compare(at_, form.start.size(), form.start) != 0) continue;
      const std::size_t start = at_;
      const std::size_t end = bytes_.find(form.end, at_ + form.start.size());
      if (end == kNowhere) return false;
      at_ = end + form.end.size();
      found_.push_back({form.kind, from(start), {}});
      return true;
    }
    return readTag();
  }

  bool readTag() {
    const std::size_t start = at_++;
    Markup tag;
    skipSpace();
    tag.kind = take('/') ? Kind::End : Kind::Start;
    tag.name = takeName();
    if (tag.name.empty()) return false;
    while (true) {
      skipSpace();
      if (take('>')) break;
      if (take('/')) {
        if (!take('>')) return false;
        tag.kind = Kind::Empty;
        break;
      }
      if (!readAttribute(tag)) return false;
    }
    tag.all = from(start);
    found_.push_back(std::move(tag));
    return true;
  }

  bool readAttribute(Markup& tag) {
    const std::size_t start = at_;
    MarkupAttribute attribute;
    attribute.name = takeName();
    if (attribute.name.empty()) return false;
    skipSpace();
    if (!take('=')) return false;
    skipSpace();
    const char quote = at_ < bytes_.size() ? bytes_[at_] : '\0';
    if (quote != '"' && quote != '\'') return false;
    const std::size_t value = ++at_;
    const std::size_t end = bytes_.find(quote, at_);
    if (end == kNowhere) return false;
    at_ = end;
    attribute.value = from(value);
    ++at_;
    attribute.all = from(start);
    tag.attributes.push_back(attribute);
    return true;
  }

  bool take(char c) {
    if (at_ == bytes_.size() || bytes_[at_] != c) return false;
    ++at_;
    return true;
  }

  void skipSpace() {
    while (at_ < bytes_.size() && isMarkupSpace(bytes_[at_])) ++at_;
  }

  std::string_view takeName() {
    const std::size_t start = at_;
    if (at_ < bytes_.size() && isNameStart(bytes_[at_]))
      while (at_ < bytes_.size() && isInName(bytes_[at_])) ++at_;
    return from(start);
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::vector<Markup> found_;
};

}  // namespace

bool isInName(char c) {
  return isNameStart(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

std::vector<Markup> markupIn(std::string_view bytes) {
  return MarkupReader(bytes).read();
}

std::size_t lengthToMark(std::string_view bytes) {
  const auto* const first =
      std::find_if(bytes.begin(), bytes.end(), [](char c) { return !isMarkupSpace(c); });
  const auto start = static_cast<std::size_t>(first - bytes.begin());
  const bool isThere = bytes.compare(start, kMarkBytes.size(), kMarkBytes) == 0;
  return isThere ? start + kMarkBytes.size() : 0;
}

}  // namespace camcfg::tool
