#ifndef CAMCFG_TOOL_BASE_JSON_H
#define CAMCFG_TOOL_BASE_JSON_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "base/text_ref.h"

namespace camcfg::tool {

struct JsonField;

/// A value as JSON has them. Objects keep their members in the order in which they were added, and
/// two objects are equal only if their members are in the same order. What is asked of a value of
/// another kind throws std::logic_error, since it is a fault of the program.
class Json {
 public:
  using Values = std::vector<Json>;
  using iterator = Values::iterator;
  using const_iterator = Values::const_iterator;

  // Out of line: they are used everywhere, and inlined they fill the program.
  Json();
  Json(const Json& other);
  Json(Json&& other) noexcept;
  Json& operator=(const Json& other);
  Json& operator=(Json&& other) noexcept;
  ~Json();

  // Implicit, so that answers read like JSON.
  Json(std::nullptr_t);         // NOLINT(google-explicit-constructor)
  Json(bool value);             // NOLINT(google-explicit-constructor)
  Json(double value);           // NOLINT(google-explicit-constructor)
  Json(const char* text);       // NOLINT(google-explicit-constructor): a null pointer is null
  Json(std::string text);       // NOLINT(google-explicit-constructor)
  Json(std::string_view text);  // NOLINT(google-explicit-constructor)
  template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
  Json(Integer value)  // NOLINT(google-explicit-constructor)
      : Json(IntegerTag(), Wide<Integer>(value)) {}
  /// The value, or null where there is none.
  template <typename Value>
  Json(const std::optional<Value>& value)  // NOLINT(google-explicit-constructor)
      : Json(value ? Json(*value) : Json()) {}
  /// The elements of a container, as an array.
  template <typename Range, typename = decltype(std::declval<const Range&>().cbegin()),
            std::enable_if_t<!std::is_convertible_v<Range, std::string_view> &&
                                 !std::is_same_v<Range, Json>,
                             int> = 0>
  Json(const Range& range) : Json(array()) {  // NOLINT(google-explicit-constructor)
    for (const auto& element : range) push_back(Json(element));
  }
  /// An object: {{"name", value}, ...}.
  Json(std::initializer_list<JsonField> fields);

  static Json array();
  static Json array(std::initializer_list<Json> elements);
  static Json object();

  bool is_null() const { return holds<std::monostate>(); }
  bool is_boolean() const { return holds<bool>(); }
  bool is_number() const { return is_number_integer() || holds<double>(); }
  bool is_number_integer() const { return holds<std::int64_t>() || holds<std::uint64_t>(); }
  bool is_unsigned() const { return holds<std::uint64_t>(); }  ///< beyond signed 64 bits
  bool is_string() const { return holds<std::string>(); }
  bool is_array() const { return holds<Values>(); }
  bool is_object() const { return holds<Object>(); }
  bool is_structured() const { return is_array() || is_object(); }

  /// The value as bool, std::string, double or an integer that it fits into.
  template <typename Value>
  Value get() const {
    if constexpr (std::is_same_v<Value, bool>)
      return boolean();
    else if constexpr (std::is_same_v<Value, std::string>)
      return text();
    else if constexpr (std::is_same_v<Value, double>)
      return real();
    else if constexpr (std::is_same_v<Value, std::uint64_t>)
      return is_unsigned() ? std::get<std::uint64_t>(value_) : static_cast<Value>(integer());
    else
      return static_cast<Value>(integer());
  }
  const std::string& text() const;

  // Elements of an array, or values of an object's members; any other value has none.
  std::size_t size() const { return values().size(); }
  bool empty() const { return values().empty(); }
  const_iterator begin() const { return values().begin(); }
  const_iterator end() const { return values().end(); }
  iterator begin() { return mutableValues().begin(); }
  iterator end() { return mutableValues().end(); }
  const Json& front() const { return values().front(); }
  const Json& back() const { return values().back(); }
  const Json& at(std::size_t index) const;
  Json& at(std::size_t index);
  const Json& operator[](std::size_t index) const { return at(index); }
  Json& operator[](std::size_t index) { return at(index); }
  /// Adds an element; null becomes an array.
  void push_back(Json element);

  // Members of an object.
  const_iterator find(TextRef name) const;
  bool contains(TextRef name) const { return find(name) != end(); }
  const Json& at(TextRef name) const;
  Json& at(TextRef name);
  /// The member of a name, added as null if it is missing; null becomes an object.
  Json& operator[](TextRef name);
  const Json& operator[](TextRef name) const { return at(name); }
  const std::vector<std::string>& names() const;
  /// Names and values, for a range-based loop.
  struct Member {
    const std::string& name;
    const Json& value;
  };
  std::vector<Member> items() const;

  /// What is found member by member, or by an element's index: "live/srt/0"; the value itself for an
  /// empty path.
  /// @return null when it is not there
  const Json* find_path(std::string_view path) const;
  /// The same, with members added where they are missing.
  Json& at_path(std::string_view path);

  /// As text, on one line, or with so many spaces for each level. Bytes that are not UTF-8 become
  /// U+FFFD.
  std::string dump(int indent = -1) const;

  friend bool operator==(const Json& a, const Json& b);
  friend bool operator!=(const Json& a, const Json& b) { return !(a == b); }
  /// An order for sets and maps, by kind first.
  friend bool operator<(const Json& a, const Json& b);

 private:
  struct Object {
    std::vector<std::string> names;
    Values values;

    /// Where a member is; how many there are if it is none of them.
    std::size_t find(std::string_view name) const;
    Json& add(std::string_view name);
    bool operator==(const Object& other) const;
    bool operator<(const Object& other) const;

   private:
    using Places = std::unordered_map<std::string, std::size_t>;
    // Of many members, which would take too long one by one. Copies share it until they differ.
    std::shared_ptr<Places> places_;
  };

  struct IntegerTag {};
  template <typename Integer>
  using Wide = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;

  Json(IntegerTag tag, std::int64_t value);
  Json(IntegerTag tag, std::uint64_t value);

  template <typename Kind>
  bool holds() const {
    return std::holds_alternative<Kind>(value_);
  }
  bool boolean() const;
  double real() const;
  std::int64_t integer() const;
  const Values& values() const;
  Values& mutableValues();

  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Values,
               Object>
      value_;
};

/// A member of an object that is made as a whole.
struct JsonField {
  TextRef name;
  mutable Json value;  ///< moved into the object
};

/// Objects and lists that may be inside one another in a document.
constexpr std::size_t kDeepestNesting = 32;
/// Bytes that a document may have: more than a device holds.
constexpr std::size_t kMostText = std::size_t{64} << 20;

/// What a text holds.
struct JsonText {
  Json value;                         ///< null if the text is no JSON
  std::vector<std::string> repeated;  ///< places of members that an object has already; ignored
  std::size_t fault = 0;  ///< byte, counted from 1, where it stops being JSON; 0: nowhere
  std::string reason;     ///< why; repeats nothing of the text
};

/// Reads a JSON text.
/// @throws Refusal  it exceeds a limit, whatever comes after
JsonText readJson(const std::string& text);

/// A value as bytes, for another process of this program. Unlike JSON it keeps every text byte by
/// byte, whatever its encoding.
std::string packed(const Json& value);

/// @throws std::runtime_error  the bytes are not what packed() made
Json unpacked(const std::string& bytes);

}  // namespace camcfg::tool

#endif
