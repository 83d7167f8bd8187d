#include "base/json.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <tuple>

#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

[[noreturn]] void failOver(const std::string& what) {
  throw std::logic_error("JSON: " + what);
}

// The first word of a path, and what comes after it.
std::pair<std::string_view, std::string_view> split(std::string_view path) {
  const std::size_t end = std::min(path.find('/'), path.size());
  return {path.substr(0, end), path.substr(std::min(end + 1, path.size()))};
}

}  // namespace

[[gnu::noinline]] Json::Json() = default;
[[gnu::noinline]] Json::Json(const Json& other) = default;
[[gnu::noinline]] Json::Json(Json&& other) noexcept = default;
[[gnu::noinline]] Json& Json::operator=(const Json& other) = default;
[[gnu::noinline]] Json& Json::operator=(Json&& other) noexcept = default;
[[gnu::noinline]] Json::~Json() = default;

Json::Json(std::nullptr_t) {}
Json::Json(bool value) : value_(value) {}
Json::Json(double value) : value_(value) {}
Json::Json(const char* text) {
  if (text != nullptr) value_ = std::string(text);
}
Json::Json(std::string text) : value_(std::move(text)) {}
Json::Json(std::string_view text) : value_(std::string(text)) {}
Json::Json(IntegerTag /*tag*/, std::int64_t value) : value_(value) {}

Json::Json(IntegerTag /*tag*/, std::uint64_t value) : value_(value) {
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
    value_ = static_cast<std::int64_t>(value);
}

Json::Json(std::initializer_list<JsonField> fields) {
  auto& object = value_.emplace<Object>();
  object.names.reserve(fields.size());
  object.values.reserve(fields.size());
  for (const JsonField& field : fields) {
    object.names.emplace_back(field.name.view());
    object.values.push_back(std::move(field.value));
  }
}

Json Json::array() {
  Json value;
  value.value_ = Values();
  return value;
}

Json Json::array(std::initializer_list<Json> elements) {
  Json value;
  value.value_ = Values(elements);
  return value;
}

Json Json::object() {
  Json value;
  value.value_ = Object();
  return value;
}

bool Json::boolean() const {
  const bool* value = std::get_if<bool>(&value_);
  if (value == nullptr) failOver("no boolean");
  return *value;
}

const std::string& Json::text() const {
  const std::string* value = std::get_if<std::string>(&value_);
  if (value == nullptr) failOver("no text");
  return *value;
}

double Json::real() const {
  if (const auto* value = std::get_if<double>(&value_)) return *value;
  if (const auto* value = std::get_if<std::uint64_t>(&value_)) return static_cast<double>(*value);
  return static_cast<double>(integer());
}

std::int64_t Json::integer() const {
  if (const auto* value = std::get_if<std::int64_t>(&value_)) return *value;
  if (const auto* value = std::get_if<double>(&value_)) return static_cast<std::int64_t>(*value);
  failOver("no number of 64 bits");
}

const Json::Values& Json::values() const {
  static const Values none;
  if (const auto* values = std::get_if<Values>(&value_)) return *values;
  const auto* object = std::get_if<Object>(&value_);
  return object == nullptr ? none : object->values;
}

Json::Values& Json::mutableValues() {
  if (auto* values = std::get_if<Values>(&value_)) return *values;
  auto* object = std::get_if<Object>(&value_);
  if (object != nullptr) return object->values;
  static thread_local Values none;
  return none;
}

const std::vector<std::string>& Json::names() const {
  static const std::vector<std::string> none;
  const auto* object = std::get_if<Object>(&value_);
  return object == nullptr ? none : object->names;
}

const Json& Json::at(std::size_t index) const {
  if (index >= values().size()) failOver("no element " + std::to_string(index));
  return values()[index];
}

Json& Json::at(std::size_t index) {
  return const_cast<Json&>(std::as_const(*this).at(index));
}

void Json::push_back(Json element) {
  if (is_null()) value_ = Values();
  auto* values = std::get_if<Values>(&value_);
  if (values == nullptr) failOver("no array");
  values->push_back(std::move(element));
}

Json::const_iterator Json::find(TextRef name) const {
  const auto* object = std::get_if<Object>(&value_);
  return object == nullptr ? end()
                           : begin() + static_cast<std::ptrdiff_t>(object->find(name.view()));
}

const Json& Json::at(TextRef name) const {
  const auto found = find(name);
  if (found == end()) failOver("no member " + std::string(name.view()));
  return *found;
}

Json& Json::at(TextRef name) {
  return const_cast<Json&>(std::as_const(*this).at(name));
}

Json& Json::operator[](TextRef name) {
  if (is_null()) value_ = Object();
  auto* object = std::get_if<Object>(&value_);
  if (object == nullptr) failOver("no object");
  const std::size_t place = object->find(name.view());
  return place < object->names.size() ? object->values[place] : object->add(name.view());
}

std::vector<Json::Member> Json::items() const {
  std::vector<Member> all;
  for (std::size_t i = 0; i < names().size(); ++i) all.push_back({names()[i], at(i)});
  return all;
}

const Json* Json::find_path(std::string_view path) const {
  if (path.empty()) return this;
  const auto [word, rest] = split(path);
  const Json* next = nullptr;
  if (is_array()) {
    const auto index = decimal(word);
    if (index && *index >= 0 && static_cast<std::size_t>(*index) < size())
      next = &at(static_cast<std::size_t>(*index));
  } else if (const auto found = find(word); found != end()) {
    next = &*found;
  }
  return next == nullptr ? nullptr : next->find_path(rest);
}

Json& Json::at_path(std::string_view path) {
  if (path.empty()) return *this;
  const auto [word, rest] = split(path);
  return (*this)[word].at_path(rest);
}

std::size_t Json::Object::find(std::string_view name) const {
  if (places_ == nullptr)
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
  const auto found = places_->find(std::string(name));
  return found == places_->end() ? names.size() : found->second;
}

Json& Json::Object::add(std::string_view name) {
  constexpr std::size_t kFew = 32;
  names.emplace_back(name);
  if (names.size() > kFew) {
    const bool isNew = places_ == nullptr;
    if (isNew || places_.use_count() > 1)
      places_ = std::make_shared<Places>(isNew ? Places() : *places_);
    for (std::size_t i = isNew ? 0 : names.size() - 1; i < names.size(); ++i)
      places_->emplace(names[i], i);
  }
  return values.emplace_back();
}

bool Json::Object::operator==(const Object& other) const {
  return names == other.names && values == other.values;
}

bool Json::Object::operator<(const Object& other) const {
  return std::tie(names, values) < std::tie(other.names, other.values);
}

bool operator==(const Json& a, const Json& b) {
  const bool areNumbers = a.is_number() && b.is_number() && a.value_.index() != b.value_.index();
  return areNumbers ? a.real() == b.real() : a.value_ == b.value_;
}

bool operator<(const Json& a, const Json& b) {
  const bool areNumbers = a.is_number() && b.is_number() && a.value_.index() != b.value_.index();
  return areNumbers ? a.real() < b.real() : a.value_ < b.value_;
}

}  // namespace camcfg::tool
