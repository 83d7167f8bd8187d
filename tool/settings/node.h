#ifndef CAMCFG_TOOL_SETTINGS_NODE_H
#define CAMCFG_TOOL_SETTINGS_NODE_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/json.h"
#include "base/plain_text.h"

namespace camcfg::tool::settings {

/// Whole numbers from `least` to `most`; all that an integer of the library can be if nothing is said.
struct Range {
  std::int64_t least = INT32_MIN;
  std::int64_t most = INT32_MAX;

  bool operator==(const Range& other) const { return least == other.least && most == other.most; }
  bool has(std::int64_t number) const { return number >= least && number <= most; }
  /// "1..65535"
  std::string text() const { return std::to_string(least) + ".." + std::to_string(most); }
};

/// Of a service that is reached over a network.
constexpr Range kPorts{1, 65535};

// What a refusal says of the permitted value that comes nearest to the one refused.

/// "70000 is outside 1..65535; the nearest permitted is 65535"
/// @param written  the number as it was written
/// @param number   the number, which is outside
/// @param step     distance of the values that are meant, from the least on; 1 if they all are
std::string outside(const std::string& written, std::int64_t number, const Range& limits,
                    std::int64_t step = 1);

/// "; the nearest permitted is 'Manual'": the only one of the texts that holds what was written, or
/// else the one that is spelt most like it; empty if none comes near.
std::string nearestOf(const std::string& written, const std::vector<std::string>& texts);

/// "; the nearest permitted is 'TEX'": the text cut to so many bytes, between two characters.
std::string nearestOfLength(const std::string& text, std::size_t most);

/// Something in a document that keeps it from being imported.
struct Fault {
  std::string place;   ///< "live.srt[1].port"; "document" for the whole
  std::string reason;  ///< "70000 is outside 1..65535"

  bool operator==(const Fault& other) const {
    return place == other.place && reason == other.reason;
  }
};

using Faults = std::vector<Fault>;

/// A value in a document that is checked while it is read. What does not fit is a fault, and reading
/// goes on with the value that a new record would have. What the device holds already is not for a
/// document to repair: it is read as it is.
class Node {
 public:
  /// @param held  what the device has in its place; null: nothing. Must outlive this object
  Node(const Json& value, std::string place, Faults& faults, const Json* held = nullptr,
       bool force = false)
      : value_(value), place_(std::move(place)), faults_(faults), held_(held), force_(force) {}

  const Json& value() const { return value_; }
  const std::string& place() const { return place_; }
  void refuse(TextRef reason) const { faults_.push_back({place_, std::string(reason.view())}); }

  /// Whether the device holds just this.
  bool isHeld() const { return held_ != nullptr && *held_ == value_; }
  /// Whether these members are all as the device holds them; one that is left out is null.
  bool holds(const std::vector<std::string>& members) const;
  /// The same value where nothing is held.
  Node asNew() const { return {value_, place_, faults_, nullptr, force_}; }
  /// Whether what can be forced is permitted.
  bool isForced() const { return force_; }

  /// How many faults there are so far, here or anywhere.
  std::size_t faults() const { return faults_.size(); }

  Node member(TextRef name) const;
  Node element(std::size_t index) const;
  /// The elements. What is held of one is found by a member, without one by the whole value, or else
  /// by the position.
  std::vector<Node> elements(const char* key) const;
  /// A fault at a member that is not there.
  void refuseMissing(TextRef name) const;

  /// Whether this is an object, with no members but these.
  bool isObjectOf(const std::vector<std::string>& names) const;
  bool isArray() const { return is(value_.is_array(), "an array"); }

  std::int32_t number(const Range& range) const;
  /// Any number of 32 bits but -1, which stands for none.
  std::int32_t id() const;
  bool flag() const;
  /// A text of at most so many bytes that XML can hold.
  std::string text(std::size_t most = std::string::npos) const;
  /// What a refusal adds of the permitted text that comes nearest; empty if this is not a text.
  std::string nearestOf(const std::vector<std::string>& texts) const;

 private:
  bool is(bool fits, const char* expected) const;

  const Json& value_;
  std::string place_;
  Faults& faults_;
  const Json* held_;
  bool force_;
};

}  // namespace camcfg::tool::settings

#endif
