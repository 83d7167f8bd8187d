#include "base/whole_elements.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/markup.h"

namespace camcfg::tool {
namespace {

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCommentEnd = "-->";
constexpr std::string_view kTextStart = "<![CDATA[";
constexpr std::string_view kTextEnd = "]]>";

bool isSpace(char c) {
  return kSpace.find(c) != kNowhere;
}

/// Reads a tag from its "<" on.
class TagReader {
 public:
  TagReader(std::string_view bytes, std::size_t at) : bytes_(bytes), at_(at + 1) {}

  /// Whether it is whole; then `at()` is after its ">", else where it stops being a tag.
  bool read() {
    isEnd_ = take('/');
    const std::size_t start = at_;
    skipName();
    name_ = bytes_.substr(start, at_ - start);
    if (name_.empty()) return false;
    while (true) {
      const bool isApart = skipSpace();
      if (take('>')) return true;
      if (!isEnd_ && take('/')) return isEmpty_ = take('>');
      if (isEnd_ || !isApart || !skipAttribute()) return false;
    }
  }

  std::size_t at() const { return at_; }
  std::string_view name() const { return name_; }
  bool isEnd() const { return isEnd_; }
  bool isEmpty() const { return isEmpty_; }  ///< of the form "<NAME/>"

 private:
  bool take(char c) {
    if (at_ == bytes_.size() || bytes_[at_] != c) return false;
    ++at_;
    return true;
  }

  void skipName() {
    while (at_ < bytes_.size() && isInName(bytes_[at_])) ++at_;
  }

  bool skipSpace() {
    const std::size_t start = at_;
    while (at_ < bytes_.size() && isSpace(bytes_[at_])) ++at_;
    return at_ != start;
  }

  bool skipAttribute() {
    const std::size_t start = at_;
    skipName();
    if (at_ == start) return false;
    skipSpace();
    if (!take('=')) return false;
    skipSpace();
    const char quote = at_ == bytes_.size() ? '\0' : bytes_[at_];
    if (quote != '"' && quote != '\'') return false;
    const char stops[] = {quote, '<', '\0'};
    at_ = std::min(bytes_.find_first_of(std::string_view(stops, sizeof stops), at_ + 1),
                   bytes_.size());
    return take(quote);
  }

  std::string_view bytes_;
  std::size_t at_;
  std::string_view name_;
  bool isEnd_ = false;
  bool isEmpty_ = false;
};

/// Where a text comes next. Asked from the beginning to the end, it goes through the bytes once.
class Next {
 public:
  Next(std::string_view bytes, std::string_view text) : bytes_(bytes), text_(text) {}

  std::size_t from(std::size_t start) {
    if (!at_ || *at_ < start) at_ = bytes_.find(text_, start);
    return *at_;
  }
  /// Where it ends; the end of the bytes if it does not come.
  std::size_t endFrom(std::size_t start) {
    return from(start) == kNowhere ? bytes_.size() : *at_ + text_.size();
  }

 private:
  std::string_view bytes_;
  std::string_view text_;
  std::optional<std::size_t> at_;
};

class Scanner {
 public:
  explicit Scanner(std::string_view bytes) : bytes_(bytes) {}

  std::vector<FoundElement> scan() {
    while (at_ < bytes_.size()) {
      const std::size_t next = std::min(bytes_.find('<', at_), bytes_.size());
      passText(bytes_.substr(at_, next - at_));
      moveTo(next);
      if (at_ == bytes_.size()) break;
      if (startsHere("<!") || startsHere("<?"))
        passOther();
      else
        passTag();
    }
    return std::move(found_);
  }

 private:
  bool startsHere(std::string_view text) const { return bytes_.substr(at_, text.size()) == text; }

  void moveTo(std::size_t at) {
    line_ += static_cast<int>(std::count(bytes_.begin() + static_cast<std::ptrdiff_t>(at_),
                                         bytes_.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    at_ = at;
  }

  void passText(std::string_view text) {
    if (text.find_first_not_of(kSpace) == kNowhere) return;
    if (text.find(kCommentEnd) != kNowhere || text.find(kTextEnd) != kNowhere) dropSuspects();
    damage();
  }

  // From here on, what elements are in is not known.
  void damage() {
    open_.clear();
    loose_.clear();
    isAtTop_ = false;
    if (!areSuspect_) suspects_ = found_.size();
    areSuspect_ = true;
  }

  // All since the damage, or the last comment, may have been in the comment that ends here.
  void dropSuspects() {
    for (std::size_t i = suspects_; i < found_.size(); ++i) found_[i] = FoundElement();
    clearSuspects();
  }

  void clearSuspects() {
    suspects_ = found_.size();
    areSuspect_ = false;
  }

  // Where what begins with "<!" or "<?" has its end; null if nothing begins like that.
  Next* endingHere() {
    if (startsHere(kCommentStart)) return &commentEnd_;
    if (startsHere(kTextStart)) return &textEnd_;
    if (startsHere("<?")) return &declarationEnd_;
    return startsHere("<!DOCTYPE") ? &tagEnd_ : nullptr;
  }

  // A comment, a text, or a declaration. One in which bytes are damaged or another comment begins may
  // have ended anywhere.
  void passOther() {
    Next* const found = endingHere();
    const std::size_t start = at_ + (startsHere(kCommentStart) ? kCommentStart.size() : 2);
    if (found == nullptr) {
      damage();
      return moveTo(start);
    }
    Next& ending = *found;
    const bool isComment = found == &commentEnd_;
    const std::size_t broken =
        std::min(nul_.from(start), isComment ? commentStart_.from(start) : kNowhere);
    if (broken < ending.from(start)) {
      damage();
      return moveTo(broken);
    }
    if (isComment) clearSuspects();
    moveTo(ending.endFrom(start));
  }

  void passTag() {
    TagReader tag(bytes_, at_);
    if (!tag.read()) {
      damage();
      return moveTo(tag.at());
    }
    if (tag.isEnd())
      close(tag.name(), tag.at());
    else
      open(tag.name(), tag.at(), tag.isEmpty());
    moveTo(tag.at());
  }

  void add(FoundElement element) {
    const int index = static_cast<int>(found_.size());
    element.parent = !open_.empty() ? open_.back()
                     : isAtTop_     ? FoundElement::AtTop
                                    : FoundElement::Unknown;
    if (element.parent == FoundElement::Unknown) loose_.push_back(index);
    element.line = line_;
    found_.push_back(element);
  }

  void open(std::string_view name, std::size_t end, bool isEmpty) {
    const std::string_view tag = bytes_.substr(at_, end - at_);
    add({name, tag, isEmpty ? tag : std::string_view()});
    if (!isEmpty) open_.push_back(static_cast<int>(found_.size()) - 1);
  }

  void close(std::string_view name, std::size_t end) {
    if (!open_.empty() && at(open_.back()).name == name) {
      FoundElement& element = at(open_.back());
      const auto start = static_cast<std::size_t>(element.tag.data() - bytes_.data());
      element.all = bytes_.substr(start, end - start);
      return open_.pop_back();
    }
    if (!open_.empty()) disown(open_.back());
    if (!open_.empty() || isAtTop_) damage();
    // Its beginning is lost. All since the damage that is in no other element is in this one.
    std::vector<int> inner;
    inner.swap(loose_);
    add({name, {}, {}});
    for (const int index : inner) at(index).parent = loose_.back();
  }

  FoundElement& at(int index) { return found_[static_cast<std::size_t>(index)]; }

  // Either the start tag or the end tag of an element has a wrong name.
  void disown(int index) {
    for (auto i = static_cast<std::size_t>(index); i < found_.size(); ++i)
      if (found_[i].parent == index) found_[i].parent = FoundElement::Unknown;
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  int line_ = 1;
  std::vector<FoundElement> found_;
  std::vector<int> open_;     // elements whose end is still to come
  std::vector<int> loose_;    // elements since the damage that are in no other one so far
  bool isAtTop_ = true;       // while nothing is damaged
  std::size_t suspects_ = 0;  // the first element that may be in a comment of which the end comes
  bool areSuspect_ = false;   // since a damage
  Next nul_{bytes_, std::string_view("\0", 1)};
  Next commentStart_{bytes_, kCommentStart};
  Next commentEnd_{bytes_, kCommentEnd};
  Next textEnd_{bytes_, kTextEnd};
  Next declarationEnd_{bytes_, "?>"};
  Next tagEnd_{bytes_, ">"};
};

}  // namespace

std::vector<FoundElement> elementsIn(std::string_view bytes) {
  return Scanner(bytes).scan();
}

}  // namespace camcfg::tool
