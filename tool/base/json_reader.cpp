#include "base/concat.h"
#include "base/json.h"

#include <nlohmann/json.hpp>

#include "base/outcome.h"
#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

using Parser = nlohmann::json;

// Builds the value event by event, which lets it see how deep it is, and a member that occurs twice.
class Builder : public nlohmann::json_sax<Parser> {
 public:
  explicit Builder(JsonText& result) : result_(result) {}

  bool null() override { return add(Json()); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(Parser::number_integer_t value) override { return add(value); }
  bool number_unsigned(Parser::number_unsigned_t value) override { return add(value); }
  bool number_float(Parser::number_float_t value, const std::string& /*text*/) override {
    return add(value);
  }
  bool string(std::string& value) override { return add(std::move(value)); }
  bool binary(Parser::binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return open(Json::object()); }
  bool start_array(std::size_t /*size*/) override { return open(Json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(std::string& name) override {
    Level& level = levels_.back();
    level.key = std::move(name);
    level.isRepeated = level.value.contains(level.key);
    if (level.isRepeated) result_.repeated.push_back(place());
    return true;
  }

  // What was last read is left out: it may be a password.
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Parser::exception& error) override {
    std::string reason = error.what();
    reason.erase(0, reason.find("] ") + 2);
    if (reason.find("parse error at ") == 0) reason.erase(0, reason.find(": ") + 2);
    result_.fault = position;
    result_.reason = reason.substr(0, reason.find("; last read: "));
    return false;
  }

 private:
  struct Level {
    Json value;
    std::string key{};
    bool isRepeated = false;
  };

  bool open(Json value) {
    if (levels_.size() == kDeepestNesting)
      throw Refusal(concat("it is nested deeper than ", kDeepestNesting, " levels"));
    levels_.push_back({std::move(value)});
    return true;
  }

  bool close() {
    Json value = std::move(levels_.back().value);
    levels_.pop_back();
    put(std::move(value));
    return true;
  }

  bool add(Json value) {
    put(std::move(value));
    return true;
  }

  void put(Json value) {
    if (levels_.empty())
      result_.value = std::move(value);
    else if (levels_.back().value.is_array())
      levels_.back().value.push_back(std::move(value));
    else if (!levels_.back().isRepeated)
      levels_.back().value[levels_.back().key] = std::move(value);
  }

  std::string place() const {
    std::string path;
    for (const Level& level : levels_)
      path = level.value.is_array() ? elementPlace(path, level.value.size())
                                    : memberPlace(path, level.key);
    return path;
  }

  JsonText& result_;
  std::vector<Level> levels_;
};

}  // namespace

JsonText readJson(const std::string& text) {
  if (text.size() > kMostText)
    throw Refusal(concat("it has ", text.size(), " bytes, the limit is ", kMostText));
  JsonText result;
  Builder builder(result);
  if (!Parser::sax_parse(text, &builder)) result.value = nullptr;
  return result;
}

}  // namespace camcfg::tool
